// Selecting and averaging profiles on load, against means worked out by hand.

#include <gtest/gtest.h>

#include "data/kvr_data.h"
#include "data/test_data_file_support.h"

namespace rm {
namespace {

constexpr int16_t X = kBadVelocity;

struct Sample {
    int16_t v00, v01, v10, v11;  // velocity of beam b, cell c as vBC
    uint8_t a00, a01;            // amplitude of beam 0
    uint8_t e10, e11;            // standard error of beam 1
    float temperature, conductivity;
};

// Six profiles of 2 cells and 2 beams with CTD and GPS.
const Sample kSamples[6] = {
    {10, 10, -10, X, 1, 1, 3, 0, 10.0f, 1.0f},
    {20, X, -21, X, 2, 2, 4, 0, 11.0f, 2.0f},
    {33, 21, X, X, 4, 2, 4, 1, 12.5f, 3.0f},
    {40, 0, 1, 2, 10, 20, 5, 5, 20.0f, 4.0f},
    {50, 0, 2, 2, 11, 20, 5, 5, 20.0f, 5.0f},
    {61, 0, 4, X, 12, 20, 5, 5, 20.0f, 6.0f},
};

class DataFileAveraging : public ::testing::Test {
protected:
    void SetUp() override {
        test::InstrumentShape shape;
        shape.cells = 2;
        shape.beams = 2;
        shape.ctd = true;
        shape.internalGps = true;
        test::WriteRecording(dir_.File("avg.kvr"), shape, 6, [](ProfileRecord& p, int i) {
            const Sample& s = kSamples[i];
            p.header.profileNumber = static_cast<uint32_t>(100 + i);
            p.Velocity(0, 0) = s.v00;
            p.Velocity(0, 1) = s.v01;
            p.Velocity(1, 0) = s.v10;
            p.Velocity(1, 1) = s.v11;
            p.Amplitude(0, 0) = s.a00;
            p.Amplitude(0, 1) = s.a01;
            p.StdError(1, 0) = s.e10;
            p.StdError(1, 1) = s.e11;
            p.ctd.temperature = s.temperature;
            p.ctd.conductivity = s.conductivity;
            p.gps = {1000.0 + i, 40.0 + i, 5.0 + i, 2000.0 + i, 50.0 + i, 6.0 + i};
        });
        ASSERT_TRUE(data_.OpenFile(dir_.File("avg.kvr")));
        ASSERT_EQ(data_.ReadHeader(false), kReadOk);
        ASSERT_EQ(data_.ProfileCount(), 6);
    }

    test::ScratchDir dir_;
    CKvrData data_;
};

TEST_F(DataFileAveraging, MeanOfThreeProfilesPerBeamAndCell) {
    data_.SetGrouping(3, GroupType::Average, 0);
    EXPECT_TRUE(data_.Averaging());
    EXPECT_EQ(data_.GroupCount(), 2);
    ASSERT_EQ(data_.LoadGroup(0, 0), kReadOk);
    const ProfileRecord& p = data_.Slot(0);
    EXPECT_EQ(p.Velocity(0, 0), 21);   // (10 + 20 + 33) / 3
    EXPECT_EQ(p.Velocity(0, 1), 16);   // (10 + 21) / 2 = 15.5, the bad one left out
    EXPECT_EQ(p.Velocity(1, 0), -16);  // (-10 - 21) / 2 = -15.5
    EXPECT_EQ(p.Velocity(1, 1), X);    // no good value
    EXPECT_EQ(p.Amplitude(0, 0), 2);   // 7 / 3
    EXPECT_EQ(p.Amplitude(0, 1), 2);   // 5 / 3
    EXPECT_EQ(p.StdError(1, 0), 4);    // 11 / 3
    EXPECT_EQ(p.StdError(1, 1), 0);    // 1 / 3
    EXPECT_NEAR(p.ctd.temperature, 33.5 / 3.0, 1e-5);
    EXPECT_NEAR(p.ctd.conductivity, 2.0, 1e-6);
    // GPS from the first fix of the first profile to the last fix of the last.
    EXPECT_EQ(p.gps.startTime, 1000.0);
    EXPECT_EQ(p.gps.startLatitude, 40.0);
    EXPECT_EQ(p.gps.endTime, 2002.0);
    EXPECT_EQ(p.gps.endLongitude, 8.0);
    EXPECT_EQ(p.header.profileNumber, 102u);  // the last header of the group

    ASSERT_EQ(data_.LoadGroup(1, 1), kReadOk);
    const ProfileRecord& q = data_.Slot(1);
    EXPECT_EQ(q.Velocity(0, 0), 50);  // (40 + 50 + 61) / 3 = 50.33
    EXPECT_EQ(q.Velocity(1, 0), 2);   // 7 / 3 = 2.33
    EXPECT_EQ(q.Velocity(1, 1), 2);
    EXPECT_EQ(q.Amplitude(0, 0), 11);
    EXPECT_NEAR(q.ctd.temperature, 20.0, 1e-5);
    EXPECT_EQ(q.header.profileNumber, 105u);
    EXPECT_EQ(data_.LoadGroup(2, 2), kReadOutOfRange);
}

TEST_F(DataFileAveraging, OnlyTheLastProfileOfAGroupReachesTheCacheSlot) {
    data_.SetGrouping(3, GroupType::Average, 1);
    EXPECT_EQ(data_.GroupCount(), 1);  // profiles 1 to 3; 4 and 5 make no whole group
    ASSERT_EQ(data_.LoadProfile(1, 7), kReadOk);
    ASSERT_EQ(data_.LoadProfile(2, 7), kReadOk);
    EXPECT_EQ(data_.Slot(7).Velocity(0, 0), X);  // still the fresh slot
    ASSERT_EQ(data_.LoadProfile(3, 7), kReadOk);
    EXPECT_EQ(data_.Slot(7).Velocity(0, 0), 31);  // (20 + 33 + 40) / 3
    EXPECT_EQ(data_.Slot(7).Velocity(0, 1), 11);  // (21 + 0) / 2 = 10.5
    EXPECT_EQ(data_.Slot(7).header.profileNumber, 103u);
    EXPECT_EQ(data_.Slot(7).gps.startTime, 1001.0);
}

TEST_F(DataFileAveraging, SelectEveryTakesSingleProfiles) {
    data_.SetGrouping(2, GroupType::SelectEvery, 1);
    EXPECT_FALSE(data_.Averaging());
    EXPECT_EQ(data_.GroupCount(), 2);
    ASSERT_EQ(data_.LoadGroup(0, 0), kReadOk);
    EXPECT_EQ(data_.Slot(0).header.profileNumber, 101u);
    ASSERT_EQ(data_.LoadGroup(2, 0), kReadOk);
    EXPECT_EQ(data_.Slot(0).header.profileNumber, 105u);
    EXPECT_EQ(data_.Slot(0).Velocity(0, 0), 61);

    data_.SetGrouping(1, GroupType::EveryProfile, 2);
    EXPECT_EQ(data_.GroupCount(), 4);
    ASSERT_EQ(data_.LoadGroup(1, 0), kReadOk);
    EXPECT_EQ(data_.Slot(0).header.profileNumber, 103u);
    // Average over 1 is no averaging at all.
    data_.SetGrouping(1, GroupType::Average, 0);
    EXPECT_FALSE(data_.Averaging());
    ASSERT_EQ(data_.LoadGroup(4, 0), kReadOk);
    EXPECT_EQ(data_.Slot(0).header.profileNumber, 104u);
}

}  // namespace
}  // namespace rm
