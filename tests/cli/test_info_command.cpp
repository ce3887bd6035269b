// `ripplemark-cli info` and `profile` on recordings of the virtual river: the facts they report
// must be the ones kvr-sim was asked to record, for a spread of instrument set-ups.

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "cli/sim_recording.h"
#include "data/node_tree.h"

namespace rm::test {
namespace {

struct InfoCase {
    const char* name;
    int beams, cells, frequencyIndex, kHz;  // kHz: what the display table shows for the index
    const char* coords;                     // as kvr-sim takes it
    const char* coordinateSystem;           // as info names it
    int bottomTrack;
    const char* gps;  // "", "--internal-gps" or "--external-gps"
    bool echoSounder;
    int profiles, interval;
    const char* start;      // as kvr-sim takes it
    const char* firstTime;  // the first and the last profile's time as info prints them
    const char* lastTime;
    const char* sizeText;  // the file size by hand (see the layout below), / 1024, "%4.2f kB"
};

// Names the case in test listings instead of its bytes.
void PrintTo(const InfoCase& c, std::ostream* out) { *out << c.name; }

class InfoAgreesWithSimulator : public ::testing::TestWithParam<InfoCase> {};

TEST_P(InfoAgreesWithSimulator, ReportsWhatWasRecorded) {
    const InfoCase& c = GetParam();
    TempDir dir;
    std::vector<std::string> args = {"--beams", std::to_string(c.beams), "--cells", std::to_string(c.cells),
                                     "--frequency-index", std::to_string(c.frequencyIndex), "--coords", c.coords,
                                     "--bottom-track", std::to_string(c.bottomTrack), "--profiles",
                                     std::to_string(c.profiles), "--interval", std::to_string(c.interval),
                                     "--start", c.start, "--serial", "SN4711", "--comment", "Upper reach",
                                     "--comment", "Gauge 12"};
    const bool gps = *c.gps != '\0';  // an external receiver's fixes go into the GPS block as well
    if (gps) args.push_back(c.gps);
    if (c.echoSounder) args.push_back("--echo-sounder");
    const SimRecording rec = RecordRiver(dir, "RIVER", args);

    const nlohmann::json info = RunCliJson({"info", rec.path, "--json"});
    EXPECT_EQ(info["profiles"], c.profiles);
    EXPECT_EQ(info["profiles"], rec.truth["profiles"]);
    EXPECT_EQ(info["cells"], c.cells);
    EXPECT_EQ(info["beams"], c.beams);
    EXPECT_EQ(info["frequency"], c.kHz);
    EXPECT_EQ(info["serial_number"], "SN4711");
    EXPECT_EQ(info["coordinate_system"], c.coordinateSystem);
    EXPECT_EQ(info["first_profile_time"], c.firstTime);
    EXPECT_EQ(info["last_profile_time"], c.lastTime);
    EXPECT_EQ(info["comments"][0], "Upper reach");
    EXPECT_EQ(info["comments"][1], "Gauge 12");
    EXPECT_EQ(info["gps"], gps);
    EXPECT_EQ(info["echo_sounder"], c.echoSounder);
    EXPECT_EQ(info["bottom_track"], c.bottomTrack != 0);
    EXPECT_EQ(info["bottom_track_mode"], c.bottomTrack);
    for (const char* absent : {"external_sensor", "ctd", "waves", "pulse_coherent"}) {
        EXPECT_EQ(info[absent], false) << absent;
    }
    // The layout by hand: conf 96 + oper 64 + user 256 before the records; a record is the
    // 80-byte header, the optional blocks, 4 bytes a cell and beam and the 2-byte checksum.
    const int recordSize = 82 + 4 * c.cells * c.beams + (c.bottomTrack != 0 ? 18 : 0) +
                           (c.bottomTrack == 2 ? 36 : 0) + (gps ? 48 : 0);
    EXPECT_EQ(info["file_version"], 2);
    EXPECT_EQ(info["header_length"], 416);
    EXPECT_EQ(info["record_size"], recordSize);
    const auto size = static_cast<long long>(std::filesystem::file_size(rec.path));
    EXPECT_EQ(info["size"], size);
    EXPECT_EQ(size, 416LL + static_cast<long long>(c.profiles) * recordSize);
    EXPECT_EQ(info["size_text"], c.sizeText);

    // The text form: the dialog's labels and values, then the dumps with one line a cell.
    const ProcessResult text = RunCli({"info", rec.path});
    ASSERT_TRUE(text.Exited() && text.exitStatus == 0) << text.Describe();
    const std::string cells = std::to_string(c.cells);
    for (const std::string& shown :
         {std::string("KVR File Information"), std::string("GPS Data:"), std::string("Echo Sounder Data:"),
          std::string("Bottom Track Data:"), std::string("External Sensor:"), std::string("CTD Data:"),
          std::string("Wave Data:"), std::string("PC-KVR Data:"), std::string("Upper reach"),
          std::string(c.firstTime), std::string(c.lastTime), std::string(c.sizeText),
          std::string("\nSerialNumber -----------------> SN4711"),
          "\nNo. of Cells -----------------> " + cells, "Cell " + cells + " "}) {
        EXPECT_NE(text.out.find(shown), std::string::npos) << "missing: " << shown;
    }
    EXPECT_EQ(text.out.find("Cell " + std::to_string(c.cells + 1) + " "), std::string::npos);

    // The last profile: its number and time, and blocks and arrays that follow the set-up.
    const nlohmann::json p = RunCliJson({"profile", rec.path, std::to_string(c.profiles), "--json"});
    EXPECT_EQ(p["read_result"], 0);
    EXPECT_EQ(p["profile_number"], c.profiles);
    EXPECT_EQ(p["time"], c.lastTime);
    EXPECT_EQ(p["gps"].is_null(), !gps);
    EXPECT_EQ(p["bottom_track"].is_null(), c.bottomTrack == 0);
    EXPECT_EQ(p["shallow_water"].is_null(), c.bottomTrack != 2);
    for (const char* array : {"velocity_raw", "velocity_cm_s", "std_error", "amplitude"}) {
        ASSERT_EQ(p[array].size(), static_cast<size_t>(c.beams)) << array;
        for (const nlohmann::json& beam : p[array]) EXPECT_EQ(beam.size(), static_cast<size_t>(c.cells)) << array;
    }
}

INSTANTIATE_TEST_SUITE_P(
    OptionSets, InfoAgreesWithSimulator,
    ::testing::Values(
        // 30 records of 82 + 320 + 18 + 48 = 468 bytes: 14456 bytes.
        InfoCase{"FourBeamsEnuBottomTrackInternalGps", 4, 20, 1, 1500, "enu", "ENU", 1, "--internal-gps", false, 30,
                 1, "2024-05-17 08:30:00", "2024/05/17  08:30:00", "2024/05/17  08:30:29", "14.12 kB"},
        // 12 x (82 + 144 + 48): 3704 bytes.
        InfoCase{"ThreeBeamsBeamCoordinatesNoBottomTrack", 3, 12, 6, 5000, "beam", "BEAM", 0, "--internal-gps",
                 false, 12, 1, "2022-02-28 14:00:00", "2022/02/28  14:00:00", "2022/02/28  14:00:11", "3.62 kB"},
        // 25 x (82 + 640 + 18 + 36 + 48), profiles 2 s apart: 21016 bytes.
        InfoCase{"FourBeamsXyzShallowWaterPingEcho", 4, 40, 2, 750, "xyz", "XYZ", 2, "--internal-gps", true, 25, 2,
                 "2021-07-01 06:15:30", "2021/07/01  06:15:30", "2021/07/01  06:16:18", "20.52 kB"},
        // 10 x (82 + 96 + 18 + 48), 3 s apart into the new year: 2856 bytes.
        InfoCase{"ThreeBeamsEnuExternalGpsOverMidnight", 3, 8, 5, 1000, "enu", "ENU", 1, "--external-gps", true, 10,
                 3, "2023-12-31 23:59:50", "2023/12/31  23:59:50", "2024/01/01  00:00:17", "2.79 kB"},
        // 15 x (82 + 256 + 18): 5756 bytes.
        InfoCase{"FourBeamsXyzNoGps", 4, 16, 0, 3000, "xyz", "XYZ", 1, "", false, 15, 1, "2020-01-01 00:00:00",
                 "2020/01/01  00:00:00", "2020/01/01  00:00:14", "5.62 kB"}),
    [](const ::testing::TestParamInfo<InfoCase>& p) { return std::string(p.param.name); });

// The echo sounder flag comes from the .pmk; a damaged one costs the flag, not the command.
TEST(InfoPmk, DamagedPmkLeavesEchoSounderOff) {
    TempDir dir;
    const SimRecording rec = RecordRiver(dir, "PMK", {"--profiles", "5", "--echo-sounder"});
    const std::string pmk = dir.File("PMK.pmk");
    ASSERT_TRUE(std::filesystem::exists(pmk));
    EXPECT_EQ(RunCliJson({"info", rec.path, "--json"})["echo_sounder"], true);

    WriteFileBytes(pmk, {0xFF, 0xFF, 0xFF, 0xFF, 0x01, 0x02});
    EXPECT_EQ(RunCliJson({"info", rec.path, "--json"})["echo_sounder"], false);

    // A Settings tree whose flag is a text that is no number.
    const NodeRef settings = NodeRef::MakeNew();
    settings.SetValue("EchoSounderPresent", Variant("yes please"));
    ASSERT_TRUE(SaveTreeFile(settings, pmk));
    const nlohmann::json info = RunCliJson({"info", rec.path, "--json"});
    EXPECT_EQ(info["echo_sounder"], false);
    EXPECT_TRUE(info.contains("pmk_problem"));

    std::filesystem::remove(pmk);
    EXPECT_EQ(RunCliJson({"info", rec.path, "--json"})["echo_sounder"], false);
}

}  // namespace
}  // namespace rm::test
