// The .fdx text: head, measurement block and tail against texts written out by hand from the
// file's layout, for a record whose numbers are chosen to be worked out by hand.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "output/fdx_file.h"
#include "output/flow_test_record.h"

namespace rm {
namespace {

const std::string kCrLf = "\r\n";

std::string Tabs(int n) { return std::string(static_cast<size_t>(n), '\t'); }

// <name \r\n Value="v"/> at depth d, preceded by its line end.
std::string ValueElement(int d, const std::string& name, const std::string& value) {
    return kCrLf + Tabs(d) + "<" + name + " " + kCrLf + Tabs(d + 1) + "Value=\"" + value + "\"/>";
}

std::string ExpectedSampleTable() {
    // Values by hand: see flow_test_record.h.
    const auto& rows = test::HandSampleRows();
    std::string s = kCrLf + Tabs(3) + "<SampleTable " + kCrLf + Tabs(4) + "SampleCount=\"1\">" + kCrLf;
    s += Tabs(4) + "<SampleStructure >" + kCrLf;
    for (const test::HandRow& r : rows) {
        s += Tabs(5) + "<" + r.name + " " + kCrLf + Tabs(6) + "Unit=\"" + r.unit + "\"" + kCrLf + Tabs(6) + "Type=\"" +
             r.type + "\">" + kCrLf + Tabs(5) + "</" + r.name + ">" + kCrLf;
    }
    s += Tabs(4) + "</SampleStructure>" + kCrLf;
    s += Tabs(4) + "<Sample >" + kCrLf;
    for (const test::HandRow& r : rows) {
        s += Tabs(5) + "<" + r.name + " " + kCrLf;
        if (r.fdxValue == nullptr) {
            s += Tabs(6) + "VARIANT_TIME=\"45366.4375000000\"" + kCrLf + Tabs(6) + "Value=\"15/03/2024 10:30:00\"/>";
        } else {
            s += Tabs(6) + "Value=\"" + r.fdxValue + "\"/>";
        }
        s += kCrLf;
    }
    s += Tabs(4) + "</Sample>" + kCrLf + Tabs(3) + "</SampleTable>";
    return s;
}

std::string ExpectedHeadOfMeasurement() {
    return kCrLf + "\t\t<Measurement " + kCrLf +
           "\t\t\tFileName=\"T001.kvr\"" + kCrLf +
           "\t\t\tFilePath=\"/data/river/\"" + kCrLf +
           "\t\t\tApplicationName=\"Ripplemark\"" + kCrLf +
           "\t\t\tSystemType=\"KVR\"" + kCrLf +
           "\t\t\tSystemFrequency=\"1.5 MHz\"" + kCrLf +
           "\t\t\tSerialNumber=\"K1234\"" + kCrLf +
           "\t\t\tFlowDataType=\"InstantaneousQ\">";
}

std::string ExpectedCollection() {
    std::string s = kCrLf + "\t\t\t<Collection >" + kCrLf;
    s += "\t\t\t\t<Settings " + kCrLf + "\t\t\t\t\tNode=\"TRUE\">";
    s += kCrLf + Tabs(5) + "<Discharge " + kCrLf + Tabs(6) + "Node=\"TRUE\">";
    s += ValueElement(6, "UseShallowWaterPing", "1") + ValueElement(6, "StartMeanHW", "1.25") +
         ValueElement(6, "StartMeanTW", "0.5") + ValueElement(6, "EndMeanHW", "2") + ValueElement(6, "EndMeanTW", "0.75");
    s += kCrLf + Tabs(5) + "</Discharge>";
    s += kCrLf + "\t\t\t\t</Settings>" + kCrLf;
    s += "\t\t\t\t<System " + kCrLf + "\t\t\t\t\tNode=\"TRUE\">";
    s += kCrLf + Tabs(5) + "<Conf " + kCrLf + Tabs(6) + "Node=\"TRUE\">";
    s += ValueElement(6, "SystemFreq", "1") + ValueElement(6, "SerialNumber", "K1234");
    s += kCrLf + Tabs(5) + "</Conf>";
    s += kCrLf + "\t\t\t\t</System>" + kCrLf + "\t\t\t</Collection>";
    return s;
}

TEST(FdxFile, HeadAndTailAreTheFixedTexts) {
    EXPECT_EQ(FdxHeadText(), "<?xml version=\"1.0\"?>\r\n<FlowDataExchange \r\n\tFdxVersion=\"1.0\">\r\n\t<Measurements >");
    EXPECT_EQ(FdxTailText(), "\r\n\t</Measurements>\r\n</FlowDataExchange>");
}

TEST(FdxFile, MeasurementBlockMatchesTheLayoutByteForByte) {
    const test::FlowTestRecord record;
    const std::string expected =
        ExpectedHeadOfMeasurement() + ExpectedCollection() + ExpectedSampleTable() + kCrLf + "\t\t</Measurement>";
    EXPECT_EQ(FdxMeasurementText(record.Measurement()), expected);
}

TEST(FdxFile, WholeFileOfTwoMeasurementsIsHeadBlocksTail) {
    const test::FlowTestRecord record;
    std::FILE* file = std::tmpfile();
    ASSERT_NE(file, nullptr);
    ASSERT_TRUE(WriteFdxHead(file));
    ASSERT_TRUE(WriteFdxMeasurement(file, record.Measurement()));
    ASSERT_TRUE(WriteFdxMeasurement(file, record.Measurement()));
    ASSERT_TRUE(WriteFdxTail(file));
    std::rewind(file);
    std::string bytes;
    char buffer[4096];
    size_t got;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) bytes.append(buffer, got);
    std::fclose(file);
    const std::string block = FdxMeasurementText(record.Measurement());
    EXPECT_EQ(bytes, FdxHeadText() + block + block + FdxTailText());
    EXPECT_EQ(bytes.find('\n') - 1, bytes.find('\r')) << "lines end in CR LF";
}

TEST(FdxFile, RecordThatCannotFillTheTableLeavesTheBlockOpen) {
    test::FlowTestRecord record;
    record.record->Active = 0;
    const std::string text = FdxMeasurementText(record.Measurement());
    const std::string tableHead = kCrLf + "\t\t\t<SampleTable " + kCrLf + "\t\t\t\tSampleCount=\"1\">" + kCrLf;
    ASSERT_GE(text.size(), tableHead.size());
    EXPECT_EQ(text.substr(text.size() - tableHead.size()), tableHead);
    EXPECT_EQ(text.find("</Measurement>"), std::string::npos);

    // Without a source a record needs its file name; with neither it is not usable either.
    record.record->Active = 1;
    record.record->fileName.clear();
    FlowMeasurement detached = record.Measurement();
    detached.hasSource = false;
    EXPECT_EQ(FdxMeasurementText(detached).find("<SampleStructure"), std::string::npos);
    detached.hasSource = true;
    EXPECT_NE(FdxMeasurementText(detached).find("</Measurement>"), std::string::npos);
}

TEST(FdxFile, MissingTreeKeepsTheMeasurementOpen) {
    test::FlowTestRecord record;
    FlowMeasurement m = record.Measurement();
    m.system = NodeRef();
    const std::string text = FdxMeasurementText(m);
    EXPECT_NE(text.find("</SampleTable>"), std::string::npos);
    EXPECT_EQ(text.find("</Measurement>"), std::string::npos);
    EXPECT_NE(text.find("SystemFrequency=\"\""), std::string::npos);
}

TEST(FdxFile, DurationOfOneProfileIsOneIntervalInDays) {
    test::FlowTestRecord record;
    record.record->endTime = record.record->startTime;
    record.record->Interval = 6.0;
    // 6 s = 6 / 86400 day = 0.0000694444...
    EXPECT_NE(FdxMeasurementText(record.Measurement()).find("<Duration \r\n\t\t\t\t\t\tValue=\"0.0000694444\"/>"),
              std::string::npos);
}

TEST(FdxFile, UseSwPingNeedsTheSettingAndTheRecordFlag) {
    test::FlowTestRecord record;
    const std::string on = "<UseSwPing \r\n\t\t\t\t\t\tValue=\"1\"/>";
    const std::string off = "<UseSwPing \r\n\t\t\t\t\t\tValue=\"0\"/>";
    EXPECT_NE(FdxMeasurementText(record.Measurement()).find(on), std::string::npos);
    record.record->ShallowWaterPing = 0;
    EXPECT_NE(FdxMeasurementText(record.Measurement()).find(off), std::string::npos);
    record.record->ShallowWaterPing = 1;
    record.record->settings.GetChildByName("Discharge").SetValue("UseShallowWaterPing", Variant(int32_t{0}));
    EXPECT_NE(FdxMeasurementText(record.Measurement()).find(off), std::string::npos);
}

TEST(FdxFile, DateThatDoesNotConvertGivesZero) {
    test::FlowTestRecord record;
    record.record->startTime = test::HeaderAt(2024, 13, 1, 0, 0, 0);
    const std::string text = FdxMeasurementText(record.Measurement());
    EXPECT_NE(text.find("VARIANT_TIME=\"0.0000000000\""), std::string::npos);
    EXPECT_NE(text.find("Value=\"01/13/2024 00:00:00\""), std::string::npos);
}

TEST(FdxNodeWriter, NamesEmptyKeysByIndexHidesSparesAndEscapesNothing) {
    NodeRef root = NodeRef::MakeNew();
    root.Append("", Variant(int16_t{5}));
    root.Append("Comment", Variant("a \"quoted\" <tag>"));
    NodeRef inner = NodeRef::MakeNew();
    inner.Append("SpareWord", Variant(int32_t{77}));
    inner.Append("", Variant(3.5));
    inner.Append("Nothing", Variant());
    root.Append("", Variant(), inner);

    std::string out;
    AppendFdxNode(out, root, 2);
    const std::string expected = ValueElement(2, "i0", "5") + ValueElement(2, "Comment", "a \"quoted\" <tag>") +
                                 kCrLf + "\t\t<i2 " + kCrLf + "\t\t\tNode=\"TRUE\">" + ValueElement(3, "SpareWord", "0") +
                                 ValueElement(3, "i1", "3.5") + ValueElement(3, "Nothing", "") + kCrLf + "\t\t</i2>";
    EXPECT_EQ(out, expected);
}

TEST(FlowFrequency, TextsByCodeWithNothingOutsideTheList) {
    EXPECT_EQ(FlowFrequencyText(0), "3 MHz");
    EXPECT_EQ(FlowFrequencyText(4), "250 kHz");
    EXPECT_EQ(FlowFrequencyText(5), "1 MHz");
    EXPECT_EQ(FlowFrequencyText(6), "125 kHz");
    EXPECT_EQ(FlowFrequencyText(7), "");
    EXPECT_EQ(FlowFrequencyText(-1), "");
}

TEST(OleDate, DaysSinceTheEndOf1899) {
    double days = -1;
    ASSERT_TRUE(OleDateOf(ProfileTime{1899, 12, 30, 0, 0, 0, 0}, days));
    EXPECT_EQ(days, 0.0);
    ASSERT_TRUE(OleDateOf(ProfileTime{1900, 3, 1, 18, 0, 0, 0}, days));
    EXPECT_EQ(days, 61.75);  // 1900 is no leap year: 2 + 31 + 28 days
    ASSERT_TRUE(OleDateOf(ProfileTime{1899, 12, 29, 6, 0, 0, 0}, days));
    EXPECT_EQ(days, -1.25);  // whole days back, the time of day counted away from zero
    EXPECT_FALSE(OleDateOf(ProfileTime{2023, 2, 29, 0, 0, 0, 0}, days));
    EXPECT_EQ(days, 0.0);
    EXPECT_TRUE(OleDateOf(ProfileTime{2024, 2, 29, 23, 59, 59, 0}, days));
    EXPECT_FALSE(OleDateOf(ProfileTime{2024, 1, 1, 24, 0, 0, 0}, days));
    EXPECT_FALSE(OleDateOf(ProfileTime{0, 1, 1, 0, 0, 0, 0}, days));
}

}  // namespace
}  // namespace rm
