// The .fdx text: head, measurement block and tail against texts written out by hand from the
// file's layout, for a record whose numbers are chosen to be worked out by hand.

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

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

TEST(FdxFile, MeasurementBlockMatchesTheLayoutByteForByte) {
    const test::FlowTestRecord record;
    const std::string expected =
        ExpectedHeadOfMeasurement() + ExpectedCollection() + ExpectedSampleTable() + kCrLf + "\t\t</Measurement>";
    EXPECT_EQ(FdxMeasurementText(record.Measurement()), expected);
}

// The fixed head, the blocks and the fixed tail, with CR LF line ends.
TEST(FdxFile, WholeFileOfTwoMeasurementsIsHeadBlocksTail) {
    const test::FlowTestRecord record;
    const std::string bytes = test::WrittenBytes([&](std::FILE* file) {
        return WriteFdxHead(file) && WriteFdxMeasurement(file, record.Measurement()) &&
               WriteFdxMeasurement(file, record.Measurement()) && WriteFdxTail(file);
    });
    const std::string block = FdxMeasurementText(record.Measurement());
    EXPECT_EQ(bytes, "<?xml version=\"1.0\"?>\r\n<FlowDataExchange \r\n\tFdxVersion=\"1.0\">\r\n\t<Measurements >" +
                         block + block + "\r\n\t</Measurements>\r\n</FlowDataExchange>");
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

// One change of the record each, with the sample text it must give.
TEST(FdxFile, SampleValuesFollowTheRecord) {
    const struct {
        const char* what;
        std::function<void(test::FlowTestRecord&)> change;
        std::vector<std::string> texts;
    } cases[] = {
        // 6 s = 6 / 86400 day = 0.0000694444...
        {"one profile is one interval",
         [](test::FlowTestRecord& r) {
             r.record->endTime = r.record->startTime;
             r.record->Interval = 6.0;
         },
         {"<Duration \r\n\t\t\t\t\t\tValue=\"0.0000694444\"/>"}},
        {"both shallow-water flags on", [](test::FlowTestRecord&) {}, {"<UseSwPing \r\n\t\t\t\t\t\tValue=\"1\"/>"}},
        {"record flag off", [](test::FlowTestRecord& r) { r.record->ShallowWaterPing = 0; },
         {"<UseSwPing \r\n\t\t\t\t\t\tValue=\"0\"/>"}},
        {"setting off",
         [](test::FlowTestRecord& r) {
             r.record->settings.GetChildByName("Discharge").SetValue("UseShallowWaterPing", Variant(int32_t{0}));
         },
         {"<UseSwPing \r\n\t\t\t\t\t\tValue=\"0\"/>"}},
        {"a date that does not convert gives 0",
         [](test::FlowTestRecord& r) { r.record->startTime = test::HeaderAt(2024, 13, 1, 0, 0, 0); },
         {"VARIANT_TIME=\"0.0000000000\"", "Value=\"01/13/2024 00:00:00\""}},
    };
    for (const auto& c : cases) {
        test::FlowTestRecord record;
        c.change(record);
        const std::string text = FdxMeasurementText(record.Measurement());
        for (const std::string& part : c.texts) EXPECT_NE(text.find(part), std::string::npos) << c.what << ": " << part;
    }
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
    const char* texts[] = {"3 MHz", "1.5 MHz", "750 kHz", "500 kHz", "250 kHz", "1 MHz", "125 kHz", ""};
    for (int code = 0; code <= 7; ++code) EXPECT_EQ(FlowFrequencyText(code), texts[code]) << code;
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
