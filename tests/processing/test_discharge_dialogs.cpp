// The checks of the edge, "Discharge Calculation", extrapolation and "Data Warning Thresholds"
// dialogs, word for word, with the field at fault; the thresholds table and the colour class of
// a value.

#include <gtest/gtest.h>

#include "processing/edge_dialogs.h"
#include "processing/extrapolation_dialog.h"
#include "processing/thresholds.h"

namespace rm {
namespace {

TEST(EdgeDialog, ProfilesBelowOneFailForComputedEdgesOnly) {
    const DialogCheck bad = CheckEdgeDialog(1, 2, 0.0);
    EXPECT_FALSE(bad.ok);
    EXPECT_EQ(bad.message, "Number of profiles used to calculate bank discharge must be greater than 0 and less than 1");
    EXPECT_EQ(bad.field, "RightNumProfiles");
    EXPECT_TRUE(CheckEdgeDialog(0, 0, -4.0).ok);  // a user estimate may be anything
    EXPECT_TRUE(CheckEdgeDialog(0, 1, 1.0).ok);
}

TEST(EdgeDialog, StoresMeasuredDistanceAsCorrectedAndTheStartBank) {
    const NodeRef node = NodeRef::MakeNew();
    StoreEdgeDialog(node, {1, 0, 2.5, 12.0, true});
    EXPECT_EQ(node.GetTyped<int32_t>("RightBankMethod", 9), 0);
    EXPECT_DOUBLE_EQ(node.GetTyped<double>("RightUserEstimate", 0.0), 2.5);
    EXPECT_DOUBLE_EQ(node.GetTyped<double>("CorrectedRightDistance", 0.0), 12.0);
    EXPECT_EQ(node.GetTyped<int32_t>("CorrectedStartBankSide", 0), 1);
    EXPECT_EQ(node.GetTyped<int32_t>("MeasuredStartBankSide", 0), 1);
}

TEST(DischargeCalculationDialog, ChecksRunInOrderWithTheSystemsWords) {
    DischargeCalculationFields f;
    f.leftProfile = 0;
    f.rightProfile = 99;
    DialogCheck c = CheckDischargeCalculation(f, 40);
    EXPECT_EQ(c.message, "Left Profile must be between 1 and 40 (the total number of profiles)");
    EXPECT_EQ(c.field, "LeftProfile");
    f.leftProfile = 30;
    c = CheckDischargeCalculation(f, 40);
    EXPECT_EQ(c.message, "Right Profile must be between 1 and 40 (the total number of profiles)");
    EXPECT_EQ(c.field, "RightProfile");
    f.rightProfile = 10;
    EXPECT_EQ(CheckDischargeCalculation(f, 40).message, "Left Profile must be less than Right Profile");
    f.startBank = 1;
    f.leftProfile = 5;
    EXPECT_EQ(CheckDischargeCalculation(f, 40).message, "Right Profile must be less than Left Profile");
    f.leftProfile = 30;
    f.leftNumProfiles = 22;  // |10 - 30| + 1 = 21 at most
    c = CheckDischargeCalculation(f, 40);
    EXPECT_EQ(c.message,
              "Number of profiles used to calculate left bank discharge must be greater than 0 and less than the "
              "difference between left and right profiles");
    EXPECT_EQ(c.field, "LeftNumProfiles");
    f.leftNumProfiles = 21;
    f.rightNumProfiles = 0;
    EXPECT_EQ(CheckDischargeCalculation(f, 40).message,
              "Number of profiles used to calculate right bank discharge must be greater than 0 and less than the "
              "difference between left and right profiles");
    f.rightMethod = 0;  // a user estimate needs no profiles
    f.correctedLeftDistance = -0.01;
    c = CheckDischargeCalculation(f, 40);
    EXPECT_EQ(c.message, "Distance to left bank must be greater than 0");
    EXPECT_EQ(c.field, "CorrectedLeftDistance");
    f.correctedLeftDistance = 0.0;  // zero passes despite the wording
    f.correctedRightDistance = -1.0;
    EXPECT_EQ(CheckDischargeCalculation(f, 40).message, "Distance to right bank must be greater than 0");
    f.correctedRightDistance = 0.0;
    EXPECT_TRUE(CheckDischargeCalculation(f, 40).ok);
}

TEST(DischargeCalculationDialog, OneProfileRangeAllowsOneEdgeProfile) {
    DischargeCalculationFields f;
    f.leftProfile = f.rightProfile = 7;
    EXPECT_TRUE(CheckDischargeCalculation(f, 10).ok);
    f.rightNumProfiles = 2;
    EXPECT_FALSE(CheckDischargeCalculation(f, 10).ok);
}

TEST(ExtrapolationDialog, CellCountsKeepTheSpellingOfTheMessages) {
    DialogCheck c = CheckExtrapolationDialog({0, 1, 1}, 30);
    EXPECT_EQ(c.message, "Number of Cells used to calculate top velocites must be between 1 and 30");
    EXPECT_EQ(c.field, "NumTopCells");
    c = CheckExtrapolationDialog({30, 31, 1}, 30);
    EXPECT_EQ(c.message, "Number of Cells used to calculate bottom velocites must be between 1 and 30");
    EXPECT_EQ(c.field, "NumBottomCells");
    c = CheckExtrapolationDialog({1, 1, 31}, 30);
    EXPECT_EQ(c.message, "Number of Cells discarded from the profile must be between 1 and 30");
    EXPECT_TRUE(CheckExtrapolationDialog({1, 1, 0}, 30).ok);  // only the upper limit is checked
}

TEST(Thresholds, DefaultsGoIntoTheTreeOneChildPerQuantity) {
    const NodeRef node = NodeRef::MakeNew();
    const std::vector<Threshold> t = ReadThresholds(node);
    ASSERT_EQ(t.size(), 7u);
    EXPECT_EQ(node.ItemCount(), 7);
    const NodeRef boat = node.GetChildByName("Boat Speed");
    EXPECT_EQ(boat.GetTyped<int32_t>("Variable", 0), 70);  // its limits and multiplier: see the classes below
    EXPECT_EQ(t[0].name, "Data Quality Index");
    EXPECT_EQ(t[0].variable, 64);

    Threshold changed = t[5];
    changed.warning = 7.5;
    StoreThreshold(node, changed);
    EXPECT_DOUBLE_EQ(ReadThresholds(node)[5].warning, 7.5);
}

TEST(Thresholds, ValuesClassifyBelowWarningBetweenAndFromAlert) {
    const Threshold boat = DefaultThresholds()[2];  // 2 and 3 m/s
    EXPECT_EQ(ClassifyValue(1.99, boat, 1), DataQualityClass::Good);
    EXPECT_EQ(ClassifyValue(2.0, boat, 1), DataQualityClass::Warning);
    EXPECT_EQ(ClassifyValue(3.0, boat, 1), DataQualityClass::Alert);
    EXPECT_EQ(ClassifyValue(32767.0, boat, 1), DataQualityClass::NoValue);
    // In English units the value comes in ft/s and the limits follow: 2 m/s = 6.56 ft/s.
    EXPECT_EQ(ClassifyValue(6.5, boat, 0), DataQualityClass::Good);
    EXPECT_EQ(ClassifyValue(6.6, boat, 0), DataQualityClass::Warning);
    EXPECT_STREQ(QualityColorKey(DataQualityClass::Alert), "Alert Data");
    EXPECT_STREQ(QualityColorKey(DataQualityClass::Good), "Good Data");
}

TEST(ThresholdsDialog, OkConvertsRoundsAndChecksTheLimits) {
    const Threshold pitch = DefaultThresholds()[5];
    ThresholdEntry e = CheckThresholdDialog(pitch, "25", "30", 1);
    EXPECT_EQ(e.check.message, "The Warning value must be less than 25 degrees.");
    EXPECT_EQ(e.check.title, "Threshold input error");
    e = CheckThresholdDialog(pitch, "24.96", "26", 1);  // rounds to 25.0
    EXPECT_EQ(e.check.message, "The Warning value must be less than 25 degrees.");
    e = CheckThresholdDialog(pitch, "5", "25", 1);
    EXPECT_EQ(e.check.message, "The Alert value must be less than 25 degrees.");
    EXPECT_EQ(e.check.field, "Alert");
    e = CheckThresholdDialog(pitch, "8", "8.04", 1);  // both 8.0 after rounding
    EXPECT_EQ(e.check.message, "The Warning value must be lower than the Alert value.");
    e = CheckThresholdDialog(pitch, "abc", "8", 1);
    EXPECT_FALSE(e.check.ok);
    EXPECT_EQ(e.check.field, "Warning");

    // 6.5616 ft/s and 9.8425 ft/s back to m/s: 2.0 and 3.0.
    const Threshold boat = DefaultThresholds()[2];
    e = CheckThresholdDialog(boat, "6.5616", "9.8425", 0);
    ASSERT_TRUE(e.check.ok);
    EXPECT_NEAR(e.stored.warning, 2.0, 1e-12);
    EXPECT_NEAR(e.stored.alert, 3.0, 1e-12);
    EXPECT_NEAR(ThresholdDisplayValue(e.stored.warning, boat, 0), 6.56168, 1e-9);
    e = CheckThresholdDialog(boat, "-0.25", "40", 1);  // half away from zero
    EXPECT_NEAR(e.stored.warning, -0.3, 1e-12);
}

}  // namespace
}  // namespace rm
