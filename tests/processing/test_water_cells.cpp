// CountWaterCells: the discard rules and their clamps, the SNR cut, and the tests of the
// shallow-water cell. Cells of 0.5 m after 0.5 m blanking, transducer at the surface, so the
// cells fitting above a depth d are truncate((d - 0.75) / 0.5).

#include <gtest/gtest.h>

#include "processing/chain_fixture.h"
#include "processing/processing_steps.h"
#include "processing/signal_to_noise.h"

namespace rm::test {
namespace {

class WaterCellsTest : public ChainFixture {
protected:
    void SetUp() override { Prepare(1); }
    void Prepare(int bottomTrackMode) {
        Build(kCoordEnu, bottomTrackMode);
        SetSignal(0, 100);
        settings.VelocityReference = kVelocityRefInstrument;
        Depth(4.0f);
    }
    void Depth(float d) { slots[0].meanDepth = slots[0].minDepth = d; }
    int Count(bool useShallow = false) { return CountWaterCells(ctx, 0, useShallow, shallow); }
    int shallow = -1;
};

TEST_F(WaterCellsTest, DiscardByPercentOrByCells) {
    EXPECT_EQ(Count(), 5);  // (3.6 - 0.75) / 0.5 = 5.7
    settings.DiscardType = 0;
    EXPECT_EQ(Count(), 5);  // 6 cells less one
    settings.DiscardCells = 7;
    EXPECT_EQ(Count(), 0);
    settings.DiscardType = 2;
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(shallow, 0);
}

TEST_F(WaterCellsTest, CountIsClampedToTheProfile) {
    settings.DiscardPercent = 100;
    EXPECT_EQ(Count(), 0);  // truncate(-1.5)
    settings.DiscardPercent = 10;
    Depth(10.0f);
    EXPECT_EQ(Count(), 8);
    Depth(MissingValueF);
    EXPECT_EQ(Count(), 0);
}

TEST_F(WaterCellsTest, FirstWeakCellInAnyBeamEndsTheProfile) {
    Raw(0).Amplitude(1, 3) = 6;  // 2.58 dB
    EXPECT_EQ(Count(), 3);
    // A cell whose SNR equals the threshold is not weak.
    settings.SnrThreshold = CellSnr(Raw(0), 1, 3);
    EXPECT_EQ(Count(), 5);
    settings.SnrThreshold = 3.0;
    Raw(0).header.raw[26 + 2] = 95;  // beam 3 noise: 5 counts above it everywhere
    EXPECT_EQ(Count(), 0);
    settings.SnrThreshold = 2.0;
    EXPECT_EQ(Count(), 5);
}

class ShallowCellTest : public WaterCellsTest {
protected:
    void SetUp() override {
        Prepare(2);
        data.conf.reserved4 = 10;   // blank 0.1 m
        data.conf.reserved8 = 20;   // pulse 0.2 m, half of it counts
        data.conf.reserved89[3] = 30;  // cell 0.3 m: far end at 0.5 m
        for (size_t b = 0; b < 4; ++b) Raw(0).shallowWater[20 + b] = 50;
        slots[0].bottomTrack.Velocity = {0.1f, 0.0f, 0.0f, 0.0f};
        SetCell(0, 0, {0, 0, 0, 0});
        Depth(1.0f);
    }
};

TEST_F(ShallowCellTest, CellCountsWhenEveryTestPasses) {
    EXPECT_EQ(Count(true), 0);
    EXPECT_EQ(shallow, 1);
    EXPECT_EQ(Count(false), 0);
    EXPECT_EQ(shallow, 0);
    Depth(0.5f);  // the cell would reach the bed
    Count(true);
    EXPECT_EQ(shallow, 0);
}

TEST_F(ShallowCellTest, TooManyWaterCellsDropTheShallowCell) {
    Depth(4.0f);
    EXPECT_EQ(Count(true), 5);
    EXPECT_EQ(shallow, 0);
    settings.UseWaterCells = false;
    Count(true);
    EXPECT_EQ(shallow, 1);
}

TEST_F(ShallowCellTest, FirstCellTestComparesTheSignedVelocity) {
    SetCell(0, 0, {0, 900, 0, 0});  // 0.9 m/s north, above 0.85 x 1.0
    Count(true);
    EXPECT_EQ(shallow, 0);
    SetCell(0, 0, {0, -900, 0, 0});
    Count(true);
    EXPECT_EQ(shallow, 1);
    SetCell(0, 0, {0, 32767, 0, 0});  // a bad first cell counts as 327.67 m/s
    Count(true);
    EXPECT_EQ(shallow, 0);
}

TEST_F(ShallowCellTest, FastBoatOrWeakCorrelationDropTheShallowCell) {
    slots[0].bottomTrack.Velocity = {0.6f, -0.7f, 0.0f, 0.0f};  // 0.92 m/s
    Count(true);
    EXPECT_EQ(shallow, 0);
    EXPECT_DOUBLE_EQ(slots[0].processed.BottomTrackEast, 0.6f);
    slots[0].bottomTrack.Velocity = {0.1f, 0.0f, 0.0f, 0.0f};
    Raw(0).shallowWater[22] = 9;
    Count(true);
    EXPECT_EQ(shallow, 0);
}

}  // namespace
}  // namespace rm::test
