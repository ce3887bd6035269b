#include "processing/edge_dialogs.h"

#include <cstdlib>
#include <string>

#include "processing/edges.h"

namespace rm {

namespace {
const char* SideName(int side) { return side == kSideLeft ? "Left" : "Right"; }

std::string NumProfilesKey(int side) { return std::string(SideName(side)) + "NumProfiles"; }

bool ProfileInFile(int profile, int total) { return profile >= 1 && profile <= total; }

// The number of profiles of an edge must lie in 1 .. |right - left| + 1; a user estimate is not
// a number of profiles and is not checked.
bool EdgeProfilesFit(int method, int numProfiles, int left, int right) {
    if (method == kBankMethodUserInput) return true;
    return numProfiles > 0 && numProfiles <= std::abs(right - left) + 1;
}
}  // namespace

DialogCheck CheckEdgeDialog(int side, int method, double fieldValue) {
    if (method != kBankMethodUserInput && fieldValue < 1.0) {
        return DialogCheck::Fail(NumProfilesKey(side),
                                 "Number of profiles used to calculate bank discharge must be greater than 0 and less "
                                 "than 1");
    }
    return DialogCheck::Pass();
}

void StoreEdgeDialog(const NodeRef& discharge, const EdgeDialogValues& v) {
    const std::string side = SideName(v.side);
    discharge.SetValue(side + "BankMethod", Variant(static_cast<int32_t>(v.method)));
    if (v.method == kBankMethodUserInput) {
        discharge.SetValue(side + "UserEstimate", Variant(v.fieldValue));
    } else {
        discharge.SetValue(side + "NumProfiles", Variant(static_cast<int32_t>(v.fieldValue)));
    }
    discharge.SetValue("Measured" + side + "Distance", Variant(v.measuredDistance));
    discharge.SetValue("Corrected" + side + "Distance", Variant(v.measuredDistance));
    if (v.atStart) {
        discharge.SetValue("MeasuredStartBankSide", Variant(static_cast<int32_t>(v.side)));
        discharge.SetValue("CorrectedStartBankSide", Variant(static_cast<int32_t>(v.side)));
    }
}

DialogCheck CheckDischargeCalculation(const DischargeCalculationFields& f, int totalProfiles) {
    const std::string total = std::to_string(totalProfiles);
    if (!ProfileInFile(f.leftProfile, totalProfiles)) {
        return DialogCheck::Fail("LeftProfile",
                                 "Left Profile must be between 1 and " + total + " (the total number of profiles)");
    }
    if (!ProfileInFile(f.rightProfile, totalProfiles)) {
        return DialogCheck::Fail("RightProfile",
                                 "Right Profile must be between 1 and " + total + " (the total number of profiles)");
    }
    if (f.startBank == 0 && f.leftProfile > f.rightProfile) {
        return DialogCheck::Fail("LeftProfile", "Left Profile must be less than Right Profile");
    }
    if (f.startBank == 1 && f.leftProfile < f.rightProfile) {
        return DialogCheck::Fail("RightProfile", "Right Profile must be less than Left Profile");
    }
    if (!EdgeProfilesFit(f.leftMethod, f.leftNumProfiles, f.leftProfile, f.rightProfile)) {
        return DialogCheck::Fail("LeftNumProfiles",
                                 "Number of profiles used to calculate left bank discharge must be greater than 0 and "
                                 "less than the difference between left and right profiles");
    }
    if (!EdgeProfilesFit(f.rightMethod, f.rightNumProfiles, f.leftProfile, f.rightProfile)) {
        return DialogCheck::Fail("RightNumProfiles",
                                 "Number of profiles used to calculate right bank discharge must be greater than 0 and "
                                 "less than the difference between left and right profiles");
    }
    if (f.correctedLeftDistance < 0.0) {
        return DialogCheck::Fail("CorrectedLeftDistance", "Distance to left bank must be greater than 0");
    }
    if (f.correctedRightDistance < 0.0) {
        return DialogCheck::Fail("CorrectedRightDistance", "Distance to right bank must be greater than 0");
    }
    return DialogCheck::Pass();
}

}  // namespace rm
