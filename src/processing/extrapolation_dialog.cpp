#include "processing/extrapolation_dialog.h"

#include <string>

namespace rm {

DialogCheck CheckExtrapolationDialog(const ExtrapolationFields& f, int numberOfCells) {
    const std::string limit = std::to_string(numberOfCells);
    if (f.numTopCells < 1 || f.numTopCells > numberOfCells) {
        return DialogCheck::Fail("NumTopCells",
                                 "Number of Cells used to calculate top velocites must be between 1 and " + limit);
    }
    if (f.numBottomCells < 1 || f.numBottomCells > numberOfCells) {
        return DialogCheck::Fail("NumBottomCells",
                                 "Number of Cells used to calculate bottom velocites must be between 1 and " + limit);
    }
    if (f.discardCells > numberOfCells) {
        return DialogCheck::Fail("DiscardCells",
                                 "Number of Cells discarded from the profile must be between 1 and " + limit);
    }
    return DialogCheck::Pass();
}

}  // namespace rm
