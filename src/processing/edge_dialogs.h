#pragma once
// The checks of the two dialogs that set the edges of a measurement: the edge dialog shown at
// the start and end of a transect, and the "Discharge Calculation" dialog that reviews the whole
// measurement. Both report the first failing field with the system's own words.

#include "data/node_tree.h"
#include "processing/dialog_check.h"

namespace rm {

// Edge dialog: for a method other than "User Input" the field holds the number of profiles
// averaged, which must be at least 1. `side` 0 left, 1 right names the field at fault.
DialogCheck CheckEdgeDialog(int side, int method, double fieldValue);

// What the edge dialog stores on OK: the method, the number of profiles or the user estimate,
// the measured distance also as the corrected one, and at the start of a transect the chosen
// bank as start bank. `discharge` is the measurement's `Discharge` node.
struct EdgeDialogValues {
    int side = 0;  // 0 left, 1 right
    int method = 2;
    double fieldValue = 1.0;  // profiles for methods 1 and 2, the estimate (m3/s) for method 0
    double measuredDistance = 0.0;  // m
    bool atStart = false;
};
void StoreEdgeDialog(const NodeRef& discharge, const EdgeDialogValues& values);

// "Discharge Calculation" dialog, in the order of its checks.
struct DischargeCalculationFields {
    int leftProfile = 1, rightProfile = 1;  // from 1
    int startBank = 0;                      // CorrectedStartBankSide
    int leftMethod = 2, rightMethod = 2;
    int leftNumProfiles = 1, rightNumProfiles = 1;
    double correctedLeftDistance = 0.0, correctedRightDistance = 0.0;
};
DialogCheck CheckDischargeCalculation(const DischargeCalculationFields& fields, int totalProfiles);

}  // namespace rm
