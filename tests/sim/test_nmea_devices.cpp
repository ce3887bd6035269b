// The simulated GPS receiver and echo sounder on pseudo-terminals, read with the project's
// NMEA port readers.

#include <cstdio>
#include <cstdlib>

#include "data/nmea_echo_depth.h"
#include "data/nmea_gps_fix.h"
#include "link/nmea_port_reader.h"
#include "live_device_fixture.h"

namespace rm::simtest {
namespace {

// The checksum of a sentence: the XOR of every character between "$" and "*", in two hex digits.
bool ChecksumHolds(const std::string& line) {
    const size_t star = line.find('*');
    if (line.empty() || line[0] != '$' || star == std::string::npos || star + 3 > line.size()) return false;
    unsigned sum = 0;
    for (size_t i = 1; i < star; ++i) sum ^= static_cast<uint8_t>(line[i]);
    return std::strtoul(line.substr(star + 1, 2).c_str(), nullptr, 16) == sum;
}

class NmeaDevice : public LiveDevice {};

TEST_F(NmeaDevice, GpsSendsCheckedSentencesOfTheBoatsStartPosition) {
    Launch({"gps", "--rate", "5", "--lat", "45", "--lon", "7"}, true, 4800);
    ASSERT_FALSE(HasFatalFailure());
    NmeaPortReader gps = MakeGpsPortReader();
    int bytes = 0;
    GpsFix fix;
    ASSERT_EQ(WaitForFix(gps, port.get(), 3000, nullptr, bytes, &fix), 1);
    // The boat starts at the reference point and moves 0.5 m/s: within a few seconds it stays
    // within metres of it (1e-4 degree is about 8 m here).
    EXPECT_NEAR(fix.Latitude, 45.0, 1e-4);
    EXPECT_NEAR(fix.Longitude, 7.0, 1e-4);
    EXPECT_GT(fix.Satellites, 3);
    std::string line;
    int checked = 0;
    for (int i = 0; i < 4; ++i) {
        if (port->ReadStringTimed(line, 200, kLineEnd, 1000) <= 0) break;
        while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
        EXPECT_TRUE(ChecksumHolds(line)) << line;
        EXPECT_TRUE(line.rfind("$GPGGA,", 0) == 0 || line.rfind("$GPRMC,", 0) == 0) << line;
        ++checked;
    }
    EXPECT_EQ(checked, 4);
}

TEST_F(NmeaDevice, EchoSounderTellsTheDepthUnderTheBoat) {
    Launch({"echo", "--rate", "5"}, true, 4800);
    ASSERT_FALSE(HasFatalFailure());
    NmeaPortReader echo = MakeEchoPortReader(EchoSounderSettings{});
    int bytes = 0;
    ASSERT_EQ(WaitForDepth(echo, port.get(), 3000, nullptr, bytes), 1);
    EchoSounderSettings settings;
    settings.TransducerDepth = 0.2;
    const double depth = ReadEchoDepth(echo.Sentences(), settings, 0.0, 0.0, 1.0);
    // The default crossing of 100 s at 0.5 m/s is centred in the 60 m river, so it starts 5 m
    // from the left bank, where the parabolic bed is 4 (1 - (2 x 5 / 60 - 1)^2) = 1.222 m deep;
    // with the sounder's 0.20 m added back, that depth comes out. The bed there rises 0.22 m per
    // metre, and the boat moves 0.5 m in each of the first seconds.
    EXPECT_NEAR(depth, 1.222, 0.15);
}

}  // namespace
}  // namespace rm::simtest
