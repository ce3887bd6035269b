// The commands that read a data file against files that are not what they claim: whatever the
// bytes, the answer is an exit status (2 for a file that is not a data file, 0 for a valid
// file however short) and never a death by a signal.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "cli/sim_recording.h"

namespace rm::test {
namespace {

// Head of every recording of the simulator: conf 96 + oper 64 + user 256 bytes.
constexpr size_t kHead = 416;
constexpr size_t kUserAt = 96 + 64;

// A small recording: 3 beams, 4 cells, no optional blocks, so one record is
// 80 + 4 x 4 x 3 + 2 = 130 bytes and the first 600 bytes hold the head, one whole record and
// part of the second.
constexpr int kSmallRecordSize = 130;

std::vector<unsigned char> SmallRecording(const TempDir& dir) {
    const SimRecording rec = RecordRiver(dir, "SMALL", {"--beams", "3", "--cells", "4", "--bottom-track", "0",
                                                        "--profiles", "6"});
    return ReadFileBytes(rec.path);
}

std::vector<unsigned char> RandomBytes(std::mt19937& rng, size_t count) {
    std::vector<unsigned char> bytes(count);
    for (auto& b : bytes) b = static_cast<unsigned char>(rng() & 0xFF);
    return bytes;
}

void PutU16(std::vector<unsigned char>& bytes, size_t at, unsigned value) {
    bytes[at] = static_cast<unsigned char>(value & 0xFF);
    bytes[at + 1] = static_cast<unsigned char>(value >> 8);
}

// Runs the command and requires that it ended by itself with `expected`.
void ExpectExit(const std::vector<std::string>& args, int expected, const std::string& what) {
    const ProcessResult run = RunCli(args);
    ASSERT_TRUE(run.Exited()) << what << ": " << run.Describe();
    EXPECT_EQ(run.exitStatus, expected) << what << ": " << run.Describe();
    if (expected == 2) {
        EXPECT_FALSE(run.err.empty()) << what << ": no message";
    }
}

TEST(HostileFiles, EmptyAndRandomFilesAreNotDataFiles) {
    TempDir dir;
    const std::string path = dir.File("bad.kvr");
    WriteFileBytes(path, {});
    const ProcessResult empty = RunCli({"info", path});
    ASSERT_TRUE(empty.Exited()) << empty.Describe();
    EXPECT_EQ(empty.exitStatus, 2);
    EXPECT_EQ(empty.err, "The file is not a valid Kvr file\n");

    std::mt19937 rng(20240601);
    for (size_t size : {1u, 3u, 95u, 96u, 500u, 4096u, 100000u}) {
        WriteFileBytes(path, RandomBytes(rng, size));
        ExpectExit({"info", path}, 2, "random " + std::to_string(size));
        ExpectExit({"profile", path, "1", "--json"}, 2, "random " + std::to_string(size));
    }
}

TEST(HostileFiles, ValidHeadFollowedByGarbage) {
    TempDir dir;
    std::vector<unsigned char> bytes = SmallRecording(dir);
    bytes.resize(kHead);
    std::mt19937 rng(7);
    const std::vector<unsigned char> garbage = RandomBytes(rng, 10 * kSmallRecordSize + 17);
    bytes.insert(bytes.end(), garbage.begin(), garbage.end());
    const std::string path = dir.File("garbage.kvr");
    WriteFileBytes(path, bytes);

    // The head is valid: ten whole records are counted, the 17 bytes left over are not.
    const nlohmann::json info = RunCliJson({"info", path, "--json"});
    EXPECT_EQ(info["profiles"], 10);
    // A record of garbage reads, but its checksum cannot match: read result 2.
    for (int n : {1, 5, 10}) {
        const nlohmann::json profile = RunCliJson({"profile", path, std::to_string(n), "--json"});
        EXPECT_EQ(profile["read_result"], 2) << "profile " << n;
    }
    ExpectExit({"profile", path, "11"}, 64, "profile past the last whole record");
}

TEST(HostileFiles, InfoOnFileTruncatedAtEveryOffset) {
    TempDir dir;
    const std::vector<unsigned char> whole = SmallRecording(dir);
    ASSERT_GE(whole.size(), 600u);
    const std::string path = dir.File("cut.kvr");
    for (size_t size = 0; size < 600; ++size) {
        WriteFileBytes(path, std::vector<unsigned char>(whole.begin(), whole.begin() + static_cast<long>(size)));
        const ProcessResult run = RunCli({"info", path, "--json"});
        ASSERT_TRUE(run.Exited()) << "size " << size << ": " << run.Describe();
        if (size < kHead) {
            EXPECT_EQ(run.exitStatus, 2) << "size " << size;
        } else {
            ASSERT_EQ(run.exitStatus, 0) << "size " << size << ": " << run.Describe();
            const nlohmann::json info = nlohmann::json::parse(run.out);
            EXPECT_EQ(info["profiles"], (size - kHead) / kSmallRecordSize) << "size " << size;
            // No whole profile: no time to show.
            if (size < kHead + kSmallRecordSize) {
                EXPECT_TRUE(info["first_profile_time"].is_null()) << "size " << size;
                EXPECT_TRUE(info["last_profile_time"].is_null()) << "size " << size;
            }
        }
    }
}

// The head is opened by the same code for both commands, and the test above walks it byte by
// byte; here every tenth offset of the head and every offset from just before its end.
TEST(HostileFiles, ProfileOnFileTruncatedAtEveryOffset) {
    TempDir dir;
    const std::vector<unsigned char> whole = SmallRecording(dir);
    const std::string path = dir.File("cut.kvr");
    for (size_t size = 0; size < 600; size += (size < kHead - 20 ? 10 : 1)) {
        WriteFileBytes(path, std::vector<unsigned char>(whole.begin(), whole.begin() + static_cast<long>(size)));
        const ProcessResult run = RunCli({"profile", path, "1", "--json"});
        ASSERT_TRUE(run.Exited()) << "size " << size << ": " << run.Describe();
        const int expected = size < kHead ? 2 : size < kHead + kSmallRecordSize ? 64 : 0;
        EXPECT_EQ(run.exitStatus, expected) << "size " << size << ": " << run.Describe();
        if (expected == 0) {
            EXPECT_EQ(nlohmann::json::parse(run.out)["read_result"], 0) << "size " << size;
        }
    }
}

TEST(HostileFiles, HeadWithAbsurdCounts) {
    TempDir dir;
    const std::vector<unsigned char> whole = SmallRecording(dir);
    const std::string path = dir.File("absurd.kvr");
    using Bytes = std::vector<unsigned char>;
    struct Edit {
        const char* what;
        std::function<void(Bytes&)> apply;
        int profiles;  // whole profiles the head then announces; -1: not a data file
    };
    const Edit edits[] = {
        {"65535 cells", [](Bytes& b) { PutU16(b, kUserAt + 18, 65535); }, -1},
        {"0 cells", [](Bytes& b) { PutU16(b, kUserAt + 18, 0); }, -1},
        {"129 cells", [](Bytes& b) { PutU16(b, kUserAt + 18, 129); }, -1},
        {"5 beams", [](Bytes& b) { b[26] = 5; }, -1},
        {"0 beams", [](Bytes& b) { b[26] = 0; }, -1},
        {"frequency index 200", [](Bytes& b) { b[25] = 200; }, -1},
        {"orientation 9", [](Bytes& b) { b[30] = 9; }, -1},
        {"size field of the configuration", [](Bytes& b) { PutU16(b, 2, 0xFFFF); }, -1},
        {"version 7", [](Bytes& b) { b[1] = 7; }, -1},
        // 128 cells of 3 beams make a record of 82 + 4 x 128 x 3 = 1618 bytes: the 6 x 130
        // bytes after the head hold none.
        {"128 cells", [](Bytes& b) { PutU16(b, kUserAt + 18, 128); }, 0},
        // A wave burst after every profile, with two more series (rate bits 4 and 5 read 1) of
        // 65535 points: 9 x 65535 + 82 bytes a burst, first burst at index 0. The 780 bytes
        // after the head hold one profile, then a burst cut short.
        {"huge wave bursts",
         [](Bytes& b) {
             b[kUserAt + 248] = 1;
             b[kUserAt + 249] = 0x10;
             PutU16(b, kUserAt + 250, 65535);
         },
         1},
    };
    for (const Edit& e : edits) {
        Bytes bytes = whole;
        e.apply(bytes);
        WriteFileBytes(path, bytes);
        if (e.profiles < 0) {
            ExpectExit({"info", path, "--json"}, 2, e.what);
            ExpectExit({"profile", path, "1"}, 2, e.what);
            continue;
        }
        const ProcessResult run = RunCli({"info", path, "--json"});
        ASSERT_TRUE(run.Exited() && run.exitStatus == 0) << e.what << ": " << run.Describe();
        EXPECT_EQ(nlohmann::json::parse(run.out)["profiles"], e.profiles) << e.what;
        ExpectExit({"profile", path, std::to_string(e.profiles + 1)}, 64, e.what);
    }
}

// A sparse file of some gigabytes with a valid head: the counts are huge, the tool still
// answers, and the size shows in GB.
TEST(HostileFiles, HugeSparseFile) {
    TempDir dir;
    std::vector<unsigned char> bytes = SmallRecording(dir);
    const std::string path = dir.File("huge.kvr");
    WriteFileBytes(path, bytes);
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
TEST(HostileFiles, RandomByteFlipsNeverKillTheTool) {
    TempDir dir;
    const SimRecording rec = RecordRiver(dir, "FUZZ", {"--cells", "6", "--profiles", "4", "--internal-gps",
                                                       "--bottom-track", "2", "--echo-sounder"});
    const std::vector<unsigned char> whole = ReadFileBytes(rec.path);
    const std::string path = dir.File("flipped.kvr");
    std::mt19937 rng(424242);
    for (int run = 0; run < 300; ++run) {
        std::vector<unsigned char> bytes = whole;
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
