#pragma once
// The checks of the "Velocity Profile Extrapolation" dialog, in their order: the cells of the
// top and bottom ranges must lie in 1 .. the number of cells, the discarded cells must not
// exceed it. The messages keep the system's spelling "velocites".

#include "processing/dialog_check.h"

namespace rm {

struct ExtrapolationFields {
    int numTopCells = 1;
    int numBottomCells = 1;
    int discardCells = 1;
};

DialogCheck CheckExtrapolationDialog(const ExtrapolationFields& fields, int numberOfCells);

}  // namespace rm
