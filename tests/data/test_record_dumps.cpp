// Text dumps: the line format and the words and numbers each dump prints for known records.

#include <gtest/gtest.h>

#include <sstream>
#include <utility>
#include <vector>

#include "data/instrument_records.h"
#include "data/record_dumps.h"
#include "data/test_record_images.h"

namespace rm {
namespace {

using Lines = std::vector<std::pair<std::string, std::string>>;

// Splits a dump into (label, value) pairs, checking the layout of every line on the way.
Lines Parse(const std::string& dump) {
    Lines lines;
    size_t start = 0;
    while (start < dump.size()) {
        EXPECT_EQ(dump[start], '\n');
        size_t end = dump.find('\n', start + 1);
        if (end == std::string::npos) end = dump.size();
        const std::string line = dump.substr(start + 1, end - start - 1);
        const size_t marker = line.find("> ");
        EXPECT_NE(marker, std::string::npos) << line;
        if (marker == std::string::npos) break;
        EXPECT_EQ(marker, 30u) << "'>' must stand in column 31: " << line;
        std::string label = line.substr(0, marker);
        while (!label.empty() && (label.back() == '-' || label.back() == ' ')) label.pop_back();
        lines.emplace_back(label, line.substr(marker + 2));
        start = end;
    }
    return lines;
}

std::string ValueOf(const Lines& lines, const std::string& label) {
    for (const auto& [l, v] : lines) {
        if (l == label) return v;
    }
    ADD_FAILURE() << "no line " << label;
    return {};
}

TEST(RecordDumps, LinePutsTheMarkerInColumnThirtyOne) {
    EXPECT_EQ(DumpLine("SerialNumber", "X1"), "\nSerialNumber -----------------> X1");
    EXPECT_EQ(DumpLine("A label much longer than the dash column", "v"),
              "\nA label much longer than the dash column > v");
}

TEST(RecordDumps, ConfigurationUsesTheWordsOfTheRecord) {
    InstrumentConf c;
    test::Image img = test::ConfV2().u8(25, 6).u8(26, 3);
    ASSERT_EQ(DecodeConf(img.data(), img.size(), c), RecordStatus::Ok);
    std::ostringstream out;
    DumpConfiguration(out, c);
    const Lines lines = Parse(out.str());
    EXPECT_EQ(ValueOf(lines, "CPUSoftwareVerNum"), "16.5");
    EXPECT_EQ(ValueOf(lines, "KvrType"), "5000 kHz");
    EXPECT_EQ(ValueOf(lines, "BeamGeometry"), "4_Beams_JANUS");
    EXPECT_EQ(ValueOf(lines, "Slant Angle"), "25.0 deg");
    EXPECT_EQ(ValueOf(lines, "Sensor Orientation"), "Down");
    EXPECT_EQ(ValueOf(lines, "Pressure Offset"), "-1.50000 dbar");  // -150000 x 1e-5
    EXPECT_EQ(ValueOf(lines, "Pressure Scale 2"), "-42 pdbar/c^2");
    EXPECT_EQ(ValueOf(lines, "Ext Pressure Sensor Installed"), "None");
    // Three rows of three stored entries: -600/1024 ... ; row 2 starts with entry 3 = -300.
    int rows = 0;
    for (const auto& [label, value] : lines) {
        if (label != "Transformation Matrix") continue;
        if (rows == 1) {
            EXPECT_EQ(value, " -0.2930  -0.1953  -0.0977");  // "%8.4f" each, blank-separated
        }
        ++rows;
    }
    EXPECT_EQ(rows, 3);
}

TEST(RecordDumps, SetupPrintsDeploymentTimeOnlyWhenDeployed) {
    InstrumentConf conf;
    conf.type = 16;
    conf.CPUSoftwareVerNum = 165;
    test::Image img = test::User(12);
    UserSetup u;
    ASSERT_EQ(DecodeUser(img.data(), img.size(), conf, u), RecordStatus::Ok);
    std::ostringstream out;
    DumpSetup(out, u);
    Lines lines = Parse(out.str());
    EXPECT_EQ(ValueOf(lines, "Deployment start time"), "2023/06/17  13:45:08");
    EXPECT_EQ(ValueOf(lines, "Temperature Mode"), "MEASURED");
    EXPECT_EQ(ValueOf(lines, "Coordinate System"), "ENU");
    EXPECT_EQ(ValueOf(lines, "Cell Size"), "12.3 cm");
    // Pulse-coherent mode with the shallow-water ping keeps its intervals in seconds.
    EXPECT_EQ(ValueOf(lines, "Averaging Interval"), "10 s");
    EXPECT_EQ(ValueOf(lines, "Magnetic Declination"), "-5.00 deg");
    EXPECT_EQ(ValueOf(lines, "PCMode"), "ON");
    u.BottomTrack = 1;  // without it, tenths of a second
    std::ostringstream tenths;
    DumpSetup(tenths, u);
    EXPECT_EQ(ValueOf(Parse(tenths.str()), "Averaging Interval"), "1.0 s");

    u.DeploymentMode = 0;
    u.BottomTrack = 0;
    u.PCMode = 0;
    std::ostringstream again;
    DumpSetup(again, u);
    lines = Parse(again.str());
    EXPECT_EQ(ValueOf(lines, "Deployment start time"), "not deployed");
    EXPECT_EQ(ValueOf(lines, "Deployment Mode"), "NO");
    EXPECT_EQ(ValueOf(lines, "Bottom Track"), "OFF");
    EXPECT_EQ(ValueOf(lines, "Averaging Interval"), "10 s");
}

TEST(RecordDumps, CellTableAndOperationAndFileSummary) {
    UserSetup u;
    u.NumberOfCells = 3;
    u.SensorDepth = 50;
    u.BlankDistance = 25;
    u.CellSizeCm = 12.3f;
    std::ostringstream cells;
    DumpCellTable(cells, u);
    // (50 + 25 + 12.3 + i x 12.3) cm: 87.3, 99.6, 111.9.
    EXPECT_EQ(Parse(cells.str()), (Lines{{"Cell 1", "0.873 m"}, {"Cell 2", "0.996 m"}, {"Cell 3", "1.119 m"}}));

    OperationRecord o;
    o.unwrapSamples = 480;
    o.firmwareLimits[12] = 77;
    std::ostringstream oper;
    DumpOperation(oper, o);
    const Lines operLines = Parse(oper.str());
    EXPECT_EQ(ValueOf(operLines, "Unwrap Samples"), "480");
    EXPECT_EQ(ValueOf(operLines, "Firmware Limit 13"), "77");

    FileSummary f;
    f.fileName = "RIV.kvr";
    f.fileSize = 1536;
    f.gpsData = true;
    InstrumentConf c;
    c.KvrType = 2;
    std::ostringstream summary;
    DumpFileSummary(summary, f, c, u);
    const Lines s = Parse(summary.str());
    EXPECT_EQ(ValueOf(s, "File Size"), "1.50 kB");
    EXPECT_EQ(ValueOf(s, "Frequency"), "750 kHz");
    EXPECT_EQ(ValueOf(s, "GPS Data"), "Yes");
    EXPECT_EQ(ValueOf(s, "Wave Data"), "No");
    for (const auto& line : s) EXPECT_NE(line.first, "First Profile") << "no times were counted";
}

TEST(RecordDumps, FileSizeUnitsStepAt1024) {
    const std::pair<uint64_t, const char*> sizes[] = {
        {1023, "1023 bytes"}, {1024, "1.00 kB"},
        {1048575, "1024.00 kB"},  // 1023.999 kB rounds up in print
        {1048576, "1.00 MB"}, {uint64_t{5} << 30, "5.00 GB"}, {uint64_t{3} << 40, "3072.00 GB"}};
    for (const auto& [bytes, text] : sizes) EXPECT_EQ(FormatFileSize(bytes), text) << bytes;
}

}  // namespace
}  // namespace rm
