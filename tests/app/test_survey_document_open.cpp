// Opening a recording into a document: the refusals with their messages, the window size, the
// settings a recording starts with, and what its side files bring (.cfg ranges, .pmk GPS and
// echo sounder depths).

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <vector>

#include "app/settings_path.h"
#include "data/cfg_file.h"
#include "document_test_support.h"

namespace rm {
namespace {

using doctest::RecordRiver;
using doctest::RewriteRecording;
using doctest::TestApp;
using doctest::WithWindow;

class DocumentOpen : public ::testing::Test {
protected:
    TestApp t;
    std::string path = t.folder.File("RUN.kvr");
};

TEST_F(DocumentOpen, RefusesWhatIsNotADownLookingRecordingWithItsMessage) {
    const std::string down = t.folder.File("DOWN.kvr");
    RecordRiver(down, 10);
    const auto orientation = [&](uint8_t o) {
        return [=] { RewriteRecording(down, path, [&](InstrumentConf& conf) { conf.SensorOrientation = o; }); };
    };
    const std::string downOnly = "Quorle Ripplemark will only operate with DOWN looking systems\n";
    const struct {
        std::function<void()> make;
        std::string message;
    } cases[] = {
        {[&] { std::ofstream(path, std::ios::binary) << std::string(600, 'x'); }, "Incorrect file format"},
        // A valid configuration with a user record that holds no cells: the head cannot be read.
        {[&] {
             std::filesystem::copy_file(down, path, std::filesystem::copy_options::overwrite_existing);
             std::fstream f(path, std::ios::binary | std::ios::in | std::ios::out);
             f.seekp(96 + 64 + 18);  // configuration, operation record, NumberOfCells of the user record
             f.write("\0\0", 2);
         },
         "Incorrect Kvr configuration format"},
        {orientation(1), downOnly + "This file contains data from a UP looking system"},
        {orientation(2), downOnly + "This file contains data from a SIDE looking system"},
    };
    for (const auto& c : cases) {
        c.make();
        t.prompt.messages.clear();
        CSurveyKVRDoc doc(t.app, t.prompt);
        EXPECT_EQ(doc.OpenDocument(path), 0);
        EXPECT_FALSE(doc.IsOpen());
        EXPECT_EQ(t.prompt.messages, std::vector<std::string>{c.message});
    }
}

TEST_F(DocumentOpen, WindowIsTheSmallerOfSlotsHeldAndProfilesUnlessLoadingToTheEnd) {
    RecordRiver(path, 30);
    CSurveyKVRDoc all(t.app, t.prompt);
    ASSERT_EQ(all.OpenDocument(path), 1);
    EXPECT_EQ(all.WindowSize(), 30);
    EXPECT_EQ(all.CurrentProfile(), 30);
    for (const bool toEnd : {false, true}) {
        t.app.Set(app_keys::LoadToEndOfFile, toEnd ? 1 : 0);
        CSurveyKVRDoc part(t.app, t.prompt, kModePlayback, WithWindow(12));
        ASSERT_EQ(part.OpenDocument(path), 1);
        EXPECT_EQ(part.WindowSize(), 12);
        EXPECT_EQ(part.Source().RecordReads(), toEnd ? 30 : 12);
        EXPECT_EQ(part.CurrentProfile(), toEnd ? 30 : 12);
        EXPECT_EQ(part.WindowStart(), toEnd ? 19 : 1);
        EXPECT_EQ(part.WindowEnd(), toEnd ? 30 : 12);
    }
    EXPECT_TRUE(t.prompt.messages.empty());
}

TEST_F(DocumentOpen, WithoutCfgStartsInEnuWithBottomTrackReferencesAndRegistersDischargeKeys) {
    RecordRiver(path, 20, [](sim::RiverScenario& s) { s.instrument.coordinateSystem = kCoordBeam; });
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    const NodeRef display = doc.Root().GetOrCreateChild("Display");
    EXPECT_EQ(display.GetTyped<int32_t>("CoordinateSystem", -1), kCoordEnu);
    EXPECT_EQ(display.GetTyped<int32_t>("VelocityReference", -1), kVelocityRefBottomTrack);
    EXPECT_EQ(display.GetTyped<int32_t>("TrackReference", -1), kTrackRefBottomTrack);
    EXPECT_EQ(doc.Settings().CoordinateSystem, kCoordEnu);

    // The open creates the start-bank and range keys first, the range ending at the last profile,
    // then the rest of the measurement's keys.
    const NodeRef discharge = doc.Root().GetOrCreateChild("Discharge");
    const std::vector<std::string> first{"MeasuredStartBankSide", "CorrectedStartBankSide", "LeftProfile",
                                         "RightProfile", "ProfileExtrapolation"};
    for (size_t i = 0; i < first.size(); ++i) EXPECT_EQ(discharge.ItemName(static_cast<int>(i)), first[i]);
    EXPECT_EQ(discharge.GetTyped<int32_t>("RightProfile", 0), 20);
    EXPECT_EQ(doc.Measurement().ProfileCount, 20);

    // The instrument's records are mirrored into the System tree.
    const NodeRef setup = doc.SystemRoot().GetOrCreateChild("Setup");
    EXPECT_EQ(setup.GetTyped<int16_t>("NumberOfCells", 0), 20);
}

TEST_F(DocumentOpen, RightProfileOfTheCfgAboveTheCountOrZeroIsCutBack) {
    RecordRiver(path, 15);
    for (int32_t stored : {500, 0}) {
        NodeRef root = NodeRef::MakeNew();
        root.GetOrCreateChild("Discharge").SetValue("RightProfile", Variant(stored));
        root.GetOrCreateChild("Discharge").SetValue("LeftProfile", Variant(int32_t{3}));
        CfgValues values;
        ASSERT_TRUE(SaveCfg(path, root, NodeRef(), values, std::nullopt, CfgSaveReason::LockMeasurement));
        CSurveyKVRDoc doc(t.app, t.prompt);
        ASSERT_EQ(doc.OpenDocument(path), 1);
        const NodeRef discharge = doc.Root().GetOrCreateChild("Discharge");
        EXPECT_EQ(discharge.GetTyped<int32_t>("RightProfile", -1), 15) << "stored " << stored;
        EXPECT_EQ(discharge.GetTyped<int32_t>("LeftProfile", -1), 3);
        EXPECT_EQ(doc.Measurement().ProfileCount, 13);
    }
}

TEST_F(DocumentOpen, PmkFixesGiveTheGpsOfRecordsWithoutAGpsBlock) {
    const std::string recorded = t.folder.File("EXT.kvr");
    RecordRiver(recorded, 40, [](sim::RiverScenario& s) { s.gps = sim::GpsSource::External; });
    RewriteRecording(recorded, path, {}, [](ProfileRecord& r, int) { r.hasGps = false; });
    std::filesystem::copy_file(t.folder.File("EXT.pmk"), t.folder.File("RUN.pmk"));

    CSurveyKVRDoc withBlocks(t.app, t.prompt);
    ASSERT_EQ(withBlocks.OpenDocument(recorded), 1);
    CSurveyKVRDoc fromPmk(t.app, t.prompt);
    ASSERT_EQ(fromPmk.OpenDocument(path), 1);
    EXPECT_EQ(fromPmk.Data().Layout().gps, GpsForm::None);

    // From the second profile on, the block built from the fixes of the .pmk is the block the
    // instrument stored: the fix before the profile and the fix at its end.
    for (int item = 2; item <= 40; ++item) {
        const SlotResults* a = withBlocks.ResultsOf(item);
        const SlotResults* b = fromPmk.ResultsOf(item);
        ASSERT_TRUE(a != nullptr && b != nullptr);
        ASSERT_TRUE(b->gpsPresent);
        EXPECT_NEAR(b->gps.startLatitude, a->gps.startLatitude, 1e-9) << item;
        EXPECT_NEAR(b->gps.endLongitude, a->gps.endLongitude, 1e-9) << item;
        EXPECT_NEAR(b->gps.endTime, a->gps.endTime, 1e-6) << item;
    }
    // The first profile has no earlier fix: no velocity can be measured over it.
    EXPECT_EQ(fromPmk.ResultsOf(1)->gps.startTime, fromPmk.ResultsOf(1)->gps.endTime);

    fromPmk.SetTrackReference(kTrackRefGps);
    fromPmk.SetVelocityReference(kVelocityRefGps);
    fromPmk.Recompute();
    withBlocks.SetTrackReference(kTrackRefGps);
    withBlocks.SetVelocityReference(kVelocityRefGps);
    withBlocks.Recompute();
    const CDischargeData& m = fromPmk.Measurement();
    const CDischargeData& ref = withBlocks.Measurement();
    EXPECT_NEAR(m.MiddleDischarge, ref.MiddleDischarge, 0.02 * std::fabs(ref.MiddleDischarge));
    EXPECT_GT(m.MadeGood, 30.0f);
}

TEST_F(DocumentOpen, PmkEchoSounderLinesGiveTheDepthOfEachProfile) {
    const sim::RecordingResult r = RecordRiver(path, 25, [](sim::RiverScenario& s) {
        s.echoSounder = true;
        s.crossing.pitchDeg = 3.0;
        s.crossing.rollDeg = 2.0;
    });
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    ASSERT_TRUE(AssignSetting(doc.Root(), "EchoSounder/TransducerDepth=0.2").ok);
    doc.SettingsChanged();
    sim::VirtualRiver river;  // the scenario's river: the defaults
    for (int item = 1; item <= 25; ++item) {
        const SlotResults* s = doc.ResultsOf(item);
        ASSERT_NE(s, nullptr);
        EXPECT_EQ(s->echoStatus, 2);
        EXPECT_NEAR(s->echoDepth, river.Depth(r.plan.profiles[static_cast<size_t>(item - 1)].y), 0.01) << item;
    }
    EXPECT_TRUE(doc.Running().echoDepthSeen);
}

}  // namespace
}  // namespace rm
