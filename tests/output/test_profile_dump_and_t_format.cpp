// The per-profile text dump (CR LF literals) and the "T" format's head and block structure,
// with the cell lines' depths checked against the virtual river's cell layout and their
// velocities against the processing.

#include <gtest/gtest.h>

#include <cmath>

#include "ascii_test_support.h"
#include "output/profile_dump.h"
#include "output/t_format.h"
#include "processing/processing_steps.h"

namespace rm {
namespace {

using namespace asciitest;

constexpr int kProfiles = 4;

class TextDumps : public ::testing::Test {
protected:
    void SetUp() override {
        MakeRecording(path, kProfiles, [](sim::RiverScenario& s) {
            s.comments = {"first comment", "second comment", "third"};
        });
    }
    ScratchFolder folder;
    std::string path = folder.File("D.kvr");
};

TEST_F(TextDumps, ProfileDumpUsesCarriageReturnLineFeedAndOneLinePerValidCell) {
    auto opened = OpenRecording(path);
    const std::string out = folder.File("D.dump");
    ASSERT_TRUE(WriteProfileDumpFile(*opened->doc, out, opened->prompt));
    const std::string text = ReadAll(out);
    ASSERT_EQ(text.rfind("\r\n-------------------------------\r\nPROFILE    1\r\nDepth ", 0), 0u);
    for (size_t i = text.find('\n'); i != std::string::npos; i = text.find('\n', i + 1)) {
        ASSERT_GT(i, 0u);
        EXPECT_EQ(text[i - 1], '\r') << "bare line feed at " << i;
    }
    // Each profile's block: ValidCells n, then "VelBot ...\r\n" leaves a blank line, and the
    // cell lines follow the lone "\r\n" after the discharges.
    size_t blocks = 0;
    for (size_t at = text.find("\r\nValidCells "); at != std::string::npos; at = text.find("\r\nValidCells ", at + 1)) {
        ++blocks;
        const int valid = std::stoi(text.substr(at + 13));
        const size_t next = text.find("\r\n---", at);
        const std::string block = text.substr(at, next == std::string::npos ? std::string::npos : next - at);
        size_t cells = 0;
        for (size_t c = block.find("\r\nCell "); c != std::string::npos; c = block.find("\r\nCell ", c + 1)) ++cells;
        EXPECT_EQ(cells, static_cast<size_t>(valid));
        EXPECT_NE(block.find("\r\nDischargeBot "), std::string::npos);
    }
    EXPECT_EQ(blocks, static_cast<size_t>(kProfiles));
}

TEST_F(TextDumps, TFormatHeadAndBlockOfSixLinesPlusOnePerCellAtTheCellsDepths) {
    auto opened = OpenRecording(path);
    const std::string out = folder.File("D.tformat");
    ASSERT_TRUE(WriteTFormatFile(*opened->doc, out, kTFormatCentimetres, opened->prompt));
    const std::vector<std::string> lines = TextLines(out);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[0], "first comment");
    EXPECT_EQ(lines[1], "second comment");
    // Cell size 25 cm, blanking 25 cm, 20 cells raised by none (bottom-track reference).
    const std::vector<double> head = Numbers(lines[2]);
    ASSERT_EQ(head.size(), 7u);
    EXPECT_DOUBLE_EQ(head[0], 25.0);
    EXPECT_DOUBLE_EQ(head[1], 25.0);
    EXPECT_DOUBLE_EQ(head[2], 20.0);
    const size_t perProfile = 6 + 20;
    ASSERT_EQ(lines.size(), 3 + kProfiles * perProfile);
    for (int p = 0; p < kProfiles; ++p) {
        const size_t first = 3 + p * perProfile;
        const std::vector<double> line1 = Numbers(lines[first]);
        ASSERT_EQ(line1.size(), 13u);
        EXPECT_DOUBLE_EQ(line1[7], p + 1.0);  // profile number
        EXPECT_DOUBLE_EQ(line1[8], 1.0);
        EXPECT_EQ(Numbers(lines[first + 1]).size(), 13u);
        EXPECT_EQ(lines[first + 5], " 20 cm BT counts  0.43   0.000");
        // Each cell at the depth of its centre, with the velocity that processing gives it (cm/s).
        const sim::CellLayout layout = sim::CellLayoutOf(sim::InstrumentOptions{});
        VelocityArrays velocity{};
        GetVelocities(opened->doc->Context(), opened->doc->Context().SlotOfProfile(p + 1), velocity);
        for (int cell = 0; cell < 20; ++cell) {
            const std::vector<double> values = Numbers(lines[first + 6 + static_cast<size_t>(cell)]);
            ASSERT_EQ(values.size(), 13u);
            EXPECT_NEAR(values[0], layout.CellCentre(cell), 0.0005) << "profile " << p + 1 << " cell " << cell;
            for (int row = 0; row < 4; ++row) {
                const float v = velocity[static_cast<size_t>(row)][static_cast<size_t>(cell)];
                EXPECT_NEAR(values[3 + static_cast<size_t>(row)], v < MissingValueF ? v : 32767.0, 0.051)
                    << "profile " << p + 1 << " cell " << cell << " row " << row;
            }
        }
    }
}

}  // namespace
}  // namespace rm
