// Changes of settings on an open recording: the recomputation they run, what the .cfg keeps
// across a close and a new open (and what a locked measurement does not keep), the start bank,
// and a profile that cannot be read in the middle of the recomputation.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "app/settings_path.h"
#include "document_test_support.h"
#include "processing/processing_steps.h"

namespace rm {
namespace {

using doctest::RecordRiver;
using doctest::TestApp;
using doctest::WithFailingProfiles;

class DocumentSettings : public ::testing::Test {
protected:
    void SetUp() override {
        RecordRiver(path, 40, [](sim::RiverScenario& s) {
            s.gps = sim::GpsSource::Internal;
            s.crossing.pitchDeg = 2.0;
            s.crossing.rollDeg = 3.0;
            s.velocityNoiseCms = 1.0;
        });
    }

    static void Set(CSurveyKVRDoc& doc, const std::string& assignment) {
        const SettingAssignment result = AssignSetting(doc.Root(), assignment);
        ASSERT_TRUE(result.ok) << result.message;
    }

    TestApp t;
    std::string path = t.folder.File("SET.kvr");
};

void ExpectSameMeasurement(const CDischargeData& a, const CDischargeData& b) {
    EXPECT_EQ(a.ProfileCount, b.ProfileCount);
    for (float CDischargeData::*part : {&CDischargeData::TopDischarge, &CDischargeData::MiddleDischarge,
                                        &CDischargeData::BottomDischarge, &CDischargeData::LeftDischarge,
                                        &CDischargeData::RightDischarge, &CDischargeData::TotalDischarge,
                                        &CDischargeData::MadeGood, &CDischargeData::TotalWidth,
                                        &CDischargeData::MaxPitch, &CDischargeData::MaxRoll})
        EXPECT_EQ(a.*part, b.*part);
    EXPECT_EQ(a.Area, b.Area);
    EXPECT_EQ(a.MeanStandardDeviation, b.MeanStandardDeviation);
}

TEST_F(DocumentSettings, RecomputeAfterAChangeEqualsAFreshOpenWithThoseSettings) {
    CSurveyKVRDoc changed(t.app, t.prompt);
    ASSERT_EQ(changed.OpenDocument(path), 1);
    const float before = changed.Measurement().TotalDischarge;
    for (const char* change : {"Discharge/ProfileExtrapolation/TopFitType=0", "Discharge/LeftBankMethod=1",
                               "Discharge/CorrectedLeftDistance=4.5", "Discharge/CorrectedRightDistance=3.0",
                               "Discharge/LeftProfile=3"})
        Set(changed, change);
    changed.SetTrackReference(kTrackRefGps);
    changed.SettingsChanged();
    EXPECT_NE(changed.Measurement().TotalDischarge, before);
    EXPECT_GT(changed.Measurement().LeftDischarge, 0.0f);
    ASSERT_TRUE(changed.OnCloseDocument());

    CSurveyKVRDoc fresh(t.app, t.prompt);
    ASSERT_EQ(fresh.OpenDocument(path), 1);
    EXPECT_EQ(fresh.Settings().TrackReference, kTrackRefGps);
    EXPECT_EQ(fresh.Settings().TopFitType, 0);

    // The change reran everything up to the current profile, exactly as the fresh open did.
    CSurveyKVRDoc again(t.app, t.prompt);
    ASSERT_EQ(again.OpenDocument(path), 1);
    again.SettingsChanged();
    ExpectSameMeasurement(again.Measurement(), fresh.Measurement());
    fresh.Recompute();
    ExpectSameMeasurement(again.Measurement(), fresh.Measurement());
    for (int item = 1; item <= 40; ++item) {
        EXPECT_EQ(again.ResultsOf(item)->processed.TotalQ, fresh.ResultsOf(item)->processed.TotalQ) << item;
        EXPECT_EQ(again.ResultsOf(item)->meanDepth, fresh.ResultsOf(item)->meanDepth) << item;
    }
}

TEST_F(DocumentSettings, StartBankOneFlipsTheSignOfEveryPart) {
    CSurveyKVRDoc left(t.app, t.prompt);
    ASSERT_EQ(left.OpenDocument(path), 1);
    CSurveyKVRDoc right(t.app, t.prompt);
    ASSERT_EQ(right.OpenDocument(path), 1);
    Set(right, "Discharge/CorrectedStartBankSide=1");
    right.SettingsChanged();
    const CDischargeData& a = left.Measurement();
    const CDischargeData& b = right.Measurement();
    ASSERT_GT(a.MiddleDischarge, 1.0f);
    for (float CDischargeData::*part : {&CDischargeData::TopDischarge, &CDischargeData::MiddleDischarge,
                                        &CDischargeData::BottomDischarge, &CDischargeData::TotalDischarge})
        EXPECT_FLOAT_EQ(b.*part, -(a.*part));
    for (int item = 1; item <= 40; ++item)
        EXPECT_FLOAT_EQ(right.ResultsOf(item)->processed.TotalQ, -left.ResultsOf(item)->processed.TotalQ);
}

TEST_F(DocumentSettings, LockedMeasurementIsNotSavedOnClose) {
    {
        CSurveyKVRDoc doc(t.app, t.prompt);
        ASSERT_EQ(doc.OpenDocument(path), 1);
        Set(doc, "Discharge/NumBadBeams=1");
        ASSERT_TRUE(doc.LockMeasurement());  // written at once, with the change made so far
        EXPECT_TRUE(doc.FileIsLocked());
        EXPECT_TRUE(std::filesystem::exists(t.folder.File("SET.cfg")));
        Set(doc, "Discharge/NumBadBeams=2");
        doc.SetCoordinateSystem(kCoordXyz);
        ASSERT_TRUE(doc.OnCloseDocument());
    }
    CSurveyKVRDoc reopened(t.app, t.prompt);
    ASSERT_EQ(reopened.OpenDocument(path), 1);
    EXPECT_TRUE(reopened.FileIsLocked());
    EXPECT_EQ(reopened.Settings().NumBadBeams, 1);
    EXPECT_EQ(reopened.Settings().CoordinateSystem, kCoordEnu);

    // Unlocking writes at once again; from then on closing saves.
    ASSERT_TRUE(reopened.LockMeasurement());
    EXPECT_FALSE(reopened.FileIsLocked());
    reopened.SetCoordinateSystem(kCoordXyz);
    ASSERT_TRUE(reopened.OnCloseDocument());
    CSurveyKVRDoc third(t.app, t.prompt);
    ASSERT_EQ(third.OpenDocument(path), 1);
    EXPECT_EQ(third.Settings().CoordinateSystem, kCoordXyz);
}

TEST_F(DocumentSettings, VelocityReferenceDrawsTheTrackReferenceOnlyWhenLinked) {
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    doc.SetVelocityReference(kVelocityRefGps);
    EXPECT_EQ(doc.Values().display.trackReference, kTrackRefGps);
    doc.SetVelocityReference(kVelocityRefInstrument);
    EXPECT_EQ(doc.Values().display.trackReference, kTrackRefGps);
    t.app.Set(app_keys::VelocityTrackReference, 0);
    doc.SetVelocityReference(kVelocityRefBottomTrack);
    EXPECT_EQ(doc.Values().display.trackReference, kTrackRefGps);
}

TEST_F(DocumentSettings, AnUnreadableProfileKeepsTheTrackContinuousWithNoDischarge) {
    CSurveyKVRDoc whole(t.app, t.prompt);
    ASSERT_EQ(whole.OpenDocument(path), 1);
    ASSERT_TRUE(whole.Recompute());
    CSurveyKVRDoc gap(t.app, t.prompt, kModePlayback, WithFailingProfiles({19}));
    ASSERT_EQ(gap.OpenDocument(path), 1);  // the first window stops before the bad profile
    t.prompt.messages.clear();
    ASSERT_TRUE(gap.Recompute());           // the recomputation goes over it
    EXPECT_TRUE(t.prompt.messages.empty());
    EXPECT_EQ(gap.CurrentProfile(), 40);

    const SlotResults& lost = *gap.ResultsOf(20);
    EXPECT_FALSE(lost.readOk);
    EXPECT_EQ(lost.processed.TotalQ, 0.0f);
    EXPECT_EQ(lost.processed.MiddleQ, 0.0f);
    const TrackPoint& before = gap.ResultsOf(19)->bottomTrackPoint;
    EXPECT_EQ(lost.bottomTrackPoint.East, before.East);
    EXPECT_EQ(lost.bottomTrackPoint.North, before.North);
    EXPECT_EQ(lost.gpsTrackPoint.East, gap.ResultsOf(19)->gpsTrackPoint.East);

    // The profile after it moves on from there by its own step, as it does in the whole file.
    const TrackPoint& after = gap.ResultsOf(21)->bottomTrackPoint;
    const TrackPoint& after0 = whole.ResultsOf(21)->bottomTrackPoint;
    const TrackPoint& lost0 = whole.ResultsOf(20)->bottomTrackPoint;
    EXPECT_NEAR(after.East - before.East, after0.East - lost0.East, 1e-9);
    EXPECT_NEAR(after.North - before.North, after0.North - lost0.North, 1e-9);

    // Everything else is unchanged: the sums lack exactly the lost profile's discharge.
    const double lostQ = whole.ResultsOf(20)->processed.MiddleQ;
    EXPECT_GT(lostQ, 0.0);
    EXPECT_NEAR(gap.Measurement().MiddleDischarge, whole.Measurement().MiddleDischarge - lostQ, 2e-3);
    EXPECT_EQ(gap.ResultsOf(21)->processed.TotalQ, whole.ResultsOf(21)->processed.TotalQ);
}

TEST_F(DocumentSettings, ReprocessingTheRingAfterAFullPassChangesNothing) {
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    std::vector<SlotResults> before(doc.Slots());
    ProcessingContext ctx = doc.Context();
    ReprocessRing(ctx);
    for (size_t i = 0; i < before.size(); ++i) {
        const SlotResults &a = before[i], &b = doc.Slots()[i];
        EXPECT_EQ(a.meanDepth, b.meanDepth);
        EXPECT_EQ(a.bottomTrack.Velocity, b.bottomTrack.Velocity);
        EXPECT_EQ(a.bottomTrackPoint.East, b.bottomTrackPoint.East);
        EXPECT_EQ(a.waterCells, b.waterCells);
    }
    EXPECT_EQ(doc.Running().count, 40);
}

}  // namespace
}  // namespace rm
