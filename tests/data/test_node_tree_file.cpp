#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "data/node_tree.h"
#include "data/test_data_file_support.h"

namespace rm {
namespace {

using test::TempFile;

// Builds file bytes by hand, independently of the writer: u32 counts and lengths, u16 type
// codes, texts as a length that counts the NUL, the characters and the NUL.
struct Bytes {
    std::vector<uint8_t> b;
    Bytes& u8(uint8_t v) { b.push_back(v); return *this; }
    Bytes& u16(uint16_t v) { return u8(static_cast<uint8_t>(v)).u8(static_cast<uint8_t>(v >> 8)); }
    Bytes& u32(uint32_t v) { return u16(static_cast<uint16_t>(v)).u16(static_cast<uint16_t>(v >> 16)); }
    Bytes& raw(const std::string& s) { b.insert(b.end(), s.begin(), s.end()); return *this; }
    Bytes& text(const std::string& s) { return u32(static_cast<uint32_t>(s.size() + 1)).raw(s).u8(0); }
    // An item named `name` without a child, of type `type`, whose value text is `value`.
    Bytes& leaf(const std::string& name, uint16_t type, const std::string& value) {
        return text(name).u8(0).u16(type).text(value);
    }
};

std::vector<uint8_t> SavedBytes(const NodeRef& root) {
    TempFile file;
    EXPECT_TRUE(root.Save(file.get()));
    return file.ReadAll();
}

// Saves `root` and loads it into a fresh node, which is returned; a failed load fails the test.
NodeRef SavedAndLoaded(const NodeRef& root) {
    TempFile file;
    file.Write(SavedBytes(root));
    NodeRef loaded = NodeRef::MakeNew();
    EXPECT_TRUE(loaded.Load(file.get()));
    return loaded;
}

bool Loads(const std::vector<uint8_t>& bytes, const NodeRef& into = NodeRef::MakeNew()) {
    TempFile file;
    file.Write(bytes);
    return into.Load(file.get());
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
    root.SetValue("Both", Variant("value"));  // a leaf that was given a child keeps both
    root.GetOrCreateChild("Both").SetValue("Inner", Variant(7));
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
    // Count 2; "A" without child, type 2, "5"; "B" with a child of no items, type 0, empty text.
    EXPECT_EQ(SavedBytes(root), Bytes().u32(2).leaf("A", 2, "5").text("B").u8(1).u32(0).u16(0).text("").b);
}

TEST(NodeTreeFileRoundTrip, EveryTypeAndTheOrderSurvive) {
    NodeRef root = SampleTree();
    NodeRef loaded = NodeRef::MakeNew();
    loaded.Append("stale", Variant(1));  // Load clears first
    ASSERT_TRUE(Loads(SavedBytes(root), loaded));
    ExpectSameTree(root, loaded);
    EXPECT_EQ(loaded.ItemName(2), "Zeta");
    EXPECT_EQ(loaded.ItemName(3), "Alpha");
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

    const NodeRef loaded = SavedAndLoaded(root);
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

    NodeRef loaded = NodeRef::MakeNew();
    EXPECT_FALSE(Loads(bytes, loaded));
    ASSERT_EQ(loaded.ItemCount(), 2);  // what was read stays
    EXPECT_EQ(loaded.ItemName(0), "A");
    EXPECT_EQ(loaded.ItemName(1), "C");
}

TEST(NodeTreeFileHostile, EveryTruncationFailsCleanly) {
    std::vector<uint8_t> bytes = SavedBytes(SampleTree());
    for (size_t cut = 0; cut < bytes.size(); ++cut) {
        EXPECT_FALSE(Loads({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(cut)})) << "cut at " << cut;
    }
}

TEST(NodeTreeFileHostile, HugeOrNegativeLengthsAndCounts) {
    Bytes deep;
    for (int level = 0; level < 100000; ++level) deep.u32(1).text("").u8(1);
    const std::string xs(100, 'x');
    const struct {
        const char* what;
        std::vector<uint8_t> bytes;
    } cases[] = {
        {"name length 0xFFFFFFFF", Bytes().u32(1).u32(0xFFFFFFFFu).raw(xs).b},
        {"huge name length", Bytes().u32(1).u32(0x7FFFFFF0u).raw(xs).b},  // 2 GB promised, 100 bytes given
        {"negative value length", Bytes().u32(1).text("A").u8(0).u16(8).u32(0x80000000u).b},
        {"huge value length", Bytes().u32(1).text("A").u8(0).u16(8).u32(0x7FFFFFFFu).raw("vvvvvvvvvv").b},
        {"huge count", Bytes().u32(0xFFFFFFFFu).leaf("A", 3, "1").b},
        {"unknown type code", Bytes().u32(1).leaf("A", 4, "1.5").b},  // 4, a float, is not in use
        {"value text of the wrong kind", Bytes().u32(1).leaf("A", 3, "not a number").b},
        {"nesting 100000 deep", deep.b},
    };
    for (const auto& c : cases) EXPECT_FALSE(Loads(c.bytes)) << c.what;
}

TEST(NodeTreeFileHostile, ShortFieldsAndZeroLengths) {
    NodeRef loaded = NodeRef::MakeNew();
    // A name length of 0 gives an empty name; a field without its NUL loses its last byte.
    ASSERT_TRUE(Loads(Bytes().u32(2).u32(0).u8(0).u16(3).text("5").u32(3).raw("abc").u8(0).u16(8).u32(2).raw("xy").b,
                      loaded));
    ASSERT_EQ(loaded.ItemCount(), 2);
    EXPECT_EQ(loaded.ItemName(0), "");
    EXPECT_EQ(loaded.ItemValue(0), Variant(5));
    EXPECT_EQ(loaded.ItemName(1), "ab");
    EXPECT_EQ(loaded.ItemValue(1), Variant("x"));
}

TEST(NodeTreeFileHostile, FailedChildLeavesTheItemWithoutChild) {
    // The child of "Broken" promises three items and ends.
    NodeRef loaded = NodeRef::MakeNew();
    EXPECT_FALSE(Loads(Bytes().u32(2).leaf("Good", 3, "1").text("Broken").u8(1).u32(3).b, loaded));
    ASSERT_EQ(loaded.ItemCount(), 2);
    EXPECT_EQ(loaded.ItemName(1), "Broken");
    EXPECT_TRUE(loaded.ItemChild(1).IsNull());
}

TEST(NodeTreeFileHelpers, SaveAndLoadWholeFiles) {
    const test::ScratchDir dir;
    const std::string path = dir.File("AppSettings.conf");
    NodeRef root = SampleTree();
    ASSERT_TRUE(SaveTreeFile(root, path));
    NodeRef loaded = NodeRef::MakeNew();
    ASSERT_TRUE(LoadTreeFile(loaded, path));
    ExpectSameTree(root, loaded);
    EXPECT_FALSE(LoadTreeFile(loaded, dir.File("missing.conf")));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1);  // no leftovers
    // A tree deeper than the limit cannot be written; the file on disk must stay whole.
    NodeRef deep = NodeRef::MakeNew();
    NodeRef at = deep;
    for (int level = 0; level <= kMaxTreeDepth + 1; ++level) at = at.GetOrCreateChild("L");
    EXPECT_FALSE(SaveTreeFile(deep, path));
    ASSERT_TRUE(LoadTreeFile(loaded, path));
    ExpectSameTree(root, loaded);
    EXPECT_FALSE(SaveTreeFile(root, dir.File("no/such/folder.cfg")));
}

}  // namespace
}  // namespace rm
