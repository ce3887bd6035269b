#pragma once
// A data set in memory for the discharge steps: a 4-beam instrument recording in ENU with 8 cells
// of 50 cm after 50 cm blanking, transducer at the surface, 2 s averaging interval, ring of 8.
// Velocities are taken relative to the instrument (no reference), so a cell holds exactly the
// water velocity written into it; the boat vector comes from the bottom-track result set by the
// test. The geometry puts the top edge of cell 0 at 0.75 m and its centre at 1.0 m.

#include <cmath>
#include <functional>

#include "data/byte_io.h"
#include "processing/chain_fixture.h"
#include "processing/processing_steps.h"

namespace rm::test {

struct ProfileScene {
    double depth = 5.0;  // m, mean and minimum
    int waterCells = 6;
    int shallowCells = 0;
    // Water velocity (East, North) of cell j, cm/s.
    std::function<Vector2(int)> cellVelocity = [](int) { return Vector2{0.0, 100.0}; };
    Vector2 bottomTrack{-1.0, 0.0};  // m/s: the bed moves west, the boat east
    TrackPoint track;                // bottom-track track point
    uint32_t pings = 10;
    int depthStatus = 1;
    uint8_t bottomStatus = kBottomGood;
};

class DischargeFixture : public ChainFixture {
protected:
    static constexpr int kRing = 8;
    static constexpr double kCell = 0.5;

    void BuildDischarge(int bottomTrackMode = 1) {
        Build(kCoordEnu, bottomTrackMode, 8, kRing);
        settings.VelocityReference = kVelocityRefInstrument;
        settings.TrackReference = kTrackRefBottomTrack;
        settings.LeftProfile = 1;
        settings.RightProfile = kRing;
        discharge.Interval = 2.0;
        state.count = 0;
    }

    void SetProfile(int index, const ProfileScene& p) {
        const int slot = index % kRing;
        for (int j = 0; j < 8; ++j) {
            const Vector2 v = p.cellVelocity(j);
            const auto raw = [](double cms) {
                return cms >= MissingValue ? kBadVelocity : static_cast<int16_t>(std::lround(cms * 10.0));
            };
            SetCell(slot, j, {raw(v.East), raw(v.North), 0, 0});
        }
        SetSignal(slot, 100);  // 43 dB in every cell, so that the cell count of the edges sees water
        Raw(slot).header.pingCount = p.pings;
        SlotResults& r = slots[static_cast<size_t>(slot)];
        r.meanDepth = r.minDepth = static_cast<float>(p.depth);
        r.processed.DepthStatus = p.depthStatus;
        r.waterCells = p.waterCells;
        r.shallowCells = p.shallowCells;
        r.shallowWaterFlag = p.shallowCells > 0 ? 1 : 0;
        r.bottomTrack.Velocity = {static_cast<float>(p.bottomTrack.East), static_cast<float>(p.bottomTrack.North), 0.0f,
                                  0.0f};
        r.bottomTrack.flag = 1;
        r.bottomStatus = p.bottomStatus;
        r.bottomTrackPoint = p.track;
    }

    // Takes profile `index` (from 0) in as the newest one and computes its discharge.
    void Take(int index) {
        state.count = index + 1;
        ComputeProfileDischarge(ctx, index % kRing);
    }

    void TakeProfile(int index, const ProfileScene& p) {
        SetProfile(index, p);
        Take(index);
    }

    const ProcessedProfile& Result(int index) const { return slots[static_cast<size_t>(index % kRing)].processed; }

    // Lengths of the shallow-water cell in cm: blanking, pulse, cell size.
    void SetShallowGeometry(uint32_t blankCm, uint32_t pulseCm, uint32_t cellCm) {
        data.conf.reserved4 = blankCm;
        data.conf.reserved8 = pulseCm;
        ByteWriter w(data.conf.reserved89.data(), data.conf.reserved89.size());
        w.u32(3, cellCm);
    }

    void SetShallowVelocity(int slot, int16_t eastRaw, int16_t northRaw, uint8_t correlation = 90) {
        ByteWriter w(Raw(slot).shallowWater.data(), Raw(slot).shallowWater.size());
        w.i16(12, eastRaw);
        w.i16(14, northRaw);
        w.i16(16, 0);
        w.i16(18, 0);
        for (size_t b = 0; b < 4; ++b) w.u8(20 + b, correlation);
    }
};

// Relative closeness for values that pass through the single-precision 0.01 of the discharge.
inline ::testing::AssertionResult Close(double actual, double expected, double relative = 1e-6) {
    const double tolerance = relative * std::max(std::fabs(expected), 1e-12);
    if (std::fabs(actual - expected) <= tolerance) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << actual << " differs from " << expected << " by more than " << tolerance;
}

}  // namespace rm::test
