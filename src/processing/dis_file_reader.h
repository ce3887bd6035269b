#pragma once
// Reading a .dis file back into a measurement record, so that a transect saved as .dis text can
// join the discharge summary. What the file holds is taken: the data file name, the start date
// and time, the references, the units, the profile lines (their count, the time of the last one,
// its track length and distance made good) and the trailer's discharges, area and mean velocity,
// converted back to metric. The bank distances are not in the file: the total width is the
// distance made good and the two edge distances are 0.

#include <string>

#include "processing/discharge_data.h"

namespace rm {

struct DisReadResult {
    bool ok = false;
    std::string error;  // why the file was refused
};

// Fills `record` (Active set). Refuses a file that cannot be opened or has no
// "% KVR Data File: " head line.
DisReadResult ReadDisFile(const std::string& path, CDischargeData& record);

}  // namespace rm
