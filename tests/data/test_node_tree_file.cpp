#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "data/node_tree.h"

namespace rm {
namespace {

// An anonymous temporary file, removed when closed.
class TempFile {
public:
    TempFile() : file_(std::tmpfile()) {}
    ~TempFile() {
        if (file_) std::fclose(file_);
    }
    std::FILE* get() const { return file_; }
    void Write(const std::vector<uint8_t>& bytes) {
        std::fwrite(bytes.data(), 1, bytes.size(), file_);
        std::rewind(file_);
    }
    std::vector<uint8_t> ReadAll() {
        std::rewind(file_);
        std::vector<uint8_t> bytes;
        int c;
        while ((c = std::fgetc(file_)) != EOF) bytes.push_back(static_cast<uint8_t>(c));
        std::rewind(file_);
        return bytes;
    }

private:
    std::FILE* file_;
};

// Little helpers that build file bytes by hand, independently of the writer.
void U32(std::vector<uint8_t>& b, uint32_t v) {
    for (int i = 0; i < 4; ++i) b.push_back(static_cast<uint8_t>(v >> (8 * i)));
}
void U16(std::vector<uint8_t>& b, uint16_t v) {
    b.push_back(static_cast<uint8_t>(v));
    b.push_back(static_cast<uint8_t>(v >> 8));
}
void Text(std::vector<uint8_t>& b, const std::string& s) {
    U32(b, static_cast<uint32_t>(s.size() + 1));
    b.insert(b.end(), s.begin(), s.end());
    b.push_back(0);
}

std::vector<uint8_t> SavedBytes(const NodeRef& root) {
    TempFile file;
    EXPECT_TRUE(root.Save(file.get()));
    return file.ReadAll();
}

NodeRef SampleTree() {
    NodeRef root = NodeRef::MakeNew();
    NodeRef general = root.GetOrCreateChild("General");
    general.SetValue("Unit System", Variant(int16_t{-32768}));
    general.SetValue("Flags", Variant(std::numeric_limits<int32_t>::min()));
    general.SetValue("Ratio", Variant(1.0 / 3.0));
    general.SetValue("Large", Variant(-1e300));
    general.SetValue("Path", Variant("C:\\QorData\\ with blanks "));
    general.SetValue("Enabled", Variant(uint8_t{255}));
    general.SetValue("Empty text", Variant(""));
    root.GetOrCreateChild("Colors").GetOrCreateChild("Data Quality Colors").SetValue("Good Data", Variant(65280));
    root.SetValue("Zeta", Variant(0.1));
    root.SetValue("Alpha", Variant(2));
    return root;
}

// Compares two trees item by item, children included.
void ExpectSameTree(const NodeRef& a, const NodeRef& b, const std::string& where = "root") {
    ASSERT_EQ(a.ItemCount(), b.ItemCount()) << where;
    for (int i = 0; i < a.ItemCount(); ++i) {
        EXPECT_EQ(a.ItemName(i), b.ItemName(i)) << where;
        EXPECT_EQ(a.ItemValue(i), b.ItemValue(i)) << where << "/" << a.ItemName(i);
        ASSERT_EQ(a.ItemChild(i).IsNull(), b.ItemChild(i).IsNull()) << where << "/" << a.ItemName(i);
        if (!a.ItemChild(i).IsNull()) ExpectSameTree(a.ItemChild(i), b.ItemChild(i), where + "/" + a.ItemName(i));
    }
}

TEST(NodeTreeFileLayout, BytesOfALeafAndABranchAsDescribed) {
    NodeRef root = NodeRef::MakeNew();
    root.SetValue("A", Variant(int16_t{5}));
    root.GetOrCreateChild("B");
    std::vector<uint8_t> expected;
    U32(expected, 2);
    Text(expected, "A");
    expected.push_back(0);  // no child
    U16(expected, 2);
    Text(expected, "5");
    Text(expected, "B");
    expected.push_back(1);  // child follows
    U32(expected, 0);       // the empty child node
    U16(expected, 0);       // a branch: type 0, one NUL
    Text(expected, "");
    EXPECT_EQ(SavedBytes(root), expected);
}

TEST(NodeTreeFileRoundTrip, EveryTypeAndTheOrderSurvive) {
    NodeRef root = SampleTree();
    TempFile file;
    ASSERT_TRUE(root.Save(file.get()));
    std::rewind(file.get());
    NodeRef loaded = NodeRef::MakeNew();
    loaded.Append("stale", Variant(1));  // Load clears first
    ASSERT_TRUE(loaded.Load(file.get()));
    ExpectSameTree(root, loaded);
    EXPECT_EQ(loaded.ItemName(2), "Zeta");
    EXPECT_EQ(loaded.ItemName(3), "Alpha");
}

TEST(NodeTreeFileRoundTrip, LeafWithAddedChildKeepsBoth) {
    NodeRef root = NodeRef::MakeNew();
    root.SetValue("Both", Variant("value"));
    root.GetOrCreateChild("Both").SetValue("Inner", Variant(7));
    TempFile file;
    ASSERT_TRUE(root.Save(file.get()));
    std::rewind(file.get());
    NodeRef loaded = NodeRef::MakeNew();
    ASSERT_TRUE(loaded.Load(file.get()));
    EXPECT_EQ(loaded.ItemValue(0), Variant("value"));
    EXPECT_EQ(loaded.GetChildByName("Both").GetTyped<int32_t>("Inner", 0), 7);
}

TEST(NodeTreeFileRoundTrip, LongNamesAndDeepNesting) {
    NodeRef root = NodeRef::MakeNew();
    const std::string longName(3000, 'n');
    root.SetValue(longName, Variant(1));
    root.SetValue(std::string(1023, 'm'), Variant(2));
    root.SetValue(std::string(1024, 'k'), Variant(3));
    NodeRef deepest = root;
    for (int level = 0; level < kMaxTreeDepth; ++level) deepest = deepest.GetOrCreateChild("L" + std::to_string(level));
    deepest.SetValue("Bottom", Variant(4));

    TempFile file;
    ASSERT_TRUE(root.Save(file.get()));
    std::rewind(file.get());
    NodeRef loaded = NodeRef::MakeNew();
    ASSERT_TRUE(loaded.Load(file.get()));
    ExpectSameTree(root, loaded);
    EXPECT_EQ(loaded.GetTyped<int32_t>(longName, 0), 1);

    // One level more than the limit is refused on both sides.
    deepest.GetOrCreateChild("TooDeep");
    TempFile second;
    EXPECT_FALSE(root.Save(second.get()));
}

TEST(NodeTreeFileRoundTrip, ConsecutiveTreesLoadOneAfterAnother) {
    NodeRef first = NodeRef::MakeNew();
    first.SetValue("GpsPresent", Variant(1));
    NodeRef second = SampleTree();
    TempFile file;
    ASSERT_TRUE(first.Save(file.get()));
    const long firstEnd = std::ftell(file.get());
    ASSERT_TRUE(second.Save(file.get()));
    const long secondEnd = std::ftell(file.get());
    std::rewind(file.get());

    NodeRef a = NodeRef::MakeNew(), b = NodeRef::MakeNew(), c = NodeRef::MakeNew();
    ASSERT_TRUE(a.Load(file.get()));
    EXPECT_EQ(std::ftell(file.get()), firstEnd);
    ASSERT_TRUE(b.Load(file.get()));
    EXPECT_EQ(std::ftell(file.get()), secondEnd);
    ExpectSameTree(second, b);
    EXPECT_FALSE(c.Load(file.get()));  // the end of the file
}

// Items with no child and an empty or null value are counted but not written.
TEST(NodeTreeFileCountMismatch, UnwrittenItemsMakeAShortRead) {
    NodeRef root = NodeRef::MakeNew();
    root.SetValue("A", Variant(1));
    root.Append("Hole", Variant());
    root.Append("NullHole", Variant::MakeNull());
    root.SetValue("C", Variant(2));
    std::vector<uint8_t> bytes = SavedBytes(root);
    ASSERT_GE(bytes.size(), 4u);
    EXPECT_EQ(bytes[0], 4);  // the count says four items

    TempFile file;
    file.Write(bytes);
    NodeRef loaded = NodeRef::MakeNew();
    EXPECT_FALSE(loaded.Load(file.get()));
    ASSERT_EQ(loaded.ItemCount(), 2);  // what was read stays
    EXPECT_EQ(loaded.ItemName(0), "A");
    EXPECT_EQ(loaded.ItemName(1), "C");

    // A following tree's bytes are then taken for the missing items.
    NodeRef next = NodeRef::MakeNew();
    next.SetValue("X", Variant(3));
    next.SetValue("Y", Variant(4));
    TempFile both;
    ASSERT_TRUE(root.Save(both.get()));
    ASSERT_TRUE(next.Save(both.get()));
    std::rewind(both.get());
    NodeRef damaged = NodeRef::MakeNew();
    damaged.Load(both.get());
    EXPECT_NE(damaged.ItemCount(), 2);
}

TEST(NodeTreeFileHostile, EveryTruncationFailsCleanly) {
    std::vector<uint8_t> bytes = SavedBytes(SampleTree());
    for (size_t cut = 0; cut < bytes.size(); ++cut) {
        TempFile file;
        file.Write(std::vector<uint8_t>(bytes.begin(), bytes.begin() + cut));
        NodeRef loaded = NodeRef::MakeNew();
        EXPECT_FALSE(loaded.Load(file.get())) << "cut at " << cut;
    }
}

TEST(NodeTreeFileHostile, HugeOrNegativeLengthsAndCounts) {
    struct Case {
        const char* what;
        std::vector<uint8_t> bytes;
    };
    std::vector<Case> cases;
    {
        std::vector<uint8_t> b;
        U32(b, 1);
        U32(b, 0xFFFFFFFFu);  // name length -1
        b.insert(b.end(), 100, 'x');
        cases.push_back({"name length 0xFFFFFFFF", b});
    }
    {
        std::vector<uint8_t> b;
        U32(b, 1);
        U32(b, 0x7FFFFFF0u);  // two gigabytes promised, a hundred bytes given
        b.insert(b.end(), 100, 'x');
        cases.push_back({"huge name length", b});
    }
    {
        std::vector<uint8_t> b;
        U32(b, 1);
        Text(b, "A");
        b.push_back(0);
        U16(b, 8);
        U32(b, 0x80000000u);  // negative value length
        cases.push_back({"negative value length", b});
    }
    {
        std::vector<uint8_t> b;
        U32(b, 1);
        Text(b, "A");
        b.push_back(0);
        U16(b, 8);
        U32(b, 0x7FFFFFFFu);
        b.insert(b.end(), 10, 'v');
        cases.push_back({"huge value length", b});
    }
    {
        std::vector<uint8_t> b;
        U32(b, 0xFFFFFFFFu);  // four billion items promised
        Text(b, "A");
        b.push_back(0);
        U16(b, 3);
        Text(b, "1");
        cases.push_back({"huge count", b});
    }
    {
        std::vector<uint8_t> b;
        U32(b, 1);
        Text(b, "A");
        b.push_back(0);
        U16(b, 4);  // a float: not a code in use
        Text(b, "1.5");
        cases.push_back({"unknown type code", b});
    }
    {
        std::vector<uint8_t> b;
        U32(b, 1);
        Text(b, "A");
        b.push_back(0);
        U16(b, 3);
        Text(b, "not a number");
        cases.push_back({"value text of the wrong kind", b});
    }
    {
        std::vector<uint8_t> b;
        for (int level = 0; level < 100000; ++level) {
            U32(b, 1);
            Text(b, "");
            b.push_back(1);
        }
        cases.push_back({"nesting 100000 deep", b});
    }
    for (const Case& c : cases) {
        TempFile file;
        file.Write(c.bytes);
        NodeRef loaded = NodeRef::MakeNew();
        EXPECT_FALSE(loaded.Load(file.get())) << c.what;
    }
}

TEST(NodeTreeFileHostile, ShortFieldsAndZeroLengths) {
    TempFile empty;
    NodeRef loaded = NodeRef::MakeNew();
    EXPECT_FALSE(loaded.Load(empty.get()));

    // A name length of 0 gives an empty name; a field without its NUL loses its last byte.
    std::vector<uint8_t> b;
    U32(b, 2);
    U32(b, 0);
    b.push_back(0);
    U16(b, 3);
    Text(b, "5");
    U32(b, 3);
    b.insert(b.end(), {'a', 'b', 'c'});
    b.push_back(0);
    U16(b, 8);
    U32(b, 2);
    b.insert(b.end(), {'x', 'y'});
    TempFile file;
    file.Write(b);
    ASSERT_TRUE(loaded.Load(file.get()));
    ASSERT_EQ(loaded.ItemCount(), 2);
    EXPECT_EQ(loaded.ItemName(0), "");
    EXPECT_EQ(loaded.ItemValue(0), Variant(5));
    EXPECT_EQ(loaded.ItemName(1), "ab");
    EXPECT_EQ(loaded.ItemValue(1), Variant("x"));
}

TEST(NodeTreeFileHostile, FailedChildLeavesTheItemWithoutChild) {
    std::vector<uint8_t> b;
    U32(b, 2);
    Text(b, "Good");
    b.push_back(0);
    U16(b, 3);
    Text(b, "1");
    Text(b, "Broken");
    b.push_back(1);
    U32(b, 3);  // the child promises three items and ends
    TempFile file;
    file.Write(b);
    NodeRef loaded = NodeRef::MakeNew();
    EXPECT_FALSE(loaded.Load(file.get()));
    ASSERT_EQ(loaded.ItemCount(), 2);
    EXPECT_EQ(loaded.ItemName(1), "Broken");
    EXPECT_TRUE(loaded.ItemChild(1).IsNull());
}

class NodeTreeFileHelpers : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = std::filesystem::temp_directory_path() /
               ("rm_tree_" + std::to_string(::getpid()) + "_" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(dir_);
        std::filesystem::create_directories(dir_);
    }
    void TearDown() override { std::filesystem::remove_all(dir_); }
    std::filesystem::path dir_;
};

TEST_F(NodeTreeFileHelpers, SaveAndLoadWholeFiles) {
    const std::string path = (dir_ / "AppSettings.conf").string();
    NodeRef root = SampleTree();
    ASSERT_TRUE(SaveTreeFile(root, path));
    NodeRef loaded = NodeRef::MakeNew();
    ASSERT_TRUE(LoadTreeFile(loaded, path));
    ExpectSameTree(root, loaded);
    EXPECT_FALSE(LoadTreeFile(loaded, (dir_ / "missing.conf").string()));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir_), {}), 1);  // no leftovers
}

TEST_F(NodeTreeFileHelpers, FailedSaveKeepsTheOldFile) {
    const std::string path = (dir_ / "settings.cfg").string();
    NodeRef root = NodeRef::MakeNew();
    root.SetValue("Old", Variant(1));
    ASSERT_TRUE(SaveTreeFile(root, path));
    // A tree deeper than the limit cannot be written; the file on disk must stay whole.
    NodeRef deep = NodeRef::MakeNew();
    NodeRef at = deep;
    for (int level = 0; level <= kMaxTreeDepth + 1; ++level) at = at.GetOrCreateChild("L");
    EXPECT_FALSE(SaveTreeFile(deep, path));
    NodeRef loaded = NodeRef::MakeNew();
    ASSERT_TRUE(LoadTreeFile(loaded, path));
    EXPECT_EQ(loaded.GetTyped<int32_t>("Old", 0), 1);
    EXPECT_FALSE(SaveTreeFile(root, (dir_ / "no" / "such" / "folder.cfg").string()));
}

}  // namespace
}  // namespace rm
