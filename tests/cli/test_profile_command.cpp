// `ripplemark-cli profile` on a file written here with known values in every field: the decoding,
// the units, the text form and a record whose checksum fails. How the blocks follow the set-up of
// a recording is checked with info on the virtual river.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "cli/sim_recording.h"
#include "data/byte_io.h"
#include "data/kvr_data.h"
#include "sim/river_scenario.h"

namespace rm::test {
namespace {

using nlohmann::json;

// The written file: head 96 + 64 + 256 bytes; a record of 3 cells and 3 beams with bottom
// track (18), CTD (16), external sensor (8) and GPS (48) blocks:
// 80 + 18 + 16 + 8 + 48 + 4 x 3 x 3 + 2 = 208 bytes, velocities from byte 170 of the record.
constexpr long kHead = 416;
constexpr long kRecord = 208;
constexpr long kVelocityInRecord = 170;

ProfileRecord KnownProfile(uint32_t number, uint8_t second) {
    ProfileRecord r;
    r.Resize(3, 3);
    ProfileHeader& h = r.header;
    h.profileNumber = number;
    h.year = 2021; h.month = 3; h.day = 4; h.hour = 5; h.minute = 6; h.second = second; h.hundredths = 89;
    h.pingCount = 40;
    h.heading = 1234; h.pitch = -56; h.roll = 78;
    h.temperature = 1525;
    h.pressureCounts = 4321;
    h.inputVoltage = 60;

    r.hasBottomTrack = true;
    ByteWriter bt(r.bottomTrack.data(), r.bottomTrack.size());
    bt.u8(1, 1);
    const uint16_t ranges[4] = {380, 390, 400, 32767};
    const int16_t velocities[4] = {-500, 20, 30, 0};
    for (size_t b = 0; b < 4; ++b) {
        bt.u16(2 + 2 * b, ranges[b]);
        bt.i16(10 + 2 * b, velocities[b]);
    }
    r.hasCtd = true;
    r.ctd = {12.5f, 40.25f, 3.5f, 30.125f};
    r.hasExtSensor = true;
    r.extSensor = {11, 22, 33, 44};
    r.hasGps = true;
    r.gps = {100000.5, 45.1, 7.2, 100001.5, 45.2, 7.3};

    const int16_t velocity[3][3] = {{123, 32767, -40}, {9999, 0, -1}, {500, 501, 502}};
    for (int b = 0; b < 3; ++b) {
        for (int c = 0; c < 3; ++c) {
            r.Velocity(b, c) = velocity[b][c];
            r.StdError(b, c) = static_cast<uint8_t>(10 * b + c);
            r.Amplitude(b, c) = static_cast<uint8_t>(100 + 10 * b + c);
        }
    }
    return r;
}

// Profiles 7 and 8 with known values, written through the data file writer.
class KnownProfileFile : public ::testing::Test {
protected:
    void SetUp() override {
        sim::RiverScenario scenario;
        scenario.instrument.beams = 3;
        scenario.instrument.cells = 3;
        scenario.instrument.bottomTrackMode = 1;
        const sim::InstrumentRecords records = sim::BuildInstrumentRecords(scenario);
        CKvrData writer;
        writer.conf = records.conf;
        writer.oper = records.oper;
        writer.user = records.user;
        writer.conf.CtdSensorInstalled = 1;
        writer.conf.ExtSensorInstalled = 1;
        writer.conf.PressureInstalled = 1;
        writer.conf.PressureOffset = 100000;  // 1.0 dbar in units of 1e-5
        writer.conf.PressureScale = 100000;   // 0.001 dbar a count in units of 1e-8
        writer.conf.PressureScale2 = 0;
        ASSERT_TRUE(writer.CreateDataFile(path));
        ASSERT_TRUE(writer.WriteHeader());
        ASSERT_TRUE(writer.WriteProfile(KnownProfile(7, 7)));
        ASSERT_TRUE(writer.WriteProfile(KnownProfile(8, 8)));
        ASSERT_TRUE(writer.CloseFile());
    }
    TempDir dir;
    const std::string path = dir.File("KNOWN.kvr");
};

TEST_F(KnownProfileFile, JsonDecodesEveryFieldWithItsUnit) {
    const json p = RunCliJson({"profile", path, "1", "--json"});
    const std::pair<const char*, json> exact[] = {
        {"/number", 1}, {"/read_result", 0}, {"/profile_number", 7}, {"/time", "2021/03/04  05:06:07"},
        {"/hundredths", 89}, {"/ping_count", 40}, {"/pressure_counts", 4321}, {"/bottom_track/flag", 1},
        {"/bottom_track/ranges_cm", {380, 390, 400, 32767}}, {"/bottom_track/velocities", {-500, 20, 30, 0}},
        {"/external_sensor", {11, 22, 33, 44}}, {"/gps/start_time", 100000.5}, {"/gps/start_latitude", 45.1},
        {"/gps/end_longitude", 7.3}, {"/shallow_water", nullptr}, {"/cells", 3}, {"/beams", 3},
        {"/velocity_raw", {{123, 32767, -40}, {9999, 0, -1}, {500, 501, 502}}},
        {"/std_error", {{0, 1, 2}, {10, 11, 12}, {20, 21, 22}}},
        {"/amplitude", {{100, 101, 102}, {110, 111, 112}, {120, 121, 122}}},
        {"/velocity_cm_s/0/1", nullptr},  // 32767 marks a bad value
    };
    for (const auto& [pointer, expected] : exact) EXPECT_EQ(p[json::json_pointer(pointer)], expected) << pointer;

    // Raw x 0.1 is cm/s; in the normal resolution 9999 is a value. Pressure: offset plus
    // counts x scale. Voltage: 0.2 V a count. CTD values are floats in the file.
    struct Scaled {
        const char* pointer;
        double expected, tolerance;
    };
    const Scaled scaled[] = {
        {"/heading_deg", 123.4, 1e-9}, {"/pitch_deg", -5.6, 1e-9}, {"/roll_deg", 7.8, 1e-9},
        {"/temperature_degc", 15.25, 1e-9}, {"/pressure_dbar", 1.0 + 4321 * 0.001, 1e-9},
        {"/input_voltage_v", 12.0, 1e-9}, {"/ctd/temperature_degc", 12.5, 1e-6},
        {"/ctd/conductivity_ms_cm", 40.25, 1e-6}, {"/ctd/pressure_dbar", 3.5, 1e-6},
        {"/ctd/salinity_ppt", 30.125, 1e-6}, {"/velocity_cm_s/0/0", 12.3, 1e-9}, {"/velocity_cm_s/0/2", -4.0, 1e-9},
        {"/velocity_cm_s/1/0", 999.9, 1e-9}, {"/velocity_cm_s/1/1", 0.0, 1e-9}, {"/velocity_cm_s/1/2", -0.1, 1e-9},
        {"/velocity_cm_s/2/0", 50.0, 1e-9}, {"/velocity_cm_s/2/1", 50.1, 1e-9}, {"/velocity_cm_s/2/2", 50.2, 1e-9},
    };
    for (const Scaled& s : scaled) {
        EXPECT_NEAR(p[json::json_pointer(s.pointer)].get<double>(), s.expected, s.tolerance) << s.pointer;
    }
}

TEST_F(KnownProfileFile, TextShowsDegreesAndBadCells) {
    const ProcessResult run = RunCli({"profile", path, "2"});
    ASSERT_TRUE(run.Exited() && run.exitStatus == 0) << run.Describe();
    for (const char* text : {"Profile 2", "2021/03/04  05:06:08.89", "123.4 deg", "-5.6 deg", "15.25 degC",
                             "4321 counts", "5.321 dbar", "12.0 V", "380 390 400 32767", "11 22 33 44", "Beam 3"}) {
        EXPECT_NE(run.out.find(text), std::string::npos) << "missing: " << text;
    }
    // Cell 2 of beam 1 is bad: its cm/s column shows "--".
    const size_t cell2 = run.out.find("\n     2 ", run.out.find("Beam 1"));
    ASSERT_NE(cell2, std::string::npos);
    const std::string line = run.out.substr(cell2 + 1, run.out.find('\n', cell2 + 1) - cell2 - 1);
    EXPECT_NE(line.find("32767"), std::string::npos) << line;
    EXPECT_NE(line.find("--"), std::string::npos) << line;
}

TEST_F(KnownProfileFile, BadChecksumIsReportedWithTheValuesAsRead) {
    std::vector<unsigned char> bytes = ReadFileBytes(path);
    ASSERT_EQ(bytes.size(), static_cast<size_t>(kHead + 2 * kRecord));
    bytes[static_cast<size_t>(kHead + kRecord + kVelocityInRecord)] ^= 0x01;  // 123 becomes 122
    WriteFileBytes(path, bytes);

    const ProcessResult run = RunCli({"profile", path, "2", "--json"});
    ASSERT_TRUE(run.Exited() && run.exitStatus == 0) << run.Describe();
    const json second = json::parse(run.out);
    EXPECT_EQ(second["read_result"], 2);
    EXPECT_EQ(second["velocity_raw"][0][0], 122);
    EXPECT_EQ(run.err, "Profile 2: the checksum does not match; the values are shown as read\n");
    EXPECT_EQ(RunCliJson({"profile", path, "1", "--json"})["read_result"], 0);
}

}  // namespace
}  // namespace rm::test
