// The .fpx binary tree: its bytes laid out by hand from the tree format (u32 count; per written
// entry u32 name length with NUL, name, u8 has-subnode, [sub-node], u16 type, u32 value length
// with NUL, value text), the count that includes unwritten value-less entries, and the sample
// values read back.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "output/flow_test_record.h"
#include "output/fpx_file.h"

namespace rm {
namespace {

// Expected bytes, built field by field.
struct Bytes {
    std::string s;
    Bytes& U32(uint32_t v) {
        for (int i = 0; i < 4; ++i) s.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
        return *this;
    }
    Bytes& U16(uint16_t v) {
        s.push_back(static_cast<char>(v & 0xFF));
        s.push_back(static_cast<char>(v >> 8));
        return *this;
    }
    Bytes& Text(const std::string& t) {
        U32(static_cast<uint32_t>(t.size() + 1));
        s += t;
        s.push_back('\0');
        return *this;
    }
    // An entry holding a value (type 8 text, 3 i32, 5 double, 17 byte).
    Bytes& Leaf(const std::string& name, uint16_t type, const std::string& value) {
        Text(name);
        s.push_back('\0');
        U16(type);
        return Text(value);
    }
    // The head of an entry with a sub-node: the sub-node's count follows.
    Bytes& Branch(const std::string& name, uint32_t count) {
        Text(name);
        s.push_back('\1');
        return U32(count);
    }
    // After a sub-node: the branch's own empty value (type 0, one NUL).
    Bytes& EndBranch() {
        U16(0);
        return Text("");
    }
};

std::string WriteToBytes(const FlowMeasurement& m) {
    return test::WrittenBytes([&](std::FILE* file) { return WriteFpx(file, m); });
}

TEST(FpxFile, LayoutByteForByteWithTheCountOfAnUnwrittenEntry) {
    test::FlowTestRecord record;
    // A value-less entry without sub-node: counted in Settings, not written.
    record.record->settings.Append("Placeholder", Variant());
    const std::string bytes = WriteToBytes(record.Measurement());

    Bytes e;
    e.U32(2).Leaf("FpxVersion", 8, "1.0");
    e.Branch("Measurements", 1).Branch("", 9);
    e.Leaf("FileName", 8, "T001.kvr").Leaf("FilePath", 8, "/data/river/").Leaf("ApplicationName", 8, "Ripplemark");
    e.Leaf("SystemType", 8, "KVR").Leaf("SystemFrequency", 8, "1.5 MHz").Leaf("SerialNumber", 8, "K1234");
    e.Leaf("FlowDataType", 8, "InstantaneousQ");
    e.Branch("Collection", 2);
    e.Branch("Settings", 2);  // two entries counted, one follows
    e.Branch("Discharge", 5)
        .Leaf("UseShallowWaterPing", 3, "1")
        .Leaf("StartMeanHW", 5, "1.25")
        .Leaf("StartMeanTW", 5, "0.5")
        .Leaf("EndMeanHW", 5, "2")
        .Leaf("EndMeanTW", 5, "0.75")
        .EndBranch();
    e.EndBranch();  // Settings
    e.Branch("System", 1).Branch("Conf", 2).Leaf("SystemFreq", 17, "1").Leaf("SerialNumber", 8, "K1234");
    e.EndBranch().EndBranch();  // Conf, System
    e.EndBranch();              // Collection
    e.Branch("SampleTable", 3).Leaf("SampleCount", 3, "1");
    e.Branch("SampleStructure", 26);
    for (const test::HandRow& row : test::HandSampleRows()) {
        e.Branch(row.name, 2).Leaf("Unit", 8, row.unit).Leaf("Type", 8, row.type).EndBranch();
    }
    e.EndBranch();  // SampleStructure
    e.Branch("Samples", 1).Branch("", 26);
    e.Leaf("SampleNumber", 3, "1").Leaf("Time", 5, "45366.4375");

    ASSERT_GE(bytes.size(), e.s.size());
    EXPECT_EQ(bytes.substr(0, e.s.size()), e.s);
    // The last entry of the file: the table's close, then those of the measurement, Measurements.
    Bytes tail;
    tail.Leaf("TotalDischarge", 5, "-14.25").EndBranch().EndBranch().EndBranch().EndBranch().EndBranch();
    ASSERT_GE(bytes.size(), tail.s.size());
    EXPECT_EQ(bytes.substr(bytes.size() - tail.s.size()), tail.s);
}

// The index of the first entry named `name`, empty names included (FindIndex refuses those).
int IndexOf(const NodeRef& node, const std::string& name) {
    for (int i = 0; i < node.ItemCount(); ++i) {
        if (node.ItemName(i) == name) return i;
    }
    return -1;
}

NodeRef NodeAt(const NodeRef& root, std::initializer_list<const char*> path) {
    NodeRef node = root;
    for (const char* name : path) {
        const int index = IndexOf(node, name);
        EXPECT_GE(index, 0) << name;
        if (index < 0) return NodeRef();
        node = node.ItemChild(index);
    }
    return node;
}

// Reads an entry's value of a loaded tree by a path of names.
Variant ValueAt(const NodeRef& root, std::initializer_list<const char*> path, const char* key) {
    const NodeRef node = NodeAt(root, path);
    const int index = IndexOf(node, key);
    EXPECT_GE(index, 0) << key;
    return index < 0 ? Variant() : node.ItemValue(index);
}

class FpxReadBack : public ::testing::Test {
protected:
    void SetUp() override {
        path_ = std::filesystem::temp_directory_path() / ("fpx_read_back_" + std::to_string(::getpid()) + ".fpx");
    }
    void TearDown() override { std::filesystem::remove(path_); }
    NodeRef WriteAndLoad(const FlowMeasurement& m) {
        RecordingPrompt prompt;
        EXPECT_TRUE(WriteFpxFile(path_.string(), m, prompt));
        NodeRef root = NodeRef::MakeNew();
        EXPECT_TRUE(LoadTreeFile(root, path_.string()));
        return root;
    }
    std::filesystem::path path_;
};

TEST_F(FpxReadBack, SamplesHaveTheirTypesAndTheDurationIsInSeconds) {
    test::FlowTestRecord record;
    const NodeRef root = WriteAndLoad(record.Measurement());
    const auto samples = {"Measurements", "", "SampleTable", "Samples", ""};
    EXPECT_EQ(ValueAt(root, samples, "SampleNumber"), Variant(int32_t{1}));
    EXPECT_EQ(ValueAt(root, samples, "NumberOfProfiles"), Variant(int32_t{100}));
    EXPECT_EQ(ValueAt(root, samples, "VelocityReference"), Variant(uint8_t{2}));
    EXPECT_EQ(ValueAt(root, samples, "UseSwPing"), Variant(uint8_t{1}));
    EXPECT_EQ(ValueAt(root, samples, "Stage"), Variant(0.0));
    EXPECT_EQ(ValueAt(root, samples, "Time"), Variant(45366.4375));
    // 99 s from the first to the last profile and one 1 s interval; the dates carry about 1e-11
    // day of rounding, times 86400.
    const Variant duration = ValueAt(root, samples, "Duration");
    ASSERT_EQ(duration.type(), VarType::Double);
    EXPECT_NEAR(duration.As<double>(), 100.0, 1e-5);
    // Single-precision fields widened: 10.3f is 10.300000190734863.
    EXPECT_EQ(ValueAt(root, samples, "MiddleDischarge"), Variant(static_cast<double>(10.3f)));
    EXPECT_EQ(ValueAt(root, {"Measurements", "", "SampleTable", "SampleStructure", "Area"}, "Unit"), Variant("m2"));
}

TEST_F(FpxReadBack, SpareValuesKeepTheirRealValueAndEmptyKeysStayEmpty) {
    test::FlowTestRecord record;
    NodeRef discharge = record.record->settings.GetChildByName("Discharge");
    discharge.SetValue("SpareFlag", Variant(uint8_t{9}));
    discharge.Append("", Variant(int16_t{4}));
    const NodeRef root = WriteAndLoad(record.Measurement());
    const auto path = {"Measurements", "", "Collection", "Settings", "Discharge"};
    EXPECT_EQ(ValueAt(root, path, "SpareFlag"), Variant(uint8_t{9}));
    const NodeRef loaded = NodeAt(root, path);
    ASSERT_EQ(loaded.ItemCount(), 7);
    EXPECT_EQ(loaded.ItemName(6), "");
    EXPECT_EQ(loaded.ItemValue(6), Variant(int16_t{4}));
}

TEST_F(FpxReadBack, ReplacesAnExistingFileAndReportsAFolderItCannotCreateIn) {
    {
        std::FILE* f = std::fopen(path_.string().c_str(), "wb");
        ASSERT_NE(f, nullptr);
        std::fputs(std::string(100000, 'x').c_str(), f);
        std::fclose(f);
    }
    test::FlowTestRecord record;
    WriteAndLoad(record.Measurement());
    EXPECT_LT(std::filesystem::file_size(path_), 100000u);

    RecordingPrompt prompt;
    const std::string bad = (path_.parent_path() / "no_such_folder_fpx" / "x.fpx").string();
    EXPECT_FALSE(WriteFpxFile(bad, record.Measurement(), prompt));
    ASSERT_EQ(prompt.messages.size(), 1u);
    EXPECT_EQ(prompt.messages[0], "Unable to create file: " + bad);
}

}  // namespace
}  // namespace rm
