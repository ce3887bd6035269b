#pragma once
// The application's load fields: what the load dialog chose for the file about to open, read by
// the document when it opens (which profiles reach it, and how they are grouped).

#include <cstdint>

#include "app/load_selection.h"

namespace rm {

struct LoadFields {
    int32_t start = 1;  // first profile, from 1
    int32_t end = 0;    // last profile
    int32_t step = 1;   // N of "Select every" or "Average over"
    int32_t count = 0;  // profiles that reach the document
    LoadGroupType groupType = LoadGroupType::EveryProfile;
    int32_t valid = 0;  // 1 when the dialog set the fields; otherwise the whole file is loaded
};

}  // namespace rm
