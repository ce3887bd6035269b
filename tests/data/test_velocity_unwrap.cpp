// Unwrapping of pulse-coherent velocities on constructed wrapped data.

#include <gtest/gtest.h>

#include <vector>

#include "data/byte_io.h"
#include "data/velocity_unwrap.h"

namespace rm {
namespace {

struct Records {
    InstrumentConf conf;
    OperationRecord oper;
    UserSetup user;
};

Records BlockLimitSetup() {
    Records s;
    s.conf.CPUSoftwareVerNum = 120;  // limit from the shallow-water block
    s.conf.KvrType = 5;
    s.user.PCMode = 1;
    s.user.CellSizeCm = 10.0f;
    s.user.BlankDistance = 5;
    return s;
}

// A record of one beam per entry of `beams`, with a shallow-water block whose half limit is
// `halfLimit`.
ProfileRecord Wrapped(const std::vector<std::vector<int16_t>>& beams, uint16_t halfLimit) {
    ProfileRecord r;
    r.Resize(static_cast<int>(beams.front().size()), static_cast<int>(beams.size()));
    r.hasShallowWater = true;
    ByteWriter(r.shallowWater.data(), r.shallowWater.size()).u16(10, halfLimit);
    for (size_t b = 0; b < beams.size(); ++b) {
        for (size_t c = 0; c < beams[b].size(); ++c) r.Velocity(static_cast<int>(b), static_cast<int>(c)) = beams[b][c];
    }
    return r;
}

std::vector<int16_t> Beam(const ProfileRecord& r, int b) {
    std::vector<int16_t> v;
    for (int c = 0; c < r.cells; ++c) v.push_back(r.Velocity(b, c));
    return v;
}

// True velocity wrapped into [-L, L] with period 2 L.
int16_t Wrap(int v, int L) {
    int w = v % (2 * L);
    if (w > L) w -= 2 * L;
    if (w < -L) w += 2 * L;
    return static_cast<int16_t>(w);
}

TEST(VelocityUnwrap, RecoversARisingProfileFromItsWrappedValues) {
    const Records s = BlockLimitSetup();
    // L = 100: the velocities 50, 80, ..., 260 rise beyond the limit, and -40, -65, ..., -215
    // fall beyond it. Each cell is moved by 2 L at most once, so the walk follows a profile
    // that stays within about 3 L of zero.
    std::vector<int16_t> truth, wrapped, falling, fallingWrapped;
    for (int c = 0; c < 8; ++c) {
        truth.push_back(static_cast<int16_t>(50 + 30 * c));
        wrapped.push_back(Wrap(50 + 30 * c, 100));
        falling.push_back(static_cast<int16_t>(-40 - 25 * c));
        fallingWrapped.push_back(Wrap(-40 - 25 * c, 100));
    }
    ProfileRecord r = Wrapped({wrapped, fallingWrapped}, 50);
    const UnwrapParameters p = ComputeUnwrapParameters(r, s.conf, s.oper, s.user);
    EXPECT_EQ(p.limit, 100.0);
    UnwrapVelocities(r, p, 1.0, 10);
    EXPECT_EQ(Beam(r, 0), truth);
    EXPECT_EQ(Beam(r, 1), falling);
}

TEST(VelocityUnwrap, BadMarkersStayAndCarryTheRunningValueAtAnyScale) {
    const Records s = BlockLimitSetup();
    // Truth 60, 90, (bad), 150, (9999), 210 with L = 100; stored in tenths at scale 0.1.
    for (int16_t f : {1, 10}) {
        ProfileRecord r = Wrapped({{static_cast<int16_t>(60 * f), static_cast<int16_t>(90 * f), kBadVelocity,
                                    static_cast<int16_t>(-50 * f), kUnwrapBadVelocity, static_cast<int16_t>(10 * f)}},
                                  50);
        UnwrapVelocities(r, ComputeUnwrapParameters(r, s.conf, s.oper, s.user), 1.0 / f, 10);
        EXPECT_EQ(Beam(r, 0), (std::vector<int16_t>{static_cast<int16_t>(60 * f), static_cast<int16_t>(90 * f),
                                                    kBadVelocity, static_cast<int16_t>(150 * f), kUnwrapBadVelocity,
                                                    static_cast<int16_t>(210 * f)}));
    }
}

TEST(VelocityUnwrap, BeamIsShiftedToItsReferenceWhenTheCountIsAboveTheThreshold) {
    const Records s = BlockLimitSetup();
    // Truth 250..320: wrapped 50..120 -> 50, 60, 70, 80, 90, 100, -90, -80; unwrapping alone
    // gives 50..120, 200 too low. The reference over cells 2..4 says about 280.
    std::vector<int16_t> wrapped, truth;
    for (int c = 0; c < 8; ++c) {
        wrapped.push_back(Wrap(250 + 10 * c, 100));
        truth.push_back(static_cast<int16_t>(250 + 10 * c));
    }
    for (int count : {10, 11}) {
        ProfileRecord r = Wrapped({wrapped}, 50);
        ByteWriter block(r.shallowWater.data(), r.shallowWater.size());
        block.u16(4, 250);  // 25 cm: first cell (25 - 5) / 10 + 0.5 = 2.5 -> 2
        block.u16(6, 300);  // 30 cm: three cells
        block.i16(24, 275);
        block.u8(32, static_cast<uint8_t>(count));
        const UnwrapParameters p = ComputeUnwrapParameters(r, s.conf, s.oper, s.user);
        EXPECT_EQ(p.firstCell, 2);
        EXPECT_EQ(p.cellCount, 3);
        UnwrapVelocities(r, p, 1.0, 10);
        if (count > 10) {
            EXPECT_EQ(Beam(r, 0), truth);
        } else {
            EXPECT_EQ(Beam(r, 0)[0], 50);
            EXPECT_EQ(Beam(r, 0)[7], 120);
        }
    }
}

// Fast water in the finer unit: an unwrapped velocity beyond the 16-bit range is written back
// as the largest good value, never as the bad marker 32767, so the cell stays in the profile.
TEST(VelocityUnwrap, WriteBackStopsShortOfTheBadMarker) {
    const Records s = BlockLimitSetup();
    // L = 100 mm/s = 1000 counts at scale 0.1; truth 3250, 3276.7 and 3300 mm/s.
    const std::vector<int> truth{32500, 32767, 33000};
    std::vector<int16_t> wrapped;
    for (int v : truth) wrapped.push_back(Wrap(v, 1000));
    for (int sign : {1, -1}) {
        std::vector<int16_t> beam;
        for (int16_t v : wrapped) beam.push_back(static_cast<int16_t>(sign * v));
        ProfileRecord r = Wrapped({beam}, 50);
        ByteWriter block(r.shallowWater.data(), r.shallowWater.size());
        block.u16(4, 150);  // reference range: cell 1 ((15 - 5) / 10 + 0.5 -> 1), one cell
        block.u16(6, 100);
        block.i16(24, static_cast<int16_t>(sign * 3277));
        block.u8(32, 20);
        UnwrapVelocities(r, ComputeUnwrapParameters(r, s.conf, s.oper, s.user), 0.1, 10);
        const std::vector<int16_t> expected = sign > 0 ? std::vector<int16_t>{32500, 32766, 32766}
                                                       : std::vector<int16_t>{-32500, -32767, -32768};
        EXPECT_EQ(Beam(r, 0), expected) << sign;
    }
}

TEST(VelocityUnwrap, LimitFromSpeedOfSoundForFirmware16To19And150Up) {
    Records s = BlockLimitSetup();
    s.user.DefaultSpeedOfSound = 15000;
    s.oper.unwrapSamples = 1000;
    s.oper.unwrapPulses = 250;
    ProfileRecord r = Wrapped({{0, 0, 0}}, 50);
    const struct {
        uint8_t cpu;
        uint8_t kvrType;
        double limit;
    } cases[] = {
        {15, 5, 100.0},   // from the block: 2 x 50
        {16, 5, 28.0},    // 15000^2 x 0.125 / 1000 / 1000 = 28.125
        {19, 6, 225.0},   // KvrType 6 unwraps with 125 kHz: 225
        {20, 5, 100.0},
        {149, 5, 100.0},
        {150, 1, 19.0},   // / 1500: 18.75
    };
    for (const auto& c : cases) {
        s.conf.CPUSoftwareVerNum = c.cpu;
        s.conf.KvrType = c.kvrType;
        const UnwrapParameters p = ComputeUnwrapParameters(r, s.conf, s.oper, s.user);
        EXPECT_EQ(p.limit, c.limit) << "firmware " << int(c.cpu);
        if (c.cpu == 16) {
            EXPECT_EQ(p.pulseCount, 4.0);
        }
    }
    // No sample count: no limit, and the velocities are left alone.
    s.conf.CPUSoftwareVerNum = 160;
    s.oper.unwrapSamples = 0;
    ProfileRecord jumpy = Wrapped({{90, -90, 90}}, 50);
    const UnwrapParameters none = ComputeUnwrapParameters(jumpy, s.conf, s.oper, s.user);
    EXPECT_EQ(none.limit, 0.0);
    UnwrapVelocities(jumpy, none, 1.0, 10);
    EXPECT_EQ(Beam(jumpy, 0), (std::vector<int16_t>{90, -90, 90}));
}

TEST(VelocityUnwrap, ReferenceRangeIsClampedToTheProfile) {
    const Records s = BlockLimitSetup();
    ProfileRecord r = Wrapped({std::vector<int16_t>(10, 0)}, 50);
    ByteWriter block(r.shallowWater.data(), r.shallowWater.size());
    const struct {
        uint16_t start, length;
        int first, count;
    } cases[] = {
        {0, 0, 1, 1},        // (0 - 5) / 10 + 0.5 -> 0, raised to 1; length 0 -> at least 1
        {250, 340, 2, 3},    // 3.4 + 0.5 -> 3
        {250, 350, 2, 4},    // 3.5 + 0.5 -> 4
        {2000, 100, 9, 1},   // far below the profile: cells - 1
        {850, 500, 8, 2},    // 5 cells asked, 2 left
    };
    for (const auto& c : cases) {
        block.u16(4, c.start);
        block.u16(6, c.length);
        const UnwrapParameters p = ComputeUnwrapParameters(r, s.conf, s.oper, s.user);
        EXPECT_EQ(p.firstCell, c.first) << c.start << " " << c.length;
        EXPECT_EQ(p.cellCount, c.count) << c.start << " " << c.length;
    }
}

TEST(VelocityUnwrap, RunsOnlyInPulseCoherentModeWithAShallowWaterBlock) {
    Records s = BlockLimitSetup();
    DerivedValues derived;
    derived.shallowWaterVelocityFactor = 1.0;
    ProfileRecord r = Wrapped({{50, 80, -90}}, 50);
    EXPECT_TRUE(UnwrapProfile(r, s.conf, s.oper, s.user, derived, 10));
    EXPECT_EQ(Beam(r, 0)[2], 110);
    ProfileRecord noBlock = Wrapped({{50, 80, -90}}, 50);
    noBlock.hasShallowWater = false;
    EXPECT_FALSE(UnwrapProfile(noBlock, s.conf, s.oper, s.user, derived, 10));
    EXPECT_EQ(Beam(noBlock, 0)[2], -90);
    s.user.PCMode = 0;
    ProfileRecord ordinary = Wrapped({{50, 80, -90}}, 50);
    EXPECT_FALSE(UnwrapProfile(ordinary, s.conf, s.oper, s.user, derived, 10));
    EXPECT_EQ(Beam(ordinary, 0)[2], -90);
}

}  // namespace
}  // namespace rm
