// The measurement record: pitch and roll statistics, the reset between passes, the start of a
// measurement and the registration of its settings, and the settings snapshot of a pass.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "processing/discharge_data.h"
#include "processing/measurement_start.h"
#include "processing/settings_reader.h"

namespace rm {
namespace {

TEST(DischargeRecord, PitchAndRollKeepTheLargestMagnitudeWithItsSign) {
    CDischargeData d;
    d.AddPitchRoll(2.0, -1.0);
    d.AddPitchRoll(-3.5, 0.5);
    d.AddPitchRoll(1.0, 1.0);   // roll ties with the kept -1.0: the new value stays
    d.AddPitchRoll(32767.0, 9.0);  // an absent pitch: the profile is left out
    d.AddPitchRoll(9.0, 32767.0);
    EXPECT_FLOAT_EQ(d.MaxPitch, -3.5f);
    EXPECT_FLOAT_EQ(d.MaxRoll, 1.0f);
    EXPECT_EQ(d.PitchRollCount, 3);
    EXPECT_DOUBLE_EQ(d.MeanPitch(), (2.0 - 3.5 + 1.0) / 3);
    EXPECT_DOUBLE_EQ(d.MeanRoll(), (-1.0 + 0.5 + 1.0) / 3);
}

std::vector<std::string> Names(const NodeRef& node) {
    std::vector<std::string> names;
    for (int i = 0; i < node.ItemCount(); ++i) names.push_back(node.ItemName(i));
    return names;
}

TEST(DischargeDefaults, AreCreatedInTheirOrderAndUseShallowWaterPingIsSetAgain) {
    NodeRef discharge = NodeRef::MakeNew();
    discharge.SetValue("LeftBankSlope", Variant(0.5));
    discharge.SetValue("UseShallowWaterPing", Variant(int32_t{0}));
    RegisterDischargeDefaults(discharge);
    const std::vector<std::string> expected{
        "LeftBankSlope",         "UseShallowWaterPing",    "ProfileExtrapolation",  "LeftProfile",
        "RightProfile",          "LeftBankMethod",         "RightBankMethod",       "LeftNumProfiles",
        "RightNumProfiles",      "RightBankSlope",         "LeftUserEstimate",      "RightUserEstimate",
        "MeasuredLeftDistance",  "CorrectedLeftDistance",  "MeasuredRightDistance", "CorrectedRightDistance",
        "NumBadBeams",           "AreaComputation",        "AreaAngle",             "MeasuredStartBankSide",
        "CorrectedStartBankSide"};
    EXPECT_EQ(Names(discharge), expected);
    EXPECT_EQ(discharge.GetTyped<double>("LeftBankSlope", 0.0), 0.5);
    EXPECT_EQ(discharge.GetTyped<int32_t>("UseShallowWaterPing", -1), 1);
    const NodeRef x = discharge.GetOrCreateChild("ProfileExtrapolation");
    const std::vector<std::string> extrapolation{"SameTopBottom", "NumTopCells",      "NumBottomCells", "TopFitType",
                                                 "BottomFitType", "TopEntireProfile", "BottEntireProfile",
                                                 "DiscardType",   "DiscardCells",     "DiscardPercent", "TopExponent",
                                                 "BottomExponent"};
    EXPECT_EQ(Names(x), extrapolation);
    EXPECT_DOUBLE_EQ(x.GetTyped<double>("TopExponent", 0.0), 1.0 / 6.0);
    EXPECT_EQ(x.GetTyped<int32_t>("DiscardPercent", 0), 10);

    // Creating the defaults for a recording opened again keeps what was decided.
    discharge.SetValue("UseShallowWaterPing", Variant(int32_t{0}));
    CreateDischargeDefaults(discharge);
    EXPECT_EQ(discharge.GetTyped<int32_t>("UseShallowWaterPing", -1), 0);
}

class MeasurementStart : public ::testing::Test {
protected:
    void SetUp() override {
        data.conf.SerialNumber = "K123";
        data.conf.KvrType = 1;
        data.conf.CPUSoftwareVerNum = 165;
        data.user.AveragingInterval = 2;
        data.user.CellSizeCm = 50.0f;
        data.user.NumberOfCells = 30;
        data.user.BlankDistance = 40;
        source.fileName = "/data/RUN.kvr";
        source.discharge = NodeRef::MakeNew();
        source.trackReference = 2;
        source.velocityReference = 0;
        source.depthReference = 1;
        source.magneticDeclination = -4.5;
        source.startMeanHW = 1.25;
    }
    CKvrData data;
    MeasurementSource source;
    std::shared_ptr<CDischargeData> current;
};

TEST_F(MeasurementStart, TakesTheDocumentsReferencesAndDescribesTheInstrument) {
    source.discharge.SetValue("UseShallowWaterPing", Variant(int32_t{0}));
    const auto m = StartMeasurement(current, source, false, data);
    ASSERT_EQ(current, m);
    EXPECT_EQ(m->fileName, "/data/RUN.kvr");
    EXPECT_EQ(m->TrackReference, 2);
    EXPECT_EQ(m->VelocityReference, 0);
    EXPECT_EQ(m->DepthReference, 1);
    EXPECT_EQ(m->Active, 1);
    EXPECT_EQ(m->SystemName, "K123");
    EXPECT_EQ(m->SystemType, "1500 kHz");
    EXPECT_EQ(m->SoftwareVersion, "16.5");
    EXPECT_EQ(m->Interval, 2.0);
    EXPECT_EQ(m->NumberOfCells, 30);
    EXPECT_DOUBLE_EQ(m->CellSize, 0.5);
    EXPECT_DOUBLE_EQ(m->Blanking, 0.4);
    const NodeRef discharge = MeasurementDischargeNode(*m);
    ASSERT_TRUE(discharge.SameNode(source.discharge));
    EXPECT_EQ(discharge.GetTyped<int32_t>("UseShallowWaterPing", -1), 1);
    EXPECT_EQ(discharge.GetTyped<double>("StartMeanHW", 0.0), 1.25);
    EXPECT_EQ(discharge.GetTyped<double>("MagneticDeclination", 0.0), -4.5);
}

TEST_F(MeasurementStart, InheritedTakesTheOldRecordsReferencesAndSettings) {
    const auto first = StartMeasurement(current, source, false, data);
    const std::shared_ptr<CDischargeData> kept = first;  // a summary list holds the old record
    MeasurementSource other = source;
    other.discharge = NodeRef::MakeNew();
    other.trackReference = 1;
    other.velocityReference = 1;
    other.depthReference = 0;
    const auto second = StartMeasurement(current, other, true, data);
    EXPECT_NE(second, kept);
    EXPECT_EQ(second->TrackReference, 2);
    EXPECT_EQ(second->DepthReference, 1);
    EXPECT_TRUE(second->settings.SameNode(kept->settings));
    const auto third = StartMeasurement(current, other, false, data);
    EXPECT_EQ(third->TrackReference, 1);
    EXPECT_TRUE(MeasurementDischargeNode(*third).SameNode(other.discharge));
}

TEST_F(MeasurementStart, OpeningARecordingKeepsItsSavedValues) {
    source.discharge.SetValue("UseShallowWaterPing", Variant(int32_t{0}));
    source.discharge.SetValue("StartMeanHW", Variant(3.5));
    const auto m = OpenMeasurement(current, source, data);
    const NodeRef discharge = MeasurementDischargeNode(*m);
    EXPECT_EQ(discharge.GetTyped<int32_t>("UseShallowWaterPing", -1), 0);
    EXPECT_EQ(discharge.GetTyped<double>("StartMeanHW", 0.0), 3.5);
    EXPECT_EQ(discharge.GetTyped<double>("MagneticDeclination", 0.0), -4.5);
}

TEST(ProcessingSettingsSnapshot, ReadsTheTreesAndWritesTheDefaultsOfMissingKeys) {
    NodeRef root = NodeRef::MakeNew();
    NodeRef general = NodeRef::MakeNew();
    general.SetValue("Unit System", Variant(int16_t{0}));
    general.SetValue("SwapDepthReference", Variant(uint8_t{0}));
    const NodeRef discharge = root.GetOrCreateChild("Discharge");
    discharge.SetValue("RightProfile", Variant(int32_t{77}));
    discharge.SetValue("AreaAngle", Variant(int32_t{35}));
    discharge.GetOrCreateChild("ProfileExtrapolation").SetValue("TopExponent", Variant(0.25));
    discharge.GetOrCreateChild("ShallowWater").SetValue("UseCorrelationMin", Variant(uint8_t{0}));
    root.GetOrCreateChild("EchoSounder").SetValue("Scale", Variant(1.02));
    DocumentProcessingFields fields;
    fields.CoordinateSystem = 1;
    fields.TrackReference = 2;
    fields.soundSpeed.salinityCorrectionType = 1;
    fields.soundSpeed.correctedSalinityInPpt = 12.5;

    const ProcessingSettings s = ReadProcessingSettings(root, general, fields);
    EXPECT_EQ(s.UnitSystem, 0);
    EXPECT_FALSE(s.SwapDepthReference);
    EXPECT_EQ(s.RightProfile, 77);
    EXPECT_EQ(s.AreaAngle, 35);
    EXPECT_EQ(s.TopExponent, 0.25);
    EXPECT_FALSE(s.UseCorrelationMin);
    EXPECT_TRUE(s.UseWaterCells);
    EXPECT_EQ(s.EchoScale, 1.02);
    EXPECT_EQ(s.CoordinateSystem, 1);
    EXPECT_EQ(s.TrackReference, 2);
    EXPECT_EQ(s.SalinityCorrectionType, 1);
    EXPECT_EQ(s.CorrectedSalinityInPpt, 12.5);
    // Missing keys now stand in the tree with their defaults.
    const NodeRef shallow = discharge.GetOrCreateChild("ShallowWater");
    EXPECT_EQ(shallow.GetTyped<double>("SnrThreshold", 0.0), 3.0);
    EXPECT_EQ(shallow.GetTyped<int32_t>("MaxWaterCells", 0), 3);
    EXPECT_EQ(root.GetOrCreateChild("EchoSounder").GetTyped<double>("Offset", -1.0), 0.0);
    EXPECT_GE(discharge.FindIndex("LeftBankMethod"), 0);
    EXPECT_EQ(Names(shallow), (std::vector<std::string>{"UseCorrelationMin", "SnrThreshold", "MaxSwVelocity",
                                                         "UseWaterCells", "MaxWaterCells", "UseFirstCellFactor",
                                                         "FirstCellFactor", "UseBoatSpeedFactor", "BoatSpeedFactor",
                                                         "CorrelationMin"}));
    EXPECT_EQ(shallow.ItemValue(shallow.FindIndex("UseWaterCells")), Variant(uint8_t{1}));  // flags are u8
    EXPECT_EQ(Names(root.GetChildByName("EchoSounder")),
              (std::vector<std::string>{"Scale", "UseEchoSounderForDepth", "Offset", "TransducerDepth",
                                        "CorrectForSpeedOfSound"}));
}

}  // namespace
}  // namespace rm
