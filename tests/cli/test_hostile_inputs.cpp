// The commands that read a data file against wrong arguments and against files that are not what
// they claim: whatever the bytes, the answer is an exit status (2 for a file that is not a data
// file, 64 for wrong arguments, 0 for a valid file however short) and never a death by a signal.

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "cli/sim_recording.h"

namespace rm::test {
namespace {

using Bytes = std::vector<unsigned char>;

// Head of every recording of the simulator: conf 96 + oper 64 + user 256 bytes.
constexpr size_t kHead = 416;
constexpr size_t kUserAt = 96 + 64;

// A small recording of 6 profiles: 3 beams, 4 cells, no optional blocks, so one record is
// 80 + 4 x 4 x 3 + 2 = 130 bytes and the first 600 bytes hold the head, one whole record and
// part of the second.
constexpr size_t kSmallRecordSize = 130;

class HostileFiles : public ::testing::Test {
protected:
    void SetUp() override {
        small = RecordRiver(dir, "SMALL", {"--beams", "3", "--cells", "4", "--bottom-track", "0", "--profiles", "6"})
                    .path;
        whole = ReadFileBytes(small);
        ASSERT_EQ(whole.size(), kHead + 6 * kSmallRecordSize);
    }
    TempDir dir;
    std::string small;
    Bytes whole;
    const std::string path = dir.File("hostile.kvr");
};

Bytes RandomBytes(std::mt19937& rng, size_t count) {
    Bytes bytes(count);
    for (auto& b : bytes) b = static_cast<unsigned char>(rng() & 0xFF);
    return bytes;
}

// Runs the command and requires that it ended by itself with `expected`; a failure says why.
ProcessResult ExpectExit(const std::vector<std::string>& args, int expected, const std::string& what) {
    const ProcessResult run = RunCli(args);
    EXPECT_TRUE(run.Exited()) << what << ": " << run.Describe();
    EXPECT_EQ(run.exitStatus, expected) << what << ": " << run.Describe();
    if (expected != 0) {
        EXPECT_FALSE(run.err.empty()) << what << ": no message";
        EXPECT_TRUE(run.out.empty()) << what << ": " << run.out;
    }
    return run;
}

// Every refusal with its status (and help with 0), and the message where the tool writes one of
// its own. In the arguments and messages {small}, {dir}, {absent} and {empty} stand for the small
// recording, the temporary folder, a file that does not exist and an empty file.
TEST_F(HostileFiles, EveryRefusalHasItsStatusAndMessage) {
    struct Refusal {
        std::vector<std::string> args;
        int status;
        std::string message;  // the whole of stderr; empty: any message
    };
    const std::string outOfRange = " is out of range: the file holds profiles 1 to 6\n";
    const Refusal refusals[] = {
        {{}, 64, ""}, {{"info"}, 64, ""}, {{"info", "{small}", "{small}"}, 64, ""}, {{"infos", "{small}"}, 64, ""},
        {{"info", "--bogus", "{small}"}, 64, ""}, {{"profile", "{small}"}, 64, ""},
        {{"profile", "{small}", "seven"}, 64, ""}, {{"profile", "{small}", "1", "--what"}, 64, ""},
        {{"profile", "{small}", "0"}, 64, "Profile 0" + outOfRange},
        {{"profile", "{small}", "7"}, 64, "Profile 7" + outOfRange},
        {{"profile", "{small}", "-2"}, 64, "Profile -2" + outOfRange},
        {{"profile", "{small}", "99999999999"}, 64, "Profile 99999999999" + outOfRange},
        {{"profile", "{empty}", "1"}, 2, "The file is not a valid Kvr file\n"},
        {{"info", "{empty}"}, 2, "The file is not a valid Kvr file\n"},
        {{"info", "{absent}"}, 2, "Cannot open file: {absent}: No such file or directory\n"},
        {{"profile", "{absent}", "1"}, 2, "Cannot open file: {absent}: No such file or directory\n"},
        {{"info", "{dir}", "--json"}, 2, "Cannot open file: {dir}: Is a directory\n"},
        {{"process", "{absent}"}, 2, "{absent}: cannot open the file\n"},
        {{"process", "{small}", "--set", "Discharge/NoSuchKey=1"}, 64, "--set: no setting \"Discharge/NoSuchKey\"\n"},
        {{"process", "{small}", "--set", "Discharge/LeftBankMethod=left"}, 64,
         "--set: \"left\" is not a valid value for \"Discharge/LeftBankMethod\"\n"},
        {{"process", "{small}", "--set", "NoEquals"}, 64, "--set: \"NoEquals\" is not of the form PATH=VALUE\n"},
        {{"process", "{small}", "--coords", "polar"}, 64, ""}, {{"process", "{small}", "--first", "3"}, 64, ""},
        {{"process", "{small}", "--first", "5", "--last", "2"}, 64, "--last must be greater than --first\n"},
        {{"process", "{small}", "--first", "1", "--last", "500"}, 64,
         "--first and --last must lie between 1 and 6 (the profiles of the file)\n"},
        {{"process", "{small}", "--every", "2", "--average", "2"}, 64, ""},
        {{"export", "{small}", "--format", "xyz"}, 64, ""}, {{"info", "--help"}, 0, ""},
        {{"plot", "{small}"}, 64, ""}, {{"plot", "{small}", "--what", "map", "-o", "{dir}/p.png"}, 64, ""},
        {{"plot", "{small}", "--size", "0x10", "-o", "{dir}/p.png"}, 64,
         "--size: WIDTHxHEIGHT in pixels, each from 1 to 20000 (got \"0x10\")\n"},
        {{"plot", "{small}", "--size", "big", "-o", "{dir}/p.png"}, 64, ""},
        {{"plot", "{small}", "-o", "{dir}/p.gif"}, 64,
         "-o: the picture must be a .png, .svg or .pdf file (got \"{dir}/p.gif\")\n"},
        {{"plot", "{small}", "--variable", "stddev", "-o", "{dir}/p.png"}, 64,
         "--variable: unknown contour variable \"stddev\" (velocity, amplitude, snr or velocity-3d)\n"},
        {{"plot", "{small}", "--variable", "amplitude", "--component", "direction", "-o", "{dir}/p.png"}, 64,
         "--component: \"direction\" is no component of this variable\n"},
        {{"plot", "{small}", "--what", "profiles", "--variable", "velocity,speed", "-o", "{dir}/p.png"}, 64, ""},
        {{"plot", "{small}", "--what", "profiles", "--profile", "9", "-o", "{dir}/p.png"}, 64,
         "--profile must lie between 1 and 6\n"},
        {{"plot", "{empty}", "-o", "{dir}/p.png"}, 2, ""},
        {{"plot", "{absent}", "-o", "{dir}/p.png"}, 2, "{absent}: cannot open the file\n"},
    };
    WriteFileBytes(dir.File("empty.kvr"), {});
    const std::pair<std::string, std::string> stands[] = {{"{small}", small},
                                                          {"{dir}", dir.path()},
                                                          {"{absent}", dir.File("absent.kvr")},
                                                          {"{empty}", dir.File("empty.kvr")}};
    const auto resolve = [&stands](std::string text) {
        for (const auto& [name, value] : stands) {
            const size_t at = text.find(name);
            if (at != std::string::npos) text.replace(at, name.size(), value);
        }
        return text;
    };
    for (const Refusal& r : refusals) {
        std::vector<std::string> args;
        for (const std::string& a : r.args) args.push_back(resolve(a));
        const std::string what = ::testing::PrintToString(r.args);
        const ProcessResult run = ExpectExit(args, r.status, what);
        if (!r.message.empty()) {
            EXPECT_EQ(run.err, resolve(r.message)) << what;
        }
        // A refused plot leaves no picture behind, not even an empty one.
        EXPECT_FALSE(std::filesystem::exists(dir.File("p.png"))) << what;
    }
}

// Random bytes: as a whole file they are no data file; after a valid head they are records.
TEST_F(HostileFiles, RandomBytesAloneOrAfterAValidHead) {
    std::mt19937 rng(20240601);
    for (size_t size : {1u, 3u, 95u, 96u, 500u, 4096u, 100000u}) {
        WriteFileBytes(path, RandomBytes(rng, size));
        ExpectExit({"info", path}, 2, "random " + std::to_string(size));
        ExpectExit({"profile", path, "1", "--json"}, 2, "random " + std::to_string(size));
    }
    Bytes bytes(whole.begin(), whole.begin() + static_cast<long>(kHead));
    rng.seed(7);
    const Bytes garbage = RandomBytes(rng, 10 * kSmallRecordSize + 17);
    bytes.insert(bytes.end(), garbage.begin(), garbage.end());
    WriteFileBytes(path, bytes);
    // The head is valid: ten whole records are counted, the 17 bytes left over are not.
    EXPECT_EQ(RunCliJson({"info", path, "--json"})["profiles"], 10);
    // A record of garbage reads, but its checksum cannot match: read result 2.
    for (int n : {1, 5, 10}) {
        EXPECT_EQ(RunCliJson({"profile", path, std::to_string(n), "--json"})["read_result"], 2) << "profile " << n;
    }
    ExpectExit({"profile", path, "11"}, 64, "profile past the last whole record");
}

// `info` on every length of the file up to 600 bytes; `profile`, whose head is opened by the
// same code, on every tenth length inside the head and every length from just before its end.
TEST_F(HostileFiles, FileTruncatedAtEveryOffset) {
    for (size_t size = 0; size < 600; ++size) {
        WriteFileBytes(path, Bytes(whole.begin(), whole.begin() + static_cast<long>(size)));
        const std::string at = "size " + std::to_string(size);
        const ProcessResult info = ExpectExit({"info", path, "--json"}, size < kHead ? 2 : 0, at);
        if (size >= kHead && info.exitStatus == 0) {
            const nlohmann::json facts = nlohmann::json::parse(info.out);
            EXPECT_EQ(facts["profiles"], (size - kHead) / kSmallRecordSize) << at;
            // No whole profile: no time to show.
            if (size < kHead + kSmallRecordSize) {
                EXPECT_TRUE(facts["first_profile_time"].is_null()) << at;
                EXPECT_TRUE(facts["last_profile_time"].is_null()) << at;
            }
        }
        if (size % 10 != 0 && size < kHead - 20) continue;
        const int expected = size < kHead ? 2 : size < kHead + kSmallRecordSize ? 64 : 0;
        const ProcessResult profile = ExpectExit({"profile", path, "1", "--json"}, expected, at);
        if (expected == 0 && profile.exitStatus == 0) {
            EXPECT_EQ(nlohmann::json::parse(profile.out)["read_result"], 0) << at;
        }
    }
}

// Heads that the reader refuses or that announce huge records. The limits of cells and beams
// themselves are the data file's tests; here they must end as an exit status.
TEST_F(HostileFiles, HeadWithAbsurdCounts) {
    struct Edit {
        const char* what;
        std::vector<std::pair<size_t, unsigned char>> bytes;  // offset, new value
        int profiles;  // whole profiles the head then announces; -1: not a data file
    };
    const size_t cells = kUserAt + 18;  // u16
    const Edit edits[] = {
        {"65535 cells", {{cells, 0xFF}, {cells + 1, 0xFF}}, -1},
        {"0 beams", {{26, 0}}, -1},
        {"frequency index 200", {{25, 200}}, -1},
        {"orientation 9", {{30, 9}}, -1},
        {"size field of the configuration", {{2, 0xFF}, {3, 0xFF}}, -1},
        {"version 7", {{1, 7}}, -1},
        // A wave burst after every profile, with two more series (rate bits 4 and 5 read 1) of
        // 65535 points: 9 x 65535 + 82 bytes a burst, first burst at index 0. The 780 bytes
        // after the head hold one profile, then a burst cut short.
        {"huge wave bursts", {{kUserAt + 248, 1}, {kUserAt + 249, 0x10}, {kUserAt + 250, 0xFF}, {kUserAt + 251, 0xFF}},
         1},
    };
    for (const Edit& e : edits) {
        Bytes bytes = whole;
        for (const auto& [at, value] : e.bytes) bytes[at] = value;
        WriteFileBytes(path, bytes);
        if (e.profiles < 0) {
            ExpectExit({"info", path, "--json"}, 2, e.what);
            ExpectExit({"profile", path, "1"}, 2, e.what);
            continue;
        }
        const ProcessResult run = ExpectExit({"info", path, "--json"}, 0, e.what);
        if (run.exitStatus == 0) {
            EXPECT_EQ(nlohmann::json::parse(run.out)["profiles"], e.profiles) << e.what;
        }
        ExpectExit({"profile", path, std::to_string(e.profiles + 1)}, 64, e.what);
    }
}

// A sparse file of some gigabytes with a valid head: the counts are huge, the tool still
// answers, and the size shows in GB.
TEST_F(HostileFiles, HugeSparseFile) {
    WriteFileBytes(path, whole);
    const uintmax_t size = 3ull * 1024 * 1024 * 1024;
    std::error_code ec;
    std::filesystem::resize_file(path, size, ec);
    if (ec) GTEST_SKIP() << "the temporary folder cannot hold a sparse file: " << ec.message();

    const nlohmann::json info = RunCliJson({"info", path, "--json"});
    EXPECT_EQ(info["size_text"], "3.00 GB");
    const long long profiles = static_cast<long long>((size - kHead) / kSmallRecordSize);
    EXPECT_EQ(info["profiles"], profiles);
    // The last record is all zeros: it reads, and its checksum (0xA596 over zeros) fails.
    const nlohmann::json last = RunCliJson({"profile", path, std::to_string(profiles), "--json"});
    EXPECT_EQ(last["read_result"], 2);
    EXPECT_EQ(last["velocity_raw"][0][0], 0);
}

// Random byte flips in a real recording, seeded: every run must end by itself, with 0, 2 or 64,
// and when it succeeds with --json its output must be one JSON document.
// A recording with every optional block of the simulator, so that flips can reach them too.
TEST_F(HostileFiles, RandomByteFlipsNeverKillTheTool) {
    const Bytes blocks = ReadFileBytes(RecordRiver(dir, "FUZZ", {"--cells", "6", "--profiles", "4", "--internal-gps",
                                                                 "--bottom-track", "2", "--echo-sounder"})
                                           .path);
    std::mt19937 rng(424242);
    for (int run = 0; run < 300; ++run) {
        Bytes bytes = blocks;
        const int flips = 1 + static_cast<int>(rng() % 8);
        for (int f = 0; f < flips; ++f) {
            // Most flips land in the head, where the counts and layout are decided.
            const size_t span = (rng() % 4 == 0) ? bytes.size() : kHead;
            bytes[rng() % span] ^= static_cast<unsigned char>(1u << (rng() % 8));
        }
        WriteFileBytes(path, bytes);
        std::vector<std::string> args;
        switch (run % 3) {
            case 0: args = {"info", path, "--json"}; break;
            case 1: args = {"info", path}; break;
            default: args = {"profile", path, std::to_string(1 + rng() % 4), "--json"}; break;
        }
        const ProcessResult result = RunCli(args);
        ASSERT_TRUE(result.Exited()) << "run " << run << ": " << result.Describe();
        const int status = result.exitStatus;
        ASSERT_TRUE(status == 0 || status == 2 || status == 64) << "run " << run << ": " << result.Describe();
        if (status == 0 && args.back() == "--json") {
            EXPECT_TRUE(nlohmann::json::accept(result.out)) << "run " << run;
        }
    }
}

}  // namespace
}  // namespace rm::test
