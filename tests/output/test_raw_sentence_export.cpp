// The raw GPS and echo sounder export: sentences of the side file's profile trees, one a line,
// filtered by the stream's prefix and by the selection setting.

#include <gtest/gtest.h>

#include "ascii_test_support.h"
#include "data/nmea_sentences.h"
#include "data/pmk_file.h"
#include "output/raw_sentence_export.h"

namespace rm {
namespace {

using asciitest::ReadAll;
using asciitest::ScratchFolder;

const std::string kGga1 = "$GPGGA,120000.00,4500.0000,N,00700.0000,E,1,08,1.0,10.0,M,,M,,*4F";
const std::string kRmc1 = "$GPRMC,120000.00,A,4500.0000,N,00700.0000,E,1.0,90.0,010120,1.5,E*00";
const std::string kGga2 = "$GNGGA,120001.00,4500.0010,N,00700.0010,E,1,08,1.0,10.0,M,,M,,*50";
const std::string kDpt = "$SDDPT,3.50,0.20*6C";

// Side-file trees as a recording stores them: per profile GPSData and EsData branches.
NodeRef SideFileRoot() {
    NodeRef root = NodeRef::MakeNew();
    root.Append("Settings", Variant(), NodeRef::MakeNew());
    const NodeRef gps1 = BuildSentenceTree({kGga1, kRmc1}, kGpsTalkerPrefix);
    const NodeRef echo1 = BuildSentenceTree({kDpt}, kEchoTalkerPrefix);
    root.Append(ProfileNodeName(1), Variant(), MakeProfileNode(gps1, echo1));
    const NodeRef gps2 = BuildSentenceTree({kGga2}, kGpsTalkerPrefix);
    // A sentence of a talker that is not a satellite receiver's, stored by hand, does not go out.
    gps2.Append("XDR", Variant(std::string("$IIXDR,C,12.5,C,AIR*2D")));
    root.Append(ProfileNodeName(2), Variant(), MakeProfileNode(gps2, NodeRef()));
    return root;
}

// Each sentence on its own line of a text file (CR LF), in profile order, only those of the
// stream's talkers ("$GP", "$GN", ... or "$SD") and, with a selection, only those not switched off.
TEST(RawSentenceExport, SentencesOfTheStreamOneALine) {
    NodeRef selection = NodeRef::MakeNew();
    selection.SetValue("GGA", Variant(int32_t{0}));
    selection.SetValue("RMC", Variant(int32_t{1}));
    const struct {
        RawSentenceKind kind;
        NodeRef selection;
        int lines;
        std::string bytes;
    } cases[] = {
        {RawSentenceKind::Gps, NodeRef(), 3, kGga1 + "\r\n" + kRmc1 + "\r\n" + kGga2 + "\r\n"},
        {RawSentenceKind::EchoSounder, NodeRef(), 1, kDpt + "\r\n"},
        {RawSentenceKind::Gps, selection, 1, kRmc1 + "\r\n"},
    };
    ScratchFolder folder;
    for (const auto& c : cases) {
        const std::string out = folder.File("a.raw");
        EXPECT_EQ(WriteRawSentences(SideFileRoot(), c.kind, out, c.selection), c.lines) << c.bytes;
        EXPECT_EQ(ReadAll(out), c.bytes);
    }
}

TEST(RawSentenceExport, FilterTextAndUnwritableOutput) {
    EXPECT_EQ(RawSentenceFilter(RawSentenceKind::Gps), "GPS data files (.gps)|*.gps|");
    EXPECT_EQ(RawSentenceFilter(RawSentenceKind::EchoSounder), "EchoSounder data files (.ecs)|*.ecs|");
    EXPECT_EQ(WriteRawSentences(SideFileRoot(), RawSentenceKind::Gps, "/nonexistent-folder/x.raw_gps"), -1);
}

}  // namespace
}  // namespace rm
