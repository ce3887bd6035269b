#pragma once
// A data set built in memory for the processing steps: instrument records set by hand, raw
// profiles written straight into the ring, and a ProcessingContext over them.
//
// The default instrument has four beams in a JANUS head whose matrix is easy to apply by hand:
// stored rows (1, -1, 0, 0), (0, 0, 1, -1), (0.5 x 4), (0.5, 0.5, -0.5, -0.5); after the signs of
// the downward mount, BeamToXyz = (1, -1, 0, 0), (0, 0, -1, 1), (-0.5 x 4), (0.5, 0.5, -0.5, -0.5).

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "data/byte_io.h"
#include "processing/discharge_data.h"
#include "processing/processing_context.h"

namespace rm::test {

// A GPS block whose end fix lies dLat, dLon degrees from its start, `seconds` later (below 60).
inline GpsBlock GpsBlockMoving(double lat, double lon, double dLon, double dLat, double seconds) {
    GpsBlock g;
    g.startTime = 120000.0;
    g.startLatitude = lat;
    g.startLongitude = lon;
    g.endTime = 120000.0 + seconds;
    g.endLatitude = lat + dLat;
    g.endLongitude = lon + dLon;
    return g;
}

class ChainFixture : public ::testing::Test {
protected:
    CKvrData data;
    std::vector<SlotResults> slots;
    RunningState state;
    ProcessingSettings settings;
    CDischargeData discharge;
    ProfileWorkingValues working;
    ProcessingContext ctx{data, slots, state, settings, discharge, working};

    // Records for `cells` cells of 50 cm after 50 cm blanking, transducer at 0, recorded in
    // `coordinates`, bottom-track mode `bottomTrack`, averaging interval 2 s, ring of `ring`.
    void Build(int coordinates = 2, int bottomTrack = 1, int cells = 8, int ring = 4) {
        InstrumentConf& c = data.conf;
        c.type = kConfType;
        c.version = 2;
        c.CPUSoftwareVerNum = 100;
        c.Nbeams = 4;
        c.SensorOrientation = 0;
        const std::array<int16_t, 16> m{1024, -1024, 0, 0, 0, 0, 1024, -1024, 512, 512, 512, 512, 512, 512, -512, -512};
        c.TransformationMatrix = m;
        UserSetup& u = data.user;
        u.NumberOfCells = static_cast<uint16_t>(cells);
        u.CellSizeCm = 50.0f;
        u.BlankDistance = 50;
        u.SensorDepth = 0;
        u.AveragingInterval = 2;
        u.CoordinateSystem = static_cast<uint8_t>(coordinates);
        u.BottomTrack = static_cast<uint8_t>(bottomTrack);
        u.DefaultTemperature = 150;
        u.DefaultSalinity = 0;
        Derive();
        data.SetCacheCapacity(ring);
        for (int s = 0; s < ring; ++s) {
            data.Slot(s).Resize(cells, 4);
            data.Slot(s).hasBottomTrack = bottomTrack != 0;
            data.Slot(s).hasShallowWater = bottomTrack == 2;
        }
        slots.assign(static_cast<size_t>(ring), SlotResults{});
        state.ring = ring;
        state.count = 1;
    }

    void Derive() { data.derived = DeriveValues(data.conf, data.oper, data.user); }

    ProfileRecord& Raw(int slot) { return data.Slot(slot); }

    void SetCell(int slot, int cell, std::array<int16_t, 4> raw) {
        for (int b = 0; b < 4; ++b) Raw(slot).Velocity(b, cell) = raw[static_cast<size_t>(b)];
    }

    void SetBottomTrack(int slot, uint8_t flag, std::array<uint16_t, 4> depthCm, std::array<int16_t, 4> velocity) {
        ByteWriter w(Raw(slot).bottomTrack.data(), Raw(slot).bottomTrack.size());
        w.u8(1, flag);
        for (size_t b = 0; b < 4; ++b) {
            w.u16(2 + 2 * b, depthCm[b]);
            w.i16(10 + 2 * b, velocity[b]);
        }
    }

    // Amplitudes of every cell and beam, and the noise of every beam.
    void SetSignal(int slot, uint8_t amplitude, uint8_t noise = 0) {
        ProfileRecord& r = Raw(slot);
        for (int b = 0; b < r.beams; ++b) {
            r.header.raw[26 + static_cast<size_t>(b)] = noise;
            for (int c = 0; c < r.cells; ++c) r.Amplitude(b, c) = amplitude;
        }
    }
};

}  // namespace rm::test
