// The .dis file of a recording: its head, one line per profile with the columns of the
// per-profile ASCII line, and the trailer with the measurement's totals, in metric and English
// units.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

#include "app/dis_export.h"
#include "processing/dis_file_reader.h"
#include "document_test_support.h"

namespace rm {
namespace {

using doctest::RecordRiver;
using doctest::TestApp;

std::string Bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

// The lines of a text file of the program: every line ends in CR LF (a bare LF fails the test).
std::vector<std::string> Lines(const std::string& path) {
    const std::string bytes = Bytes(path);
    std::vector<std::string> lines;
    size_t start = 0;
    for (size_t end; (end = bytes.find('\n', start)) != std::string::npos; start = end + 1) {
        EXPECT_TRUE(end > start && bytes[end - 1] == '\r') << "bare line feed at byte " << end;
        lines.push_back(bytes.substr(start, end > start ? end - start - 1 : 0));
    }
    if (start < bytes.size()) lines.push_back(bytes.substr(start));
    return lines;
}

std::vector<double> Numbers(const std::string& line) {
    std::istringstream in(line);
    std::vector<double> values;
    std::string word;
    while (in >> word) {
        if (word.find(':') != std::string::npos) continue;  // the time
        values.push_back(std::stod(word));
    }
    return values;
}

class DisExport : public ::testing::Test {
protected:
    void SetUp() override {
        RecordRiver(path, 20, [](sim::RiverScenario& s) { s.gps = sim::GpsSource::Internal; });
    }
    TestApp t;
    std::string path = t.folder.File("DIS.kvr");
    std::string out = t.folder.File("DIS.dis");
};

TEST_F(DisExport, HeadLinesAndTotalsInMetricUnits) {
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    ASSERT_TRUE(ExportDisFile(doc, t.app, t.prompt, out));
    const std::vector<std::string> lines = Lines(out);
    ASSERT_GT(lines.size(), 30u);
    EXPECT_EQ(lines[0], "% KVR Data File: DIS.kvr");
    EXPECT_EQ(lines[1].rfind("% Start Date + Time: ", 0), 0u);
    EXPECT_EQ(lines[2], "% All Track Calculations use: Bottom Track data");
    EXPECT_EQ(lines[3], "% All Flow Velocities Relative to: Bottom Track");
    EXPECT_EQ(lines[4], "% Metric Units");
    EXPECT_EQ(lines[6].rfind("%Profile   Time   Distance      DMG  DistEast DistNorth GPS Latitude  GPS Longitude "
                             "Depth1 Depth2 Depth3 AvDepth EsDepth",
                             0),
              0u);
    EXPECT_NE(lines[7].find("(m^3/s)"), std::string::npos);
    EXPECT_EQ(lines[8], "%" + std::string(199, '-'));

    // One line per profile: its number, the time and 21 numbers.
    const CDischargeData& m = doc.Measurement();
    double cumulative = 0.0;
    for (int item = 1; item <= 20; ++item) {
        const std::vector<double> v = Numbers(lines[static_cast<size_t>(8 + item)]);
        ASSERT_EQ(v.size(), 22u) << lines[static_cast<size_t>(8 + item)];
        EXPECT_EQ(v[0], item);
        const SlotResults& r = *doc.ResultsOf(item);
        EXPECT_NEAR(v[1], r.bottomTrackPoint.Distance, 0.05);
        EXPECT_NEAR(v[5], r.gps.endLatitude, 1e-8);
        EXPECT_EQ(v[18], r.waterCells);
        cumulative += r.processed.TotalQ;
        EXPECT_NEAR(v[20], cumulative, 0.05);
    }
    EXPECT_NEAR(cumulative, static_cast<double>(m.TopDischarge) + m.MiddleDischarge + m.BottomDischarge, 1e-3);

    // The trailer: the totals, 134.xx m3/s by five significant digits, with two decimals.
    const std::string text = [&] {
        std::string all;
        for (const std::string& l : lines) all += l + "\n";
        return all;
    }();
    EXPECT_NE(text.find("% Discharge Summary"), std::string::npos);
    char total[64];
    std::snprintf(total, sizeof total, "%% Total Q    = %.2f (cms)", static_cast<double>(m.TotalDischarge));
    ASSERT_GT(m.TotalDischarge, 100.0f);
    ASSERT_LT(m.TotalDischarge, 1000.0f);
    EXPECT_NE(text.find(total), std::string::npos) << total;
    EXPECT_NE(text.find("% Measured Q = "), std::string::npos);
    EXPECT_NE(text.find("% MeasQ/EstQ = "), std::string::npos);
    EXPECT_NE(text.find("% TotalArea  = "), std::string::npos);
    EXPECT_NE(text.find("% MeanVel    = "), std::string::npos);
    EXPECT_EQ(lines.back().rfind("% MeanVel    = ", 0), 0u);
}

TEST_F(DisExport, EnglishUnitsScaleLengthsAndDischarges) {
    CSurveyKVRDoc metricDoc(t.app, t.prompt);
    ASSERT_EQ(metricDoc.OpenDocument(path), 1);
    ASSERT_TRUE(ExportDisFile(metricDoc, t.app, t.prompt, out));
    const std::vector<std::string> metric = Lines(out);

    t.app.Set(app_keys::UnitSystem, 0);
    const std::string english = t.folder.File("DISFT.dis");
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    ASSERT_TRUE(ExportDisFile(doc, t.app, t.prompt, english));
    const std::vector<std::string> lines = Lines(english);
    EXPECT_EQ(lines[4], "% English Units");
    EXPECT_NE(lines[7].find("(ft^3/s)"), std::string::npos);
    const double foot = 3.2808f;
    const std::vector<double> m = Numbers(metric[20]);
    const std::vector<double> e = Numbers(lines[20]);
    EXPECT_NEAR(e[1], m[1] * foot, 0.2);                       // track length
    EXPECT_NEAR(e[7], m[7] * foot, 0.02);                      // depth of beam 1
    EXPECT_NEAR(e[20], m[20] * foot * foot * foot, 2.0);       // cumulative discharge
    EXPECT_EQ(e[5], m[5]);                                     // latitude is not a length
}

// The file read back gives the measurement's totals, whether its line ends are the program's
// CR LF or were turned into LF by another tool.
TEST_F(DisExport, FileReadsBackWithEitherLineEnd) {
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    ASSERT_TRUE(ExportDisFile(doc, t.app, t.prompt, out));
    std::string lf = Bytes(out);
    for (size_t at; (at = lf.find("\r\n")) != std::string::npos;) lf.erase(at, 1);
    const std::string lfPath = t.folder.File("LF.dis");
    std::ofstream(lfPath, std::ios::binary) << lf;
    CDischargeData crlfRecord, lfRecord;
    ASSERT_TRUE(ReadDisFile(out, crlfRecord).ok);
    ASSERT_TRUE(ReadDisFile(lfPath, lfRecord).ok);
    for (const CDischargeData* r : {&crlfRecord, &lfRecord}) {
        EXPECT_EQ(r->fileName, "DIS.kvr");
        EXPECT_EQ(r->ProfileCount, 20);
        // The trailer holds five significant digits of the total, 1xx.xx m3/s.
        EXPECT_NEAR(r->TotalDischarge, doc.Measurement().TotalDischarge, 0.005);
    }
}

TEST_F(DisExport, AnUnwritablePathIsReported) {
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    EXPECT_FALSE(ExportDisFile(doc, t.app, t.prompt, t.folder.File("no/such/folder/X.dis")));
    EXPECT_EQ(t.prompt.messages, std::vector<std::string>{"Error writing to file"});
}

}  // namespace
}  // namespace rm
