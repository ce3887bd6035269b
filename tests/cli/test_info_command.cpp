// `ripplemark-cli info` on recordings of the virtual river: the facts it reports must be the
// ones kvr-sim was asked to record, for a spread of instrument set-ups.

#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "cli/sim_recording.h"
#include "data/node_tree.h"

namespace rm::test {
namespace {

// Display frequency in kHz of the system frequency index.
int DisplayKHz(int index) {
    static const int kTable[] = {3000, 1500, 750, 500, 250, 1000, 5000};
    return kTable[index];
}

// "%4d/%02d/%02d  %02d:%02d:%02d" of a "YYYY-MM-DD hh:mm:ss" start plus `seconds`.
std::string TimeAfter(const std::string& start, long seconds) {
    std::tm tm{};
    std::sscanf(start.c_str(), "%d-%d-%d %d:%d:%d", &tm.tm_year, &tm.tm_mon, &tm.tm_mday, &tm.tm_hour, &tm.tm_min,
                &tm.tm_sec);
    tm.tm_year -= 1900;
    tm.tm_mon -= 1;
    const std::time_t t = timegm(&tm) + seconds;
    std::tm out{};
    gmtime_r(&t, &out);
    char text[64];
    std::snprintf(text, sizeof text, "%4d/%02d/%02d  %02d:%02d:%02d", out.tm_year + 1900, out.tm_mon + 1, out.tm_mday,
                  out.tm_hour, out.tm_min, out.tm_sec);
    return text;
}

struct InfoCase {
    const char* name;
    int beams;
    int cells;
    int frequencyIndex;
    const char* coords;  // as kvr-sim takes it
    const char* coordinateSystem;  // as info names it
    int bottomTrack;
    const char* gps;  // "", "--internal-gps" or "--external-gps"
    bool echoSounder;
    int profiles;
    int interval;
    const char* start;
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
    if (*c.gps != '\0') args.push_back(c.gps);
    if (c.echoSounder) args.push_back("--echo-sounder");
    const SimRecording rec = RecordRiver(dir, "RIVER", args);

    const nlohmann::json info = RunCliJson({"info", rec.path, "--json"});

    EXPECT_EQ(info["profiles"], c.profiles);
    EXPECT_EQ(info["profiles"], rec.truth["profiles"]);
    EXPECT_EQ(info["cells"], c.cells);
    EXPECT_EQ(info["beams"], c.beams);
    EXPECT_EQ(info["frequency"], DisplayKHz(c.frequencyIndex));
    EXPECT_EQ(info["serial_number"], "SN4711");
    EXPECT_EQ(info["coordinate_system"], c.coordinateSystem);
    EXPECT_EQ(info["first_profile_time"], TimeAfter(c.start, 0));
    EXPECT_EQ(info["last_profile_time"], TimeAfter(c.start, static_cast<long>(c.profiles - 1) * c.interval));
    EXPECT_EQ(info["comments"][0], "Upper reach");
    EXPECT_EQ(info["comments"][1], "Gauge 12");

    // Fixes of an external receiver are recorded into the GPS block as well.
    const bool gps = *c.gps != '\0';
    EXPECT_EQ(info["gps"], gps);
    EXPECT_EQ(info["echo_sounder"], c.echoSounder);
    EXPECT_EQ(info["bottom_track"], c.bottomTrack != 0);
    EXPECT_EQ(info["bottom_track_mode"], c.bottomTrack);
    EXPECT_EQ(info["external_sensor"], false);
    EXPECT_EQ(info["ctd"], false);
    EXPECT_EQ(info["waves"], false);
    EXPECT_EQ(info["pulse_coherent"], false);

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
}

INSTANTIATE_TEST_SUITE_P(
    OptionSets, InfoAgreesWithSimulator,
    ::testing::Values(
        InfoCase{"FourBeamsEnuBottomTrackInternalGps", 4, 20, 1, "enu", "ENU", 1, "--internal-gps", false, 30, 1,
                 "2024-05-17 08:30:00"},
        InfoCase{"ThreeBeamsBeamCoordinatesNoBottomTrack", 3, 12, 6, "beam", "BEAM", 0, "--internal-gps", false, 12,
                 1, "2022-02-28 14:00:00"},
        InfoCase{"FourBeamsXyzShallowWaterPingEcho", 4, 40, 2, "xyz", "XYZ", 2, "--internal-gps", true, 25, 2,
                 "2021-07-01 06:15:30"},
        InfoCase{"ThreeBeamsEnuExternalGpsOverMidnight", 3, 8, 5, "enu", "ENU", 1, "--external-gps", true, 10, 3,
                 "2023-12-31 23:59:50"},
        InfoCase{"FourBeamsXyzNoGps", 4, 16, 0, "xyz", "XYZ", 1, "", false, 15, 1, "2020-01-01 00:00:00"}),
    [](const ::testing::TestParamInfo<InfoCase>& p) { return std::string(p.param.name); });

// The text form carries the dialog's labels and the dumps of the records.
TEST(InfoText, ShowsDialogFactsAndRecordDumps) {
    TempDir dir;
    const SimRecording rec = RecordRiver(dir, "TEXT", {"--profiles", "8", "--cells", "10", "--internal-gps",
                                                       "--start", "2024-03-09 12:34:56", "--comment", "Left bank start"});
    const ProcessResult run = RunCli({"info", rec.path});
    ASSERT_TRUE(run.Exited() && run.exitStatus == 0) << run.Describe();
    for (const char* label : {"KVR File Information", "GPS Data:", "Echo Sounder Data:", "Bottom Track Data:",
                              "External Sensor:", "CTD Data:", "Wave Data:", "PC-KVR Data:", "Left bank start",
                              "2024/03/09  12:34:56", "2024/03/09  12:35:03", "\nSerialNumber -----------------> ",
                              "\nNo. of Cells -----------------> 10"}) {
        EXPECT_NE(run.out.find(label), std::string::npos) << "missing: " << label;
    }
    // 416 + 8 x (82 + 4 x 10 x 4 + 18 + 48) bytes = 2880 bytes = 2.8125 kB by 1024.
    EXPECT_NE(run.out.find("2.81 kB"), std::string::npos);
    // Ten cell lines in the cell table, one per cell.
    EXPECT_NE(run.out.find("Cell 10 "), std::string::npos);
    EXPECT_EQ(run.out.find("Cell 11 "), std::string::npos);
}

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

TEST(InfoErrors, MissingFileAndFolderAreBadFiles) {
    TempDir dir;
    const ProcessResult missing = RunCli({"info", dir.File("absent.kvr")});
    ASSERT_TRUE(missing.Exited());
    EXPECT_EQ(missing.exitStatus, 2);
    EXPECT_NE(missing.err.find("No such file or directory"), std::string::npos) << missing.err;
    EXPECT_TRUE(missing.out.empty());

    const ProcessResult folder = RunCli({"info", dir.path(), "--json"});
    ASSERT_TRUE(folder.Exited());
    EXPECT_EQ(folder.exitStatus, 2);
    EXPECT_NE(folder.err.find("Is a directory"), std::string::npos) << folder.err;
}

TEST(InfoErrors, UsageErrorsExit64) {
    TempDir dir;
    const std::string file = dir.File("any.kvr");
    const std::vector<std::vector<std::string>> cases = {
        {},                                // no command
        {"info"},                          // no file
        {"info", file, file},              // two files
        {"info", "--bogus", file},         // unknown option
        {"infos", file},                   // unknown command
        {"profile", file},                 // no profile number
        {"profile", file, "seven"},        // profile number not a number
        {"profile", file, "1", "--what"},  // unknown option
    };
    for (const auto& args : cases) {
        const ProcessResult run = RunCli(args);
        ASSERT_TRUE(run.Exited()) << run.Describe();
        EXPECT_EQ(run.exitStatus, 64) << "arguments: " << ::testing::PrintToString(args);
    }
    const ProcessResult help = RunCli({"info", "--help"});
    EXPECT_TRUE(help.Exited() && help.exitStatus == 0) << help.Describe();
}

}  // namespace
}  // namespace rm::test
