// ripplemark-cli batch and export --format fdx|fpx, run as programs on simulator recordings.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "cli/sim_recording.h"

namespace rm::test {
namespace {

namespace fs = std::filesystem;

TEST(BatchCommand, ReportsEachFileInListOrderAndRefusesAnUpLookingOne) {
    TempDir dir;
    const SimRecording down = RecordRiver(dir, "down", {"--profiles", "20"});
    const SimRecording up = RecordRiver(dir, "up", {"--profiles", "20"});
    {
        // Byte 30 of the configuration at the start of the file: sensor orientation, 1 up.
        std::fstream f(up.path, std::ios::in | std::ios::out | std::ios::binary);
        f.seekp(30);
        f.put('\1');
    }
    const ProcessResult run = RunCli({"batch", up.path, down.path, "--out", dir.File("out"), "--jobs", "2", "--no-summary"});
    ASSERT_TRUE(run.Exited());
    EXPECT_EQ(run.exitStatus, 0) << run.Describe();
    const std::string expected = "Export files 1/2: " + up.path + "\nFile: " + up.path +
                                 "\ncontains data from an up or side looking system.\nData from this file will not be "
                                 "processed.\nExport files 2/2: " + down.path + "\nAll files exported\n";
    EXPECT_EQ(run.out, expected);
    EXPECT_TRUE(fs::exists(dir.File("out/down.T")));
    EXPECT_TRUE(fs::exists(dir.File("out/up.fdx")));  // named after the first file of the list
}

TEST(BatchCommand, RefusesBadOptions) {
    EXPECT_EQ(RunCli({"batch", "x.kvr", "--jobs", "0"}).exitStatus, 64);
    EXPECT_EQ(RunCli({"batch", "x.kvr", "--salinity", "61"}).exitStatus, 64);
    EXPECT_EQ(RunCli({"batch"}).exitStatus, 64);
}

TEST(ExportCommand, WritesExchangeFilesOfTheMeasurement) {
    TempDir dir;
    const SimRecording rec = RecordRiver(dir, "t", {"--profiles", "20"});
    const ProcessResult fdx = RunCli({"export", rec.path, "--format", "fdx"});
    ASSERT_EQ(fdx.exitStatus, 0) << fdx.Describe();
    std::ifstream in(dir.File("t.fdx"), std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text.rfind("<?xml version=\"1.0\"?>\r\n", 0), 0u);
    EXPECT_NE(text.find("\t\t\tFileName=\"t.kvr\"\r\n"), std::string::npos);
    EXPECT_NE(text.find("\r\n\t\t</Measurement>\r\n\t</Measurements>\r\n</FlowDataExchange>"), std::string::npos);

    const ProcessResult fpx = RunCli({"export", rec.path, "--format", "fpx", "-o", dir.File("m.fpx")});
    ASSERT_EQ(fpx.exitStatus, 0) << fpx.Describe();
    std::ifstream bin(dir.File("m.fpx"), std::ios::binary);
    std::string head(22, 'x');
    bin.read(&head[0], 22);
    // Two root entries, then "FpxVersion" (11 bytes with its NUL), no sub-node, text type 8.
    const std::string expected = std::string("\2\0\0\0\x0b\0\0\0", 8) + "FpxVersion" + std::string(2, '\0') + "\x08" +
                                 std::string(1, '\0');
    EXPECT_EQ(head, expected);
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// The "Magnetic Declination" of the ASCII output dialog: for the velocity set only, alone or in
// "Write All Files".
TEST(ExportCommand, DeclinationTurnsTheVelocitySet) {
    TempDir dir;
    const SimRecording rec = RecordRiver(dir, "v", {"--profiles", "10"});
    ASSERT_EQ(RunCli({"export", rec.path, "--format", "velocity", "-o", dir.File("own")}).exitStatus, 0);
    const ProcessResult turned =
        RunCli({"export", rec.path, "--format", "velocity", "--declination", "12.5", "-o", dir.File("turned")});
    ASSERT_EQ(turned.exitStatus, 0) << turned.Describe();
    EXPECT_EQ(turned.out.rfind("Velocity Data File: \n    turned.ve successfully written\n", 0), 0u) << turned.out;
    EXPECT_NE(Slurp(dir.File("own.ve")), Slurp(dir.File("turned.ve")));

    const ProcessResult all =
        RunCli({"export", rec.path, "--format", "all", "--declination", "12.5", "-o", dir.File("all")});
    ASSERT_EQ(all.exitStatus, 0) << all.Describe();
    for (const char* ext : {".ctl", ".hdr", ".a1", ".sd1", ".sn1", ".gps"}) {
        EXPECT_TRUE(fs::exists(dir.File(std::string("all") + ext))) << ext;
    }
    EXPECT_EQ(Slurp(dir.File("all.ve")), Slurp(dir.File("turned.ve")));
    EXPECT_EQ(RunCli({"export", rec.path, "--format", "hdr", "--declination", "3"}).exitStatus, 64);
    EXPECT_EQ(RunCli({"export", rec.path, "--format", "velocity", "--declination", "181"}).exitStatus, 64);
}

}  // namespace
}  // namespace rm::test
