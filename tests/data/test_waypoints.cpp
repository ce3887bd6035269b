#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "data/test_data_file_support.h"
#include "data/way_file.h"
#include "data/waypoints.h"

namespace rm {
namespace {

using test::ScratchDir;

std::vector<std::string> Labels(const WaypointList& list) {
    std::vector<std::string> labels;
    for (const Waypoint& w : list.Items()) labels.push_back(w.label);
    return labels;
}

std::string FileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

WaypointList ThreeWaypoints() {
    WaypointList list;
    list.Add(WaypointType::Waypoint, -122.41941550, 37.77492950).comments = "gauge house";
    Waypoint& hazard = list.Add(WaypointType::Hazard, 13.0 + 1.0 / 3.0, -45.1);
    hazard.label = "Snag, left bank";
    hazard.comments = "submerged tree; keep 5 m off\nseen 2026";
    list.Add(WaypointType::Marker, 0.0, 0.0);
    return list;
}

TEST(Waypoints, NewLabelsNumberOnFromTheHighestWithoutRepeating) {
    WaypointList list;
    EXPECT_EQ(list.Add(WaypointType::Waypoint, 1, 2).label, "WP 1");
    list.Add(WaypointType::Hazard, 1, 2);
    list.Add(WaypointType::Marker, 1, 2);
    EXPECT_EQ(Labels(list), (std::vector<std::string>{"WP 1", "WP 2", "WP 3"}));
    list.Remove(1);
    EXPECT_EQ(list.Add(WaypointType::Waypoint, 1, 2).label, "WP 4");  // not a second "WP 3"
    list.At(0).label = "Bridge pier";
    list.At(1).label = "WP 12";
    EXPECT_EQ(list.NextLabel(), "WP 13");
    list.At(1).label = "WP 12b";  // not of the numbering
    EXPECT_EQ(list.NextLabel(), "WP 5");
    list.Remove(-1);
    list.Remove(list.Count());
    EXPECT_EQ(list.Count(), 3);
    list.Clear();
    EXPECT_EQ(list.Add(WaypointType::Waypoint, 0, 0).label, "WP 1");
}

TEST(Waypoints, TypeNamesAndNumberTexts) {
    EXPECT_STREQ(WaypointTypeName(WaypointType::Waypoint), "Waypoint");
    EXPECT_STREQ(WaypointTypeName(WaypointType::Hazard), "Hazard");
    EXPECT_STREQ(WaypointTypeName(WaypointType::Marker), "Marker");
    EXPECT_EQ(WaypointPositionText(-122.4194155), "-122.41941550");
    EXPECT_EQ(WaypointPositionText(37.5), "37.50000000");
    EXPECT_EQ(WaypointEditText(-122.4194155), "-122.419");  // %lg: six significant digits
    EXPECT_EQ(WaypointEditText(1e-7), "1e-07");
    double v = 5.0;
    EXPECT_TRUE(ParseWaypointNumber(" -45.125 ", v));
    EXPECT_DOUBLE_EQ(v, -45.125);
    for (const char* bad : {"", "12a", "1,5", "nan", "inf", "--1"}) {
        EXPECT_FALSE(ParseWaypointNumber(bad, v)) << bad;
        EXPECT_DOUBLE_EQ(v, -45.125);
    }
}

TEST(WayFile, RoundTripKeepsEveryFieldAndTheOrder) {
    ScratchDir dir;
    const std::string path = dir.File("river.way");
    const WaypointList saved = ThreeWaypoints();
    RecordingPrompt prompt;
    ASSERT_EQ(SaveWayFile(saved, path, prompt), WayFileResult::Ok);
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_FALSE(std::filesystem::exists(path + ".saving"));

    WaypointList loaded;
    loaded.Add(WaypointType::Marker, 9, 9);  // replaced by the load
    ASSERT_EQ(LoadWayFile(path, loaded, prompt), WayFileResult::Ok);
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(loaded.Items(), saved.Items());

    // Saving what was loaded gives the same bytes.
    const std::string again = dir.File("again.way");
    ASSERT_EQ(SaveWayFile(loaded, again, prompt), WayFileResult::Ok);
    EXPECT_EQ(FileBytes(again), FileBytes(path));
}

TEST(WayFile, IsASettingsTreeUnderWaypointsWithUnnamedEntries) {
    ScratchDir dir;
    const std::string path = dir.File("one.way");
    WaypointList list;
    list.Add(WaypointType::Hazard, -1.5, 2.25).comments = "c";
    RecordingPrompt prompt;
    ASSERT_EQ(SaveWayFile(list, path, prompt), WayFileResult::Ok);

    // The file read by the generic tree reader: root -> "Waypoints" -> "" -> five keys in order.
    const NodeRef root = NodeRef::MakeNew();
    ASSERT_TRUE(LoadTreeFile(root, path));
    ASSERT_EQ(root.ItemCount(), 1);
    EXPECT_EQ(root.ItemName(0), "Waypoints");
    const NodeRef waypoints = root.ItemChild(0);
    ASSERT_EQ(waypoints.ItemCount(), 1);
    EXPECT_EQ(waypoints.ItemName(0), "");
    const NodeRef entry = waypoints.ItemChild(0);
    ASSERT_EQ(entry.ItemCount(), 5);
    const std::vector<std::pair<std::string, VarType>> expected{{"Type", VarType::I32},   {"x", VarType::Double},
                                                                {"y", VarType::Double},   {"Label", VarType::Text},
                                                                {"Comments", VarType::Text}};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(entry.ItemName(i), expected[static_cast<size_t>(i)].first);
        EXPECT_EQ(entry.ItemValue(i).type(), expected[static_cast<size_t>(i)].second);
    }
    EXPECT_EQ(entry.ItemValue(0).As<int32_t>(), 1);
    EXPECT_EQ(entry.ItemValue(1).As<double>(), -1.5);
    EXPECT_EQ(entry.ItemValue(2).As<double>(), 2.25);
    EXPECT_EQ(entry.ItemValue(3).As<std::string>(), "WP 1");

    // A file written by hand in the same form loads (labels and comments may be left out).
    const NodeRef handMade = NodeRef::MakeNew();
    const NodeRef w = handMade.GetOrCreateChild("Waypoints").GetOrCreateChild("");
    w.SetValue("Type", Variant(int32_t{2}));
    w.SetValue("x", Variant("7.5"));  // text that converts
    w.SetValue("y", Variant(int32_t{-3}));
    ASSERT_TRUE(SaveTreeFile(handMade, path));
    WaypointList loaded;
    ASSERT_EQ(LoadWayFile(path, loaded, prompt), WayFileResult::Ok);
    ASSERT_EQ(loaded.Count(), 1);
    EXPECT_EQ(loaded.At(0).type, WaypointType::Marker);
    EXPECT_EQ(loaded.At(0).x, 7.5);
    EXPECT_EQ(loaded.At(0).y, -3.0);
    EXPECT_EQ(loaded.At(0).label, "");
    EXPECT_TRUE(prompt.messages.empty());
}

TEST(WayFile, SavingNothingSaysSoAndWritesNothing) {
    ScratchDir dir;
    const std::string path = dir.File("empty.way");
    RecordingPrompt prompt;
    EXPECT_EQ(SaveWayFile(WaypointList{}, path, prompt), WayFileResult::NothingToSave);
    EXPECT_EQ(prompt.messages, (std::vector<std::string>{"No waypoints to save.Unable to save file"}));
    EXPECT_FALSE(std::filesystem::exists(path));

    // A save that cannot be written says so and leaves an older file as it was.
    WriteBytes(path, "old");
    std::filesystem::permissions(dir.path(), std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    RecordingPrompt failed;
    const bool writable = std::ofstream(dir.File("probe")).good();  // root may write anyway
    if (!writable) {
        EXPECT_EQ(SaveWayFile(ThreeWaypoints(), path, failed), WayFileResult::WriteFailed);
        EXPECT_EQ(failed.messages, (std::vector<std::string>{"Unable to save file"}));
        EXPECT_EQ(FileBytes(path), "old");
    }
    std::filesystem::permissions(dir.path(), std::filesystem::perms::owner_all);
}

TEST(WayFile, BadFilesLeaveTheWaypointsAsTheyWere) {
    ScratchDir dir;
    const WaypointList before = ThreeWaypoints();
    const std::string good = dir.File("good.way");
    RecordingPrompt ignored;
    ASSERT_EQ(SaveWayFile(before, good, ignored), WayFileResult::Ok);
    const std::string goodBytes = FileBytes(good);

    struct Case {
        const char* name;
        std::string bytes;  // empty with `absent`: no file at all
        bool absent;
        const char* message;
    };
    // A tree without waypoints, and one whose Waypoints node has no entry.
    const NodeRef other = NodeRef::MakeNew();
    other.GetOrCreateChild("General").SetValue("Unit System", Variant(int16_t{1}));
    const NodeRef noEntries = NodeRef::MakeNew();
    noEntries.GetOrCreateChild("Waypoints");
    // Entries that are there but wrong.
    auto treeBytes = [&dir](const NodeRef& root) {
        const std::string p = dir.File("scratch.tree");
        EXPECT_TRUE(SaveTreeFile(root, p));
        return FileBytes(p);
    };
    auto entryTree = [](const std::function<void(const NodeRef&)>& fill) {
        const NodeRef root = NodeRef::MakeNew();
        const NodeRef entry = root.GetOrCreateChild("Waypoints").GetOrCreateChild("");
        entry.SetValue("Type", Variant(int32_t{0}));
        entry.SetValue("x", Variant(1.0));
        entry.SetValue("y", Variant(2.0));
        fill(entry);
        return root;
    };
    const NodeRef leafEntry = NodeRef::MakeNew();
    leafEntry.GetOrCreateChild("Waypoints").SetValue("", Variant("not an entry"));

    const std::vector<Case> cases{
        {"no file", "", true, kWayFileUnreadable},
        {"empty file", "", false, kWayFileUnreadable},
        {"text file", "Type=0\nx=1\ny=2\n", false, kWayFileUnreadable},
        {"cut short", goodBytes.substr(0, goodBytes.size() - 7), false, kWayFileUnreadable},
        {"unknown type", treeBytes(entryTree([](const NodeRef& e) { e.SetValue("Type", Variant(int32_t{3})); })),
         false, kWayFileUnreadable},
        {"x not a number", treeBytes(entryTree([](const NodeRef& e) { e.SetValue("x", Variant("east")); })), false,
         kWayFileUnreadable},
        {"y missing", treeBytes(entryTree([](const NodeRef& e) { e.RemoveAt(e.FindIndex("y")); })), false,
         kWayFileUnreadable},
        {"entry without keys", treeBytes(leafEntry), false, kWayFileUnreadable},
        {"other tree", treeBytes(other), false, kNoWaypointsFound},
        {"no entries", treeBytes(noEntries), false, kNoWaypointsFound},
        {"empty tree", std::string(4, '\0'), false, kNoWaypointsFound},
    };
    for (const Case& c : cases) {
        const std::string path = dir.File("case.way");
        std::filesystem::remove(path);
        if (!c.absent) WriteBytes(path, c.bytes);
        WaypointList list = before;
        RecordingPrompt prompt;
        const WayFileResult result = LoadWayFile(path, list, prompt);
        EXPECT_NE(result, WayFileResult::Ok) << c.name;
        EXPECT_EQ(prompt.messages, (std::vector<std::string>{c.message})) << c.name;
        EXPECT_EQ(list.Items(), before.Items()) << c.name;
    }
}

}  // namespace
}  // namespace rm
