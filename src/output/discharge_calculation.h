#pragma once
// The "Discharge Calculation" dialog without its window: the fields it loads from a
// measurement's Discharge node, the check before "&RECOMPUTE" and "&Output to File...", the
// bank note and the result texts.

#include <string>

#include "processing/discharge_data.h"
#include "processing/edge_dialogs.h"

namespace rm {

// The checked fields as the dialog loads them from the Discharge node.
DischargeCalculationFields DischargeCalculationFieldsOf(const NodeRef& discharge);

// The note beside the start-bank radio pair, by MeasuredStartBankSide: 0 left, 1 right, other
// none.
const char* StartBankNote(int measuredStartBankSide);

// The result fields, in the units of `unitSystem` (1 metric). Missing values read "--".
struct DischargeCalculationTexts {
    std::string totalMeasured;  // "Total Measured Discharge"
    std::string top, bottom, left, right, total;
    std::string measuredPercent;  // "% Measured Discharge:"
    std::string totalWidth, maximumDepth, maximumDepthAveragedVelocity, maximumBoatSpeed;
    std::string maximumPitch, maximumRoll;
};
DischargeCalculationTexts DischargeCalculationResults(const CDischargeData& m, int unitSystem, int significantDigits);

}  // namespace rm
