// The "ASCII File Output" set on recordings with known values: line formats of the per-beam,
// header and velocity files, file naming, profile ranges, the message list, the declination of
// the velocity set and the space check.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "ascii_test_support.h"
#include "output/ascii_file_output.h"
#include "output/space_check.h"

namespace rm {
namespace {

using namespace asciitest;

constexpr int kProfiles = 5;
constexpr int kCells = 20;

// Amplitude 40 + 10 b + c, standard deviation 15 + b raw (mm/s), a header with known time and
// attitude.
void KnownValues(ProfileRecord& record, int /*number*/) {
    for (int b = 0; b < record.beams; ++b) {
        for (int c = 0; c < record.cells; ++c) {
            record.Amplitude(b, c) = static_cast<uint8_t>(40 + 10 * b + c);
            record.StdError(b, c) = static_cast<uint8_t>(15 + b);
        }
    }
    ProfileHeader& h = record.header;
    h.year = 2024;
    h.month = 5;
    h.day = 17;
    h.hour = 8;
    h.minute = 30;
    h.second = 15;
    h.heading = 1234;
    h.pitch = -15;
    h.roll = 25;
    h.temperature = 1550;
}

class AsciiFileOutput : public ::testing::Test {
protected:
    void SetUp() override {
        MakeRecording(path, kProfiles, {}, KnownValues);
        opened = OpenRecording(path);
    }
    AsciiFileRequest Request(const std::string& stem, int coords = 2, int reference = 0) {
        AsciiFileRequest r;
        r.basePath = folder.File(stem);
        r.coordinateSystem = coords;
        r.velocityReference = reference;
        return r;
    }
    bool Write(AsciiOutputKind kind, const AsciiFileRequest& request, CSurveyKVRDoc* doc = nullptr) {
        return WriteAsciiOutput(doc != nullptr ? *doc : *opened->doc, kind, request, opened->prompt, messages);
    }
    ScratchFolder folder;
    std::string path = folder.File("K.kvr");
    std::unique_ptr<OpenedDocument> opened;
    std::vector<std::string> messages;
};

std::string ExpectedCellLine(int profile, const char* format, const std::function<double(int)>& value) {
    char text[32];
    std::snprintf(text, sizeof text, "%6ld", static_cast<long>(profile));
    std::string line = text;
    for (int c = 0; c < kCells; ++c) {
        if (std::string(format) == "%5d") {
            std::snprintf(text, sizeof text, format, static_cast<int>(value(c)));
        } else {
            std::snprintf(text, sizeof text, format, value(c));
        }
        line += text;
    }
    return line;
}

TEST_F(AsciiFileOutput, PerBeamFilesHoldOneLinePerProfileInTheirFormats) {
    const AsciiFileRequest request = Request("K");
    ASSERT_TRUE(Write(AsciiOutputKind::SignalStrength, request));
    ASSERT_TRUE(Write(AsciiOutputKind::StdDeviation, request));
    ASSERT_TRUE(Write(AsciiOutputKind::SnRatio, request));
    for (int b = 0; b < 4; ++b) {
        const std::vector<std::string> a = TextLines(request.basePath + ".a" + std::to_string(b + 1));
        const std::vector<std::string> sd = TextLines(request.basePath + ".sd" + std::to_string(b + 1));
        const std::vector<std::string> sn = TextLines(request.basePath + ".sn" + std::to_string(b + 1));
        ASSERT_EQ(a.size(), static_cast<size_t>(kProfiles + 1));
        ASSERT_EQ(sd.size(), a.size());
        ASSERT_EQ(sn.size(), a.size());
        EXPECT_EQ(a[0], "");  // every line opens with its line end
        for (int p = 1; p <= kProfiles; ++p) {
            EXPECT_EQ(a[p], ExpectedCellLine(p, "%5d", [&](int c) { return 40 + 10 * b + c; }));
            // Raw standard deviation in mm/s, written in cm/s.
            EXPECT_EQ(sd[p], ExpectedCellLine(p, "%6.1f", [&](int) { return (15 + b) * 0.1; }));
            // No noise level recorded: SNR = amplitude x 0.43 dB.
            EXPECT_EQ(sn[p], ExpectedCellLine(p, "%6.1f", [&](int c) { return (40 + 10 * b + c) * 0.43; }));
        }
    }
    EXPECT_FALSE(Exists(request.basePath + ".a5"));
}

TEST_F(AsciiFileOutput, HeaderLineStartsWithDateTimeAndAttitude) {
    const AsciiFileRequest request = Request("K");
    ASSERT_TRUE(Write(AsciiOutputKind::Header, request));
    const std::vector<std::string> lines = TextLines(request.basePath + ".hdr");
    ASSERT_EQ(lines.size(), static_cast<size_t>(kProfiles + 1));
    EXPECT_EQ(lines[1].substr(0, 26), "     1 2024  5 17  8 30 15");
    const std::vector<double> v = Numbers(lines[1]);
    ASSERT_EQ(v.size(), 20u);
    EXPECT_DOUBLE_EQ(v[8], 123.4);  // heading
    EXPECT_DOUBLE_EQ(v[9], -1.5);   // pitch
    EXPECT_DOUBLE_EQ(v[10], 2.5);   // roll
    EXPECT_DOUBLE_EQ(v[11], 15.5);  // temperature
}

TEST_F(AsciiFileOutput, VelocitySetNamesAndSpeedFromTheFirstTwoComponents) {
    const AsciiFileRequest request = Request("V", 2, 1);
    ASSERT_TRUE(Write(AsciiOutputKind::Velocity, request));
    const std::vector<std::string> expectedMessages{
        "Velocity Data File: ",          "    V.ve successfully written",  "    V.vn successfully written",
        "    V.vu successfully written", "    V.vu2 successfully written", "    V.spd successfully written",
        "    V.dir successfully written", ""};
    EXPECT_EQ(messages, expectedMessages);
    const std::vector<std::string> ve = TextLines(request.basePath + ".ve"), vn = TextLines(request.basePath + ".vn");
    const std::vector<std::string> spd = TextLines(request.basePath + ".spd"), dir = TextLines(request.basePath + ".dir");
    ASSERT_EQ(ve.size(), static_cast<size_t>(kProfiles + 1));
    int checked = 0;
    for (int p = 1; p <= kProfiles; ++p) {
        const std::vector<double> e = Numbers(ve[p]), n = Numbers(vn[p]), s = Numbers(spd[p]), d = Numbers(dir[p]);
        ASSERT_EQ(e.size(), static_cast<size_t>(kCells + 1));
        ASSERT_EQ(s.size(), e.size());
        for (int c = 1; c <= kCells; ++c) {
            if (e[c] >= 3270.0) {
                EXPECT_DOUBLE_EQ(s[c], 32767.0);
                EXPECT_DOUBLE_EQ(d[c], 0.0);
                continue;
            }
            EXPECT_NEAR(s[c], std::hypot(e[c], n[c]), 0.1);
            EXPECT_GE(d[c], 0.0);
            EXPECT_LT(d[c], 360.0);
            ++checked;
        }
    }
    EXPECT_GT(checked, 0);
}

TEST_F(AsciiFileOutput, ThreeBeamsWriteNoFourthComponentFile) {
    const std::string three = folder.File("T3.kvr");
    MakeRecording(three, kProfiles, [](sim::RiverScenario& s) { s.instrument.beams = 3; });
    auto threeBeams = OpenRecording(three);
    const AsciiFileRequest request = Request("T3", 0);
    ASSERT_TRUE(Write(AsciiOutputKind::Velocity, request, threeBeams->doc.get()));
    EXPECT_TRUE(Exists(request.basePath + ".v3"));
    EXPECT_FALSE(Exists(request.basePath + ".v4"));
    EXPECT_TRUE(Exists(request.basePath + ".spd"));
    EXPECT_EQ(messages.size(), 3u + 2u + 2u);
}

// The declination of the dialog: the velocity set equals that of the same recording stored with
// this declination, and the document has its own declination and results again afterwards.
TEST_F(AsciiFileOutput, DeclinationOfTheDialogTurnsTheVelocitySetOnly) {
    constexpr double kDeclination = 12.5;  // 625 units of 0.02 degree: exact in the record
    const std::string turned = folder.File("D.kvr");
    MakeRecording(turned, kProfiles, {}, KnownValues,
                  [](CKvrData& d) { d.user.MagneticDeclinationRaw = DeclinationToRaw(kDeclination); });
    auto reference = OpenRecording(turned);
    ASSERT_TRUE(Write(AsciiOutputKind::Velocity, Request("P", 2, 1), reference->doc.get()));

    const double own = opened->doc->Data().derived.magneticDeclination;
    ASSERT_TRUE(opened->doc->Recompute());
    const float ownTotal = opened->doc->Measurement().TotalDischarge;
    AsciiFileRequest overridden = Request("O", 2, 1);
    overridden.magneticDeclination = kDeclination;
    ASSERT_TRUE(Write(AsciiOutputKind::Velocity, overridden));
    ASSERT_TRUE(Write(AsciiOutputKind::Velocity, Request("N", 2, 1)));
    for (const char* ext : {".ve", ".vn", ".vu", ".vu2", ".spd", ".dir"}) {
        EXPECT_EQ(ReadAll(folder.File(std::string("O") + ext)), ReadAll(folder.File(std::string("P") + ext))) << ext;
    }
    EXPECT_NE(ReadAll(folder.File("O.ve")), ReadAll(folder.File("N.ve")));
    EXPECT_EQ(opened->doc->Data().derived.magneticDeclination, own);
    EXPECT_EQ(opened->doc->Measurement().TotalDischarge, ownTotal);
}

TEST_F(AsciiFileOutput, SelectedRangeWithFirstEqualToLastWritesOneLine) {
    AsciiFileRequest request = Request("R");
    request.first = request.last = 3;
    ASSERT_TRUE(Write(AsciiOutputKind::Gps, request));
    const std::vector<std::string> lines = TextLines(request.basePath + ".gps");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1].substr(0, 6), "     3");
    // Without GPS every field is the no-value mark: 6 position fields, 3 velocities, direction 0.
    const std::vector<double> v = Numbers(lines[1]);
    ASSERT_EQ(v.size(), 11u);
    for (int i = 1; i <= 9; ++i) EXPECT_DOUBLE_EQ(v[i], 32767.0);
    EXPECT_DOUBLE_EQ(v[10], 0.0);
}

TEST_F(AsciiFileOutput, ConfigurationFileHoldsTheDumpsAndTheBottomTrackNote) {
    const AsciiFileRequest request = Request("C");
    ASSERT_TRUE(Write(AsciiOutputKind::Configuration, request));
    const std::string text = ReadText(request.basePath + ".ctl");
    EXPECT_NE(text.find("\nBottom Track Data is present in file\n"), std::string::npos);
    EXPECT_EQ(text.find("GPS Data is present"), std::string::npos);
    EXPECT_EQ(messages, (std::vector<std::string>{"Configuration Data File: ", "    C.ctl successfully written", ""}));
}

TEST_F(AsciiFileOutput, TooLittleSpaceStopsBeforeAnyFileIsTouched) {
    AsciiFileRequest request = Request("S");
    request.freeBytes = 100;
    EXPECT_FALSE(Write(AsciiOutputKind::Header, request));
    EXPECT_EQ(opened->prompt.messages, std::vector<std::string>{std::string(kNotEnoughSpace) + folder.path() + "/"});
    EXPECT_FALSE(Exists(request.basePath + ".hdr"));
    EXPECT_TRUE(messages.empty());
}

TEST_F(AsciiFileOutput, UnwritableFolderReportsTheWriteError) {
    AsciiFileRequest request = Request("missing/X");
    request.freeBytes = uint64_t{1} << 40;
    EXPECT_FALSE(Write(AsciiOutputKind::Header, request));
    EXPECT_EQ(opened->prompt.messages, std::vector<std::string>{"Error writing to file"});
}

}  // namespace
}  // namespace rm
