// Depth from echo sounder sentences: sentence order, custom sentence and corrections.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "data/nmea_echo_depth.h"

namespace rm {
namespace {

NodeRef Tree(const std::vector<std::string>& lines, const std::string& prefix = "SD") {
    return BuildSentenceTree(lines, prefix);
}

EchoSounderSettings Plain(double transducerDepth = 0.0) {
    EchoSounderSettings s;
    s.TransducerDepth = transducerDepth;
    return s;
}

TEST(EchoSentenceOrder, DptFirstThenDbtMetresThenCustom) {
    EchoSounderSettings s = Plain();
    s.customId = "XDP";
    s.customDepthIndex = 1;
    EXPECT_DOUBLE_EQ(ReadEchoDepth(Tree({"$SDDBT,30.0,f,9.1,M,5.0,F", "$SDDPT,4.2,0.0", "$SDXDP,a,7.5"}), s, 0, 0, 1),
                     4.2);
    EXPECT_DOUBLE_EQ(ReadEchoDepth(Tree({"$SDDBT,30.0,f,9.1,M,5.0,F", "$SDXDP,a,7.5"}), s, 0, 0, 1), 9.1);
    EXPECT_DOUBLE_EQ(ReadEchoDepth(Tree({"$SDXDP,a,7.5"}), s, 0, 0, 1), 7.5);
}

TEST(EchoSentenceOrder, DptWithEmptyFirstFieldFallsThroughToDbt) {
    NodeRef tree = Tree({"$SDDPT,,0.5*7A", "$SDDBT,30.0,f,9.1,M,5.0,F"});
    double dpt = -1.0;
    EXPECT_EQ(DecodeDpt(FindSentence(tree, "DPT"), dpt), 0);
    EXPECT_EQ(dpt, -1.0);
    EXPECT_DOUBLE_EQ(ReadEchoDepth(tree, Plain(), 0, 0, 1), 9.1);
}

TEST(EchoSentenceOrder, CustomIndexZeroIsTheFirstFieldAfterTheId) {
    EchoSounderSettings s = Plain();
    s.customPrefix = "PX";
    s.customId = "DEP";
    s.customDepthIndex = 0;
    NodeRef tree = Tree({"$PXDEP,12.25,M,3"}, EchoStreamPrefix(s));
    EXPECT_DOUBLE_EQ(ReadEchoDepth(tree, s, 0, 0, 1), 12.25);
    s.customDepthIndex = 2;
    EXPECT_DOUBLE_EQ(ReadEchoDepth(tree, s, 0, 0, 1), 3.0);
    s.customDepthIndex = 1;  // "M" is no number
    EXPECT_EQ(ReadEchoDepth(tree, s, 0, 0, 1), 32767.0);
    s.customDepthIndex = -1;  // no custom sentence chosen
    EXPECT_EQ(ReadEchoDepth(tree, s, 0, 0, 1), 32767.0);
}

TEST(EchoSentenceOrder, NothingUsableGivesNoDepth) {
    EXPECT_EQ(ReadEchoDepth(NodeRef(), Plain(1.0), 0, 0, 1), 32767.0);
    EXPECT_EQ(ReadEchoDepth(Tree({"$SDMTW,12.0,C"}), Plain(1.0), 0, 0, 1), 32767.0);
    // A sounder's own "no bottom" value at or above the sentinel stays the sentinel,
    // untouched by the corrections.
    EXPECT_EQ(ReadEchoDepth(Tree({"$SDDPT,99999.0"}), Plain(1.0), 10, 10, 1), 32767.0);
}

TEST(EchoCorrections, TransducerDepthScaleOffsetSoundSpeedAndTilt) {
    EXPECT_DOUBLE_EQ(ReadEchoDepth(Tree({"$SDDPT,4.2"}), Plain(0.35), 0, 0, 1.0), 4.2 + 0.35);
    EchoSounderSettings s = Plain(0.5);
    s.Scale = 2.0;
    s.Offset = 0.25;
    NodeRef tree = Tree({"$SDDPT,3.0"});
    // Without the sound speed flag the factor is ignored: 3 x 2 + 0.25 + 0.5 = 6.75.
    EXPECT_DOUBLE_EQ(ReadEchoDepth(tree, s, 0, 0, 1.5), 6.75);
    // With it: (3 x 1.5) x 2 + 0.25 + 0.5 = 9.75.
    s.CorrectForSpeedOfSound = true;
    EXPECT_DOUBLE_EQ(ReadEchoDepth(tree, s, 0, 0, 1.5), 9.75);
    // Pitch 60 degrees halves it (cos 60 = 0.5); roll 60 halves it again.
    EXPECT_NEAR(ReadEchoDepth(tree, s, 60, 0, 1.5), 9.75 * 0.5, 1e-12);
    EXPECT_NEAR(ReadEchoDepth(tree, s, 60, -60, 1.5), 9.75 * 0.25, 1e-12);
}

TEST(EchoWaitCondition, OnlyDecodableDptOrDbtCounts) {
    EXPECT_TRUE(HasDecodableDepth(Tree({"$SDDPT,1.0"})));
    EXPECT_TRUE(HasDecodableDepth(Tree({"$SDDPT,", "$SDDBT,3.3,f,1.0,M"})));
    EXPECT_FALSE(HasDecodableDepth(Tree({"$SDDPT,", "$SDDBT,3.3,f,,M"})));
    EXPECT_FALSE(HasDecodableDepth(Tree({"$SDXDP,1.0"})));
}

TEST(CustomSentence, StreamPrefixFollowsTheChoiceAndHeadsSplitAfterTwoCharacters) {
    EchoSounderSettings s;
    s.customPrefix = "PX";
    EXPECT_EQ(EchoStreamPrefix(s), "SD");  // no id and index chosen yet
    s.customId = "DEP";
    s.customDepthIndex = 0;
    EXPECT_EQ(EchoStreamPrefix(s), "PX");
    std::string prefix, id;
    ASSERT_TRUE(SplitSentenceHead("$PXDEP,12.25,M*3A", prefix, id));
    EXPECT_EQ(prefix + "|" + id, "PX|DEP");
    EXPECT_FALSE(SplitSentenceHead("$SD,1", prefix, id));
}

}  // namespace
}  // namespace rm
