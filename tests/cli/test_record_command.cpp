// `ripplemark-cli record` against the simulated instrument, GPS and echo sounder on
// pseudo-terminals: what reaches the data file against the frames the instrument sent (rebuilt
// here from the same scenario), the side files, the measurement against the virtual river, and
// the line failures (noise, bad checksum, lost frame, renumbering). Every child is ended in
// teardown and every run has an alarm, so no test can hang.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/process_runner.h"
#include "cli/sim_recording.h"
#include "data/byte_io.h"
#include "data/kvr_data.h"
#include "data/nmea_sentences.h"
#include "data/pmk_file.h"
#include "sim/live_transect.h"
#include "sim/sim_process.h"
#include "sim/simulated_instrument.h"

namespace rm::test {
namespace {

using Args = std::vector<std::string>;

// Frames come every 0.3 s on the line (the tick is 0.25 s) but describe 1-s profiles.
constexpr const char* kFrameInterval = "0.3";
// The default instrument: 80 header + 18 bottom track + 20 cells x 4 beams x 4 bytes + 2.
constexpr size_t kFrameSize = 80 + 18 + 20 * 4 * 4 + 2;
constexpr size_t kBottomTrackEnd = 80 + 18;

class RecordCommand : public ::testing::Test {
protected:
    void TearDown() override {
        gps.Stop();
        echo.Stop();
        instrument.Stop();
    }

    // Starts the instrument with `faults` making `profiles` frames at most, over the crossing of
    // a default recording (100 profiles of 1 s), which SentFrames rebuilds.
    void StartInstrument(int profiles, const Args& faults = {}, const char* frameInterval = kFrameInterval) {
        Args args{"instrument", "--interval", frameInterval, "--averaging-interval", "1", "--profiles", "100",
                  "--max-profiles", std::to_string(profiles), "--truth", dir.File("truth.json")};
        args.insert(args.end(), faults.begin(), faults.end());
        ASSERT_TRUE(instrument.Start(sim::KvrSimProgram(), args, dir.File("instrument.err"))) << instrument.Error();
    }
    void StartNmeaDevices(const std::string& gpsTalker = "GP") {
        ASSERT_TRUE(gps.Start(sim::KvrSimProgram(), {"gps", "--rate", "4", "--talker", gpsTalker}, dir.File("gps.err")))
            << gps.Error();
        ASSERT_TRUE(echo.Start(sim::KvrSimProgram(), {"echo", "--rate", "4"}, dir.File("echo.err"))) << echo.Error();
    }

    ProcessResult Record(int profiles, const Args& extra = {}) {
        Args args{"record", "--port", instrument.DevicePath(), "--dir", dir.path(), "--name", "T1",
                  "--profiles", std::to_string(profiles), "--json"};
        args.insert(args.end(), extra.begin(), extra.end());
        return RunProgram("ripplemark-cli", args, 120);
    }

    nlohmann::json Truth() const {
        std::ifstream in(dir.File("truth.json"));
        return in.good() ? nlohmann::json::parse(in) : nlohmann::json();
    }

    // The frames the instrument sends for `profiles` profiles with `faults`, without the noise,
    // lost frames left out: rebuilt from the same scenario as kvr-sim's defaults.
    static std::vector<std::vector<uint8_t>> SentFrames(int profiles, const sim::FrameFaults& faults) {
        sim::RiverScenario scenario;
        scenario.outputPath = "live.kvr";
        sim::InstrumentBehaviour behaviour;
        behaviour.faults = faults;
        const sim::SimulatedInstrument probe(scenario, behaviour);
        sim::LiveTransect transect(sim::ScenarioForRecords(scenario, probe.Records()), probe.Records(), faults,
                                   profiles);
        std::vector<std::vector<uint8_t>> frames;
        std::string bytes;
        while (transect.Next(bytes)) {
            if (bytes.empty()) continue;
            const size_t start = bytes.size() - transect.FrameSize();
            frames.emplace_back(bytes.begin() + static_cast<std::ptrdiff_t>(start), bytes.end());
        }
        return frames;
    }

    // The records of the data file, each as its bytes.
    std::vector<std::vector<uint8_t>> RecordsOf(const std::string& path) {
        CKvrData kvr;
        EXPECT_TRUE(kvr.OpenFile(path));
        EXPECT_EQ(kvr.ReadHeader(false), kReadOk);
        const std::vector<unsigned char> bytes = ReadFileBytes(path);
        std::vector<std::vector<uint8_t>> records;
        const auto size = static_cast<size_t>(kvr.RecordSize());
        for (int i = 0; i < kvr.ProfileCount(); ++i) {
            const auto at = static_cast<size_t>(kvr.ProfilePosition(i));
            records.emplace_back(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                                 bytes.begin() + static_cast<std::ptrdiff_t>(at + size));
        }
        EXPECT_EQ(bytes.size(), static_cast<size_t>(kvr.HeaderSize()) + size * records.size());
        return records;
    }

    static uint32_t NumberOf(const std::vector<uint8_t>& record) {
        return ByteReader(record.data(), record.size()).u32(14);
    }

    TempDir dir;
    sim::SimDeviceProcess instrument, gps, echo;
};

TEST_F(RecordCommand, RecordedFileHoldsTheSentFramesAndMeasuresTheRiver) {
    constexpr int kProfiles = 40;
    StartInstrument(kProfiles);
    ASSERT_FALSE(HasFatalFailure());
    const ProcessResult r = Record(kProfiles, {"--left-distance", "0", "--right-distance", "0"});
    ASSERT_EQ(r.exitStatus, 0) << r.Describe() << r.err;
    const nlohmann::json j = nlohmann::json::parse(r.out);
    const std::string kvrPath = dir.File("T1.kvr");
    EXPECT_EQ(j["profilesWritten"], kProfiles);
    EXPECT_EQ(j["NumProfiles"], kProfiles);
    for (const char* ext : {".kvr", ".pmk", ".cfg"})
        EXPECT_TRUE(std::filesystem::exists(dir.File(std::string("T1") + ext))) << ext;

    // Without GPS and external sensor the file's block order is the frame's: byte for byte.
    const auto sent = SentFrames(kProfiles, {});
    const auto records = RecordsOf(kvrPath);
    ASSERT_EQ(records.size(), sent.size());
    for (size_t i = 0; i < records.size(); ++i) EXPECT_EQ(records[i], sent[i]) << "profile " << i + 1;

    // The instrument was stopped: its truth covers exactly the profiles recorded.
    const nlohmann::json truth = Truth();
    ASSERT_FALSE(truth.is_null());
    EXPECT_EQ(truth["profiles"].get<int>(), kProfiles);
    const double q = j["TopDischarge"].get<double>() + j["MiddleDischarge"].get<double>() +
                     j["BottomDischarge"].get<double>();
    const double expected = truth["discharge"].get<double>();
    EXPECT_NEAR(q, expected, 0.005 * expected);
    EXPECT_NEAR(j["LeftDischarge"].get<double>(), 0.0, 1e-9);

    // Every profile was processed as it came, by the chain that processes the file: the live
    // total is the file's total, and the last progress line shows it.
    EXPECT_DOUBLE_EQ(j["liveTotalDischarge"].get<double>(), j["TotalDischarge"].get<double>());
    char last[96];
    std::snprintf(last, sizeof last, "Profile %d good  total discharge %.4f m^3/s\n", kProfiles,
                  j["TotalDischarge"].get<double>());
    EXPECT_NE(r.err.find(last), std::string::npos) << r.err;

    // `process` on the recording, with the .cfg the recording wrote, agrees.
    const nlohmann::json again = RunCliJson({"process", kvrPath, "--json"});
    EXPECT_DOUBLE_EQ(again["TotalDischarge"].get<double>(), j["TotalDischarge"].get<double>());
}

TEST_F(RecordCommand, ExternalGpsAndEchoSounderGoToTheSideFilesAndTheGpsBlock) {
    // The GPS is a receiver of today, which sends its combined fixes as $GNGGA and $GNRMC: the
    // check finds it, and its positions go into the records, the side file and the exports.
    // Frames come 0.75 s apart, so that the GPS is polled between any two of them however busy
    // the machine is (the tick leaves it alone in the last two ticks before a profile is due).
    constexpr int kProfiles = 4;
    StartInstrument(kProfiles, {}, "0.75");
    StartNmeaDevices("GN");
    ASSERT_FALSE(HasFatalFailure());
    const ProcessResult check = RunProgram("ripplemark-cli", {"check", "--gps", gps.DevicePath()}, 30);
    EXPECT_EQ(check.exitStatus, 0) << check.Describe() << check.out;
    EXPECT_NE(check.out.find("The GPS system is operating correctly."), std::string::npos) << check.out;

    const ProcessResult r = Record(kProfiles, {"--gps", gps.DevicePath(), "--echo", echo.DevicePath()});
    ASSERT_EQ(r.exitStatus, 0) << r.Describe() << r.err;
    for (const char* ext : {".raw_gps", ".raw_echo"})
        EXPECT_GT(std::filesystem::file_size(dir.File(std::string("T1") + ext)), 0u) << ext;

    PmkState pmk;
    ASSERT_EQ(LoadPmk(dir.File("T1.kvr"), pmk), 1);
    EXPECT_EQ(pmk.settings.gpsPresent, 1);
    EXPECT_EQ(pmk.settings.echoSounderPresent, 1);
    EXPECT_GE(pmk.profileTrees, kProfiles);
    const NodeRef first = pmk.extraDataRoot.GetChildByName(ProfileNodeName(1));
    ASSERT_TRUE(first);
    EXPECT_EQ(SentenceLine(first.GetChildByName("GPSData"), "GGA").rfind("$GNGGA,", 0), 0u);

    // The raw export writes the sentences back as received; the .gps export has a position for
    // every profile (the simulator's boat starts at 45 N, 7 E).
    ASSERT_EQ(RunCli({"export", dir.File("T1.kvr"), "--format", "raw-gps", "-o", dir.File("T1.out_gps")}).exitStatus, 0);
    std::ifstream raw(dir.File("T1.out_gps"));
    std::string line;
    int rawLines = 0;
    for (; std::getline(raw, line); ++rawLines) EXPECT_EQ(line.rfind("$GN", 0), 0u) << line;
    EXPECT_GE(rawLines, kProfiles);
    ASSERT_EQ(RunCli({"export", dir.File("T1.kvr"), "--format", "gps", "-o", dir.File("T1x")}).exitStatus, 0);
    std::ifstream positions(dir.File("T1x.gps"));
    int profilesWithPositions = 0;
    while (std::getline(positions, line)) {
        std::istringstream fields(line);
        int profile = 0;
        double startTime = 0, lat = 0, lon = 0, endTime = 0, endLat = 0, endLon = 0;
        if (!(fields >> profile >> startTime >> lat >> lon >> endTime >> endLat >> endLon)) continue;
        EXPECT_NEAR(endLat, 45.0, 0.01) << line;
        EXPECT_NEAR(endLon, 7.0, 0.01) << line;
        ++profilesWithPositions;
    }
    EXPECT_EQ(profilesWithPositions, kProfiles);

    // On disk the record carries the 48-byte GPS block after the bottom track (no external
    // sensor here), header bit 1 and header size 0x80; the rest is the frame as sent.
    const auto sent = SentFrames(kProfiles, {});
    const auto records = RecordsOf(dir.File("T1.kvr"));
    ASSERT_EQ(records.size(), sent.size());
    for (size_t i = 0; i < records.size(); ++i) {
        const auto& rec = records[i];
        std::vector<uint8_t> frame = sent[i];
        ASSERT_EQ(rec.size(), kFrameSize + 48);
        frame[1] = static_cast<uint8_t>(frame[1] | 0x02);
        frame[2] = 0x80;
        frame[3] = 0x00;
        EXPECT_TRUE(std::equal(frame.begin(), frame.begin() + kBottomTrackEnd, rec.begin())) << i;
        EXPECT_TRUE(std::equal(frame.begin() + kBottomTrackEnd, frame.end() - 2, rec.begin() + kBottomTrackEnd + 48))
            << i;
        const ByteReader reader(rec.data(), rec.size());
        EXPECT_EQ(RecordChecksum(rec.data(), rec.size() - 2), reader.u16(rec.size() - 2));
        // The end fix of the block lies at the simulator's default place (within a kilometre).
        EXPECT_GT(reader.f64(kBottomTrackEnd + 24), 0.0);
        EXPECT_NE(reader.f64(kBottomTrackEnd + 32), 0.0);
    }
}

TEST_F(RecordCommand, NoiseAndBadChecksumsLoseOnlyTheBadFrames) {
    constexpr int kProfiles = 6;
    StartInstrument(kProfiles, {"--noise-before-frames", "--bad-checksum-every", "3"});
    ASSERT_FALSE(HasFatalFailure());
    const ProcessResult r = Record(4);
    ASSERT_EQ(r.exitStatus, 0) << r.Describe() << r.err;
    // Profiles 3 and 6 fail their checksum: 1, 2, 4, 5 are recorded as sent.
    sim::FrameFaults faults;
    faults.badChecksumEvery = 3;
    const auto sent = SentFrames(kProfiles, faults);
    const auto records = RecordsOf(dir.File("T1.kvr"));
    ASSERT_EQ(records.size(), 4u);
    const size_t kept[] = {0, 1, 3, 4};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(records[i], sent[kept[i]]) << i;
        EXPECT_EQ(NumberOf(records[i]), kept[i] + 1);
    }
}

TEST_F(RecordCommand, BitErrorsLoseTheirFramesAndChangeNothingElse) {
    // Profiles 3, 5 and 6 come with one bit turned over in their number (3 reads 1, a restart;
    // 5 reads 0x80000005; 6 reads 14). The reference run loses the same three frames by a bit of
    // their checksum, which the reader always caught: the file, the count, every progress line
    // and the printed discharge must come out the same, and the file holds the other frames as
    // they were sent.
    constexpr int kProfiles = 8;
    const size_t checksumByte = kFrameSize - 1;
    const struct {
        int profile;
        size_t byte;
        int bit;
    } numberFlips[] = {{3, 14, 1}, {5, 17, 7}, {6, 14, 3}};
    auto run = [&](bool inTheNumber) {
        Args faults;
        for (const auto& f : numberFlips) {
            const size_t byte = inTheNumber ? f.byte : checksumByte;
            faults.insert(faults.end(), {"--flip-bit", std::to_string(f.profile) + ":" + std::to_string(byte) + ":" +
                                                           std::to_string(f.bit)});
        }
        for (const char* ext : {".kvr", ".pmk", ".cfg"}) std::filesystem::remove(dir.File(std::string("T1") + ext));
        StartInstrument(kProfiles, faults);
        const ProcessResult r = Record(kProfiles - 3);
        instrument.Stop();
        return std::make_pair(r, ReadFileBytes(dir.File("T1.kvr")));
    };
    const auto [reference, referenceFile] = run(false);
    ASSERT_EQ(reference.exitStatus, 0) << reference.Describe() << reference.err;
    const auto [flipped, flippedFile] = run(true);
    ASSERT_EQ(flipped.exitStatus, 0) << flipped.Describe() << flipped.err;

    EXPECT_EQ(flippedFile, referenceFile);
    EXPECT_EQ(flipped.err, reference.err);
    const nlohmann::json j = nlohmann::json::parse(flipped.out), ref = nlohmann::json::parse(reference.out);
    EXPECT_EQ(j["profilesWritten"], 5);
    EXPECT_EQ(j["liveTotalDischarge"], ref["liveTotalDischarge"]);
    EXPECT_EQ(j["TotalDischarge"], ref["TotalDischarge"]);
    EXPECT_NE(flipped.err.find("Profile 3 lost"), std::string::npos) << flipped.err;
    EXPECT_NE(flipped.err.find("Profile 8 good"), std::string::npos) << flipped.err;

    const auto sent = SentFrames(kProfiles, {});
    const auto records = RecordsOf(dir.File("T1.kvr"));
    ASSERT_EQ(records.size(), 5u);
    const size_t kept[] = {0, 1, 3, 6, 7};
    for (size_t i = 0; i < records.size(); ++i) EXPECT_EQ(records[i], sent[kept[i]]) << i;
}

TEST_F(RecordCommand, LostFrameLeavesAGapAndRenumberingGoesOnInTheSameFile) {
    {
        StartInstrument(4, {"--lose-frame", "2"});
        ASSERT_FALSE(HasFatalFailure());
        const ProcessResult r =
            Record(3, {"--start-bank", "right", "--left-distance", "4.5", "--right-distance", "2.25"});
        ASSERT_EQ(r.exitStatus, 0) << r.Describe() << r.err;
        // The edges answered the live document's questions and came with its .cfg; the far (left)
        // bank is the last record of the file (3), not the live count (4, with the lost one), or
        // its edge would never be reached.
        const nlohmann::json j = nlohmann::json::parse(r.out);
        EXPECT_DOUBLE_EQ(j["LeftDistance"].get<double>(), 4.5);
        EXPECT_DOUBLE_EQ(j["RightDistance"].get<double>(), 2.25);
        EXPECT_NE(j["LeftDischarge"].get<double>(), 0.0);
        const auto records = RecordsOf(dir.File("T1.kvr"));
        ASSERT_EQ(records.size(), 3u);
        EXPECT_EQ(NumberOf(records[0]), 1u);
        EXPECT_EQ(NumberOf(records[1]), 3u);
        EXPECT_EQ(NumberOf(records[2]), 4u);
        instrument.Stop();
    }
    StartInstrument(5, {"--restart-numbering-at", "3"});
    ASSERT_FALSE(HasFatalFailure());
    const ProcessResult r = Record(5, {"--overwrite"});
    ASSERT_EQ(r.exitStatus, 0) << r.Describe() << r.err;
    sim::FrameFaults faults;
    faults.restartNumberingAt = 3;
    const auto sent = SentFrames(5, faults);
    const auto records = RecordsOf(dir.File("T1.kvr"));
    ASSERT_EQ(records.size(), 5u);
    const uint32_t numbers[] = {1, 2, 1, 2, 3};
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(records[i], sent[i]) << i;
        EXPECT_EQ(NumberOf(records[i]), numbers[i]);
    }
}

TEST_F(RecordCommand, FailuresExitNonZeroWithTheirMessage) {
    StartInstrument(2);
    ASSERT_FALSE(HasFatalFailure());
    // An existing file is not replaced without --overwrite: nothing recorded, the file kept.
    WriteFileBytes(dir.File("T1.kvr"), {1, 2, 3});
    const ProcessResult kept = Record(2);
    EXPECT_NE(kept.exitStatus, 0);
    EXPECT_EQ(ReadFileBytes(dir.File("T1.kvr")).size(), 3u);

    const ProcessResult noFolder =
        RunProgram("ripplemark-cli", {"record", "--port", instrument.DevicePath(), "--dir", dir.File("none"),
                                      "--profiles", "1"});
    EXPECT_EQ(noFolder.exitStatus, 64);
    EXPECT_NE(noFolder.err.find("No such folder"), std::string::npos);

    const ProcessResult neither =
        RunProgram("ripplemark-cli", {"record", "--port", instrument.DevicePath(), "--dir", dir.path()});
    EXPECT_EQ(neither.exitStatus, 64);

    const ProcessResult noPort =
        RunProgram("ripplemark-cli", {"record", "--port", dir.File("nothing"), "--dir", dir.path(), "--profiles", "1"});
    EXPECT_EQ(noPort.exitStatus, 1);
    EXPECT_NE(noPort.err.find("Error on Initialize Kvr Port"), std::string::npos);

    // An instrument that refuses binary output is not started, and nothing is recorded.
    instrument.Stop();
    StartInstrument(2, {"--refuse-binary"});
    ASSERT_FALSE(HasFatalFailure());
    const ProcessResult refused = RunProgram(
        "ripplemark-cli", {"record", "--port", instrument.DevicePath(), "--dir", dir.path(), "--name", "T2", "--profiles", "2"});
    EXPECT_EQ(refused.exitStatus, 1) << refused.Describe();
    EXPECT_NE(refused.err.find("Error on Setup Kvr For Data Collection\nError setting up KVR\n"), std::string::npos)
        << refused.err;
    EXPECT_FALSE(std::filesystem::exists(dir.File("T2.kvr")));
}

}  // namespace
}  // namespace rm::test
