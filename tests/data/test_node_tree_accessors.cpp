#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/node_tree.h"

namespace rm {
namespace {

// Collects the debug text of failed lookups for the duration of a test.
class DebugTextCapture {
public:
    DebugTextCapture() {
        SetTreeDebugSink([this](const char* text) { texts.emplace_back(text); });
    }
    ~DebugTextCapture() { SetTreeDebugSink(nullptr); }
    std::vector<std::string> texts;
};

TEST(NodeTreeLookup, NamesMatchCaseInsensitivelyAndTheFirstWins) {
    NodeRef root = NodeRef::MakeNew();
    root.Append("Unit System", Variant(int16_t{1}));
    root.Append("UNIT SYSTEM", Variant(int16_t{2}));
    EXPECT_EQ(root.FindIndex("unit system"), 0);
    EXPECT_EQ(root.FindIndex("UnitSystem"), -1);
    EXPECT_EQ(root.FindIndex(""), -1);
    EXPECT_EQ(root.GetTyped<int16_t>("Unit system", 9), 1);
    root.SetValue("unit SYSTEM", Variant(int16_t{5}));
    EXPECT_EQ(root.ItemValue(0), Variant(int16_t{5}));
    EXPECT_EQ(root.ItemValue(1), Variant(int16_t{2}));
    EXPECT_EQ(root.ItemName(0), "Unit System");  // the stored spelling stays
}

TEST(NodeTreeLookup, FailedChildLookupsGiveNullAndTheDebugText) {
    DebugTextCapture debug;
    NodeRef root = NodeRef::MakeNew();
    root.Append("Leaf", Variant(3));
    root.GetOrCreateChild("Branch");

    EXPECT_TRUE(root.GetChildByIndex(-1).IsNull());
    EXPECT_TRUE(root.GetChildByIndex(2).IsNull());
    EXPECT_TRUE(root.GetChildByIndex(0).IsNull());  // in range, but a leaf
    EXPECT_TRUE(root.GetChildByName("missing").IsNull());
    EXPECT_TRUE(root.GetChildByName("").IsNull());
    ASSERT_EQ(debug.texts.size(), 5u);
    for (const std::string& text : debug.texts) EXPECT_EQ(text, "\npData=NULL");

    EXPECT_FALSE(root.GetChildByName("branch").IsNull());
    EXPECT_FALSE(root.GetChildByIndex(1).IsNull());
    EXPECT_TRUE(root.ItemChild(0).IsNull());  // the listing accessor stays quiet
    EXPECT_EQ(debug.texts.size(), 5u);
    EXPECT_EQ(root.ItemCount(), 2);  // lookups never create
}

TEST(NodeTreeGetValue, MissingKeyIsAppendedWithItsDefault) {
    NodeRef root = NodeRef::MakeNew();
    EXPECT_EQ(root.GetTyped<int32_t>("ShowBottomDepth", 1), 1);
    ASSERT_EQ(root.ItemCount(), 1);
    EXPECT_EQ(root.ItemName(0), "ShowBottomDepth");
    EXPECT_EQ(root.ItemValue(0), Variant(int32_t{1}));
    // Found as leaf: the default is ignored.
    EXPECT_EQ(root.GetTyped<int32_t>("ShowBottomDepth", 7), 1);
    // An empty name appends an item too.
    root.GetValue("", Variant(2.0));
    EXPECT_EQ(root.ItemCount(), 2);
}

TEST(NodeTreeGetValue, ConvertsTheStoredValueOrThrows) {
    NodeRef root = NodeRef::MakeNew();
    root.SetValue("Number", Variant("12"));
    root.SetValue("Word", Variant("twelve"));
    EXPECT_EQ(root.GetTyped<int32_t>("Number", 0), 12);
    EXPECT_EQ(root.ItemValue(0).type(), VarType::Text);  // conversion goes to a temporary
    EXPECT_THROW(root.GetTyped<int32_t>("Word", 0), VariantConversionError);
    EXPECT_EQ(root.GetTyped<std::string>("Number", "x"), "12");
}

TEST(NodeTreeGetValue, ReadingABranchAsValueDropsItsChild) {
    NodeRef root = NodeRef::MakeNew();
    NodeRef branch = root.GetOrCreateChild("Section");
    branch.SetValue("Inner", Variant(1));
    EXPECT_EQ(branch.RefCount(), 2u);
    EXPECT_EQ(root.GetTyped<double>("Section", 2.5), 2.5);
    EXPECT_TRUE(root.ItemChild(0).IsNull());
    EXPECT_EQ(branch.RefCount(), 1u);  // only this handle keeps it now
    EXPECT_EQ(branch.ItemCount(), 1);
}

TEST(NodeTreeGetOrCreateChild, CreatesFindsAndKeepsLeafValues) {
    NodeRef root = NodeRef::MakeNew();
    NodeRef general = root.GetOrCreateChild("General");
    EXPECT_EQ(root.ItemCount(), 1);
    EXPECT_EQ(root.ItemValue(0).type(), VarType::Empty);
    EXPECT_TRUE(root.GetOrCreateChild("GENERAL").SameNode(general));

    root.SetValue("Leaf", Variant("kept"));
    NodeRef added = root.GetOrCreateChild("Leaf");
    EXPECT_FALSE(added.IsNull());
    EXPECT_EQ(root.ItemValue(1), Variant("kept"));
    EXPECT_TRUE(root.ItemChild(1).SameNode(added));

    NodeRef unnamed = root.GetOrCreateChild("");
    EXPECT_EQ(root.ItemCount(), 3);
    EXPECT_FALSE(root.GetOrCreateChild("").SameNode(unnamed));  // an empty name never matches
}

TEST(NodeTreeSetChild, SharesOneNodeUnderTwoParents) {
    NodeRef documentRoot = NodeRef::MakeNew();
    NodeRef systemRoot = NodeRef::MakeNew();
    systemRoot.GetOrCreateChild("Setup").SetValue("NumberOfCells", Variant(int16_t{20}));

    documentRoot.Append("System", Variant());
    documentRoot.SetChild(documentRoot.FindIndex("System"), systemRoot);
    EXPECT_EQ(systemRoot.RefCount(), 2u);

    documentRoot.GetChildByName("System").GetChildByName("Setup").SetValue("NumberOfCells", Variant(int16_t{30}));
    EXPECT_EQ(systemRoot.GetChildByName("Setup").GetTyped<int16_t>("NumberOfCells", 0), 30);

    documentRoot.SetChild(5, systemRoot);  // out of range: nothing
    EXPECT_EQ(systemRoot.RefCount(), 2u);
    documentRoot.SetChild(0, NodeRef::MakeNew());  // the old child is released
    EXPECT_EQ(systemRoot.RefCount(), 1u);
}

TEST(NodeTreeReferences, CountsFollowHandlesAndParents) {
    NodeRef child;
    {
        NodeRef root = NodeRef::MakeNew();
        EXPECT_EQ(root.RefCount(), 1u);
        NodeRef copy = root;
        EXPECT_EQ(root.RefCount(), 2u);
        copy = copy;  // self-assignment keeps the count
        EXPECT_EQ(root.RefCount(), 2u);
        NodeRef moved = std::move(copy);
        EXPECT_EQ(root.RefCount(), 2u);
        child = root.GetOrCreateChild("A");
        EXPECT_EQ(child.RefCount(), 2u);
    }
    EXPECT_EQ(child.RefCount(), 1u);  // the dead parent released it
    child = NodeRef();
    EXPECT_EQ(child.RefCount(), 0u);
}

TEST(NodeTreeItems, SetAtIndexRulesClearRemoveAndAppendWithoutSearch) {
    NodeRef root = NodeRef::MakeNew();
    root.SetAt(-1, Variant(1));
    root.SetAt(1, Variant(1));
    EXPECT_EQ(root.ItemCount(), 0);
    root.SetAt(0, Variant(1));  // index equal to the count appends an unnamed item
    ASSERT_EQ(root.ItemCount(), 1);
    EXPECT_EQ(root.ItemName(0), "");
    root.GetOrCreateChild("Branch").SetValue("x", Variant(1));
    root.SetAt(1, Variant("now a leaf"));
    EXPECT_TRUE(root.ItemChild(1).IsNull());
    EXPECT_EQ(root.ItemValue(1), Variant("now a leaf"));
    EXPECT_EQ(root.ItemName(1), "Branch");

    root.Clear();
    root.Append("A", Variant(1));
    root.Append("a", Variant(2));  // no duplicate check
    root.Append("B", Variant(3));
    EXPECT_EQ(root.ItemCount(), 3);
    root.RemoveAt(0);
    root.RemoveAt(7);
    ASSERT_EQ(root.ItemCount(), 2);
    EXPECT_EQ(root.ItemValue(0), Variant(2));
    EXPECT_EQ(root.ItemName(5), "");
    EXPECT_EQ(root.ItemValue(-1).type(), VarType::Empty);
    root.Clear();
    EXPECT_EQ(root.ItemCount(), 0);
}

TEST(NodeTreeNullRef, EveryOperationIsNeutral) {
    DebugTextCapture debug;
    NodeRef none;
    EXPECT_TRUE(none.IsNull());
    EXPECT_EQ(none.FindIndex("x"), -1);
    EXPECT_EQ(none.ItemCount(), 0);
    EXPECT_EQ(none.RefCount(), 0u);
    EXPECT_TRUE(none.GetOrCreateChild("x").IsNull());
    EXPECT_TRUE(none.GetChildByName("x").IsNull());
    EXPECT_EQ(none.GetTyped<int32_t>("x", 42), 42);
    EXPECT_EQ(none.GetValue("x", Variant("d")), Variant("d"));
    none.SetValue("x", Variant(1));
    none.SetAt(0, Variant(1));
    none.Append("x", Variant(1));
    none.Clear();
    EXPECT_EQ(none.ItemCount(), 0);
    EXPECT_FALSE(none.Save(nullptr));
    EXPECT_FALSE(none.Load(nullptr));
}

}  // namespace
}  // namespace rm
