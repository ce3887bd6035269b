// `ripplemark-cli profile`: one profile decoded. A file written here with known values in every
// field checks the decoding and the units; recordings of the virtual river check that the
// blocks and arrays follow the set-up.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "cli/sim_recording.h"
#include "data/byte_io.h"
#include "data/kvr_data.h"
#include "sim/river_scenario.h"

namespace rm::test {
namespace {

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
    h.year = 2021;
    h.month = 3;
    h.day = 4;
    h.hour = 5;
    h.minute = 6;
    h.second = second;
    h.hundredths = 89;
    h.pingCount = 40;
    h.heading = 1234;
    h.pitch = -56;
    h.roll = 78;
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

// Two profiles with known values, written through the data file writer.
std::string WriteKnownFile(const TempDir& dir) {
    sim::RiverScenario scenario;
    scenario.instrument.beams = 3;
    scenario.instrument.cells = 3;
    scenario.instrument.bottomTrackMode = 1;
    scenario.outputPath = dir.File("KNOWN.kvr");
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
    EXPECT_TRUE(writer.CreateDataFile(scenario.outputPath));
    EXPECT_TRUE(writer.WriteHeader());
    EXPECT_TRUE(writer.WriteProfile(KnownProfile(7, 7)));
    EXPECT_TRUE(writer.WriteProfile(KnownProfile(8, 8)));
    EXPECT_TRUE(writer.CloseFile());
    return scenario.outputPath;
}

TEST(ProfileCommand, DecodesEveryFieldWithItsUnit) {
    TempDir dir;
    const std::string path = WriteKnownFile(dir);
    const nlohmann::json p = RunCliJson({"profile", path, "1", "--json"});

    EXPECT_EQ(p["number"], 1);
    EXPECT_EQ(p["read_result"], 0);
    EXPECT_EQ(p["profile_number"], 7);
    EXPECT_EQ(p["time"], "2021/03/04  05:06:07");
    EXPECT_EQ(p["hundredths"], 89);
    EXPECT_EQ(p["ping_count"], 40);
    EXPECT_NEAR(p["heading_deg"].get<double>(), 123.4, 1e-9);
    EXPECT_NEAR(p["pitch_deg"].get<double>(), -5.6, 1e-9);
    EXPECT_NEAR(p["roll_deg"].get<double>(), 7.8, 1e-9);
    EXPECT_NEAR(p["temperature_degc"].get<double>(), 15.25, 1e-9);
    EXPECT_EQ(p["pressure_counts"], 4321);
    EXPECT_NEAR(p["pressure_dbar"].get<double>(), 1.0 + 4321 * 0.001, 1e-9);
    EXPECT_NEAR(p["input_voltage_v"].get<double>(), 12.0, 1e-9);

    EXPECT_EQ(p["bottom_track"]["flag"], 1);
    EXPECT_EQ(p["bottom_track"]["ranges_cm"], nlohmann::json({380, 390, 400, 32767}));
    EXPECT_EQ(p["bottom_track"]["velocities"], nlohmann::json({-500, 20, 30, 0}));
    EXPECT_NEAR(p["ctd"]["temperature_degc"].get<double>(), 12.5, 1e-6);
    EXPECT_NEAR(p["ctd"]["conductivity_ms_cm"].get<double>(), 40.25, 1e-6);
    EXPECT_NEAR(p["ctd"]["pressure_dbar"].get<double>(), 3.5, 1e-6);
    EXPECT_NEAR(p["ctd"]["salinity_ppt"].get<double>(), 30.125, 1e-6);
    EXPECT_EQ(p["external_sensor"], nlohmann::json({11, 22, 33, 44}));
    EXPECT_EQ(p["gps"]["start_time"], 100000.5);
    EXPECT_EQ(p["gps"]["start_latitude"], 45.1);
    EXPECT_EQ(p["gps"]["end_longitude"], 7.3);
    EXPECT_TRUE(p["shallow_water"].is_null());

    EXPECT_EQ(p["cells"], 3);
    EXPECT_EQ(p["beams"], 3);
    EXPECT_EQ(p["velocity_raw"], nlohmann::json({{123, 32767, -40}, {9999, 0, -1}, {500, 501, 502}}));
    // Raw x 0.1 is cm/s; 32767 marks a bad value. In the normal resolution 9999 is a value.
    const double expected[3][3] = {{12.3, 0, -4.0}, {999.9, 0.0, -0.1}, {50.0, 50.1, 50.2}};
    for (int b = 0; b < 3; ++b) {
        for (int c = 0; c < 3; ++c) {
            const nlohmann::json& v = p["velocity_cm_s"][b][c];
            if (b == 0 && c == 1) {
                EXPECT_TRUE(v.is_null());
            } else {
                EXPECT_NEAR(v.get<double>(), expected[b][c], 1e-9) << "beam " << b << " cell " << c;
            }
            EXPECT_EQ(p["std_error"][b][c], 10 * b + c);
            EXPECT_EQ(p["amplitude"][b][c], 100 + 10 * b + c);
        }
    }
}

TEST(ProfileCommand, TextShowsDegreesAndBadCells) {
    TempDir dir;
    const std::string path = WriteKnownFile(dir);
    const ProcessResult run = RunCli({"profile", path, "2"});
    ASSERT_TRUE(run.Exited() && run.exitStatus == 0) << run.Describe();
    for (const char* text : {"Profile 2", "2021/03/04  05:06:08.89", "123.4 deg", "-5.6 deg", "15.25 degC",
                             "4321 counts", "5.321 dbar", "12.0 V", "380 390 400 32767", "11 22 33 44", "Beam 3"}) {
        EXPECT_NE(run.out.find(text), std::string::npos) << "missing: " << text;
    }
    // Cell 2 of beam 1 is bad: its cm/s column shows "--".
    const size_t beam1 = run.out.find("Beam 1");
    const size_t cell2 = run.out.find("\n     2 ", beam1);
    ASSERT_NE(cell2, std::string::npos);
    const std::string line = run.out.substr(cell2 + 1, run.out.find('\n', cell2 + 1) - cell2 - 1);
    EXPECT_NE(line.find("32767"), std::string::npos) << line;
    EXPECT_NE(line.find("--"), std::string::npos) << line;
}

TEST(ProfileCommand, BadChecksumIsReportedWithTheValuesAsRead) {
    TempDir dir;
    const std::string path = WriteKnownFile(dir);
    std::vector<unsigned char> bytes = ReadFileBytes(path);
    ASSERT_EQ(bytes.size(), static_cast<size_t>(kHead + 2 * kRecord));
    bytes[static_cast<size_t>(kHead + kRecord + kVelocityInRecord)] ^= 0x01;  // 123 becomes 122
    WriteFileBytes(path, bytes);

    const ProcessResult run = RunCli({"profile", path, "2", "--json"});
    ASSERT_TRUE(run.Exited() && run.exitStatus == 0) << run.Describe();
    const nlohmann::json second = nlohmann::json::parse(run.out);
    EXPECT_EQ(second["read_result"], 2);
    EXPECT_EQ(second["velocity_raw"][0][0], 122);
    EXPECT_NE(run.err.find("checksum"), std::string::npos);
    EXPECT_EQ(RunCliJson({"profile", path, "1", "--json"})["read_result"], 0);
}

TEST(ProfileCommand, NumberOutsideTheFileIsAUsageError) {
    TempDir dir;
    const std::string path = WriteKnownFile(dir);
    for (const char* n : {"0", "3", "-2", "99999999999"}) {
        const ProcessResult run = RunCli({"profile", path, n});
        ASSERT_TRUE(run.Exited()) << run.Describe();
        EXPECT_EQ(run.exitStatus, 64) << n;
        EXPECT_NE(run.err.find("out of range"), std::string::npos) << n << ": " << run.err;
    }
    const ProcessResult missing = RunCli({"profile", dir.File("none.kvr"), "1"});
    EXPECT_TRUE(missing.Exited() && missing.exitStatus == 2) << missing.Describe();
}

// Blocks and arrays follow the recording's set-up; number and time follow the profile.
TEST(ProfileCommand, BlocksFollowTheRecordedSetup) {
    struct Setup {
        std::vector<std::string> args;
        int beams, cells;
        bool gps, bottomTrack, shallowWater;
    };
    const Setup setups[] = {
        {{"--beams", "4", "--cells", "9", "--bottom-track", "2", "--internal-gps"}, 4, 9, true, true, true},
        {{"--beams", "3", "--cells", "5", "--bottom-track", "0", "--coords", "beam"}, 3, 5, false, false, false},
    };
    for (const Setup& s : setups) {
        TempDir dir;
        std::vector<std::string> args = s.args;
        args.insert(args.end(), {"--profiles", "12", "--interval", "5", "--start", "2024-02-29 23:59:00"});
        const SimRecording rec = RecordRiver(dir, "SETUP", args);
        const nlohmann::json p = RunCliJson({"profile", rec.path, "12", "--json"});
        EXPECT_EQ(p["read_result"], 0);
        EXPECT_EQ(p["profile_number"], 12);
        EXPECT_EQ(p["time"], "2024/02/29  23:59:55");  // 11 intervals of 5 s after the start
        EXPECT_EQ(p["gps"].is_null(), !s.gps);
        EXPECT_EQ(p["bottom_track"].is_null(), !s.bottomTrack);
        EXPECT_EQ(p["shallow_water"].is_null(), !s.shallowWater);
        ASSERT_EQ(p["velocity_raw"].size(), static_cast<size_t>(s.beams));
        ASSERT_EQ(p["amplitude"].size(), static_cast<size_t>(s.beams));
        for (int b = 0; b < s.beams; ++b) {
            EXPECT_EQ(p["velocity_raw"][b].size(), static_cast<size_t>(s.cells));
            EXPECT_EQ(p["velocity_cm_s"][b].size(), static_cast<size_t>(s.cells));
            EXPECT_EQ(p["std_error"][b].size(), static_cast<size_t>(s.cells));
        }
    }
}

}  // namespace
}  // namespace rm::test
