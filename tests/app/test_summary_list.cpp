// The application's list of finished measurements: order, rows, deleting, reading .dis files
// and keeping the list in AppSettings.conf.

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

#include "app/summary_list.h"
#include "app/summary_list_store.h"
#include "document_test_support.h"

namespace rm {
namespace {

std::shared_ptr<CDischargeData> Record(const std::string& name, int day, int hour, int minute = 0) {
    auto r = std::make_shared<CDischargeData>();
    r->fileName = name;
    r->Active = 1;
    r->startTime.day = static_cast<uint8_t>(day);
    r->startTime.hour = static_cast<uint8_t>(hour);
    r->startTime.minute = static_cast<uint8_t>(minute);
    return r;
}

std::vector<std::string> Names(const SummaryList& list) {
    std::vector<std::string> names;
    for (int i = 0; i < list.Size(); ++i) names.push_back(list.Get(i)->fileName);
    return names;
}

TEST(SummaryList, SortedByTimeOfDayWhateverTheDate) {
    SummaryList list;
    list.Add(Record("day1-10h", 1, 10));
    list.Add(Record("day2-09h", 2, 9));
    list.Add(Record("day1-11h", 1, 11));
    list.Add(Record("day2-09h-again", 2, 9));  // same key: stays after the first
    list.Add(nullptr);
    EXPECT_EQ(Names(list), (std::vector<std::string>{"day2-09h", "day2-09h-again", "day1-10h", "day1-11h"}));
    EXPECT_EQ(list.Get(4), nullptr);
    EXPECT_EQ(list.Get(-1), nullptr);
}

TEST(SummaryList, RowsCountActiveRecordsAndDeletingOnlyDeactivates) {
    SummaryList list;
    for (const char* name : {"a", "b", "c"}) list.Add(Record(name, 1, 8 + static_cast<int>(list.Size())));
    list.Get(1)->Active = 0;
    EXPECT_EQ(list.RowCount(), 2);
    EXPECT_EQ(list.GetByRow(1)->fileName, "c");
    EXPECT_EQ(list.GetByRow(2), nullptr);

    // The second row of a name deletes the first record of that name.
    SummaryList same;
    same.Add(Record("same.kvr", 1, 8));
    same.Add(Record("same.kvr", 1, 9));
    same.DeleteRows({1});
    EXPECT_EQ(same.Get(0)->Active, 0);
    EXPECT_EQ(same.Get(1)->Active, 1);
    same.DeleteAll();
    EXPECT_EQ(same.RowCount(), 0);
    EXPECT_EQ(same.Size(), 2);  // never destroyed
    EXPECT_FALSE(same.DeleteByName("same.kvr"));

    // An active record without a name is dropped; an inactive one stays.
    SummaryList nameless;
    nameless.Add(Record("", 1, 8));
    auto inactive = Record("", 1, 9);
    inactive->Active = 0;
    nameless.Add(inactive);
    nameless.Add(Record("kept", 1, 10));
    nameless.RemoveNameless();
    ASSERT_EQ(nameless.Size(), 2);
    EXPECT_EQ(nameless.Get(0)->Active, 0);
    EXPECT_EQ(nameless.Get(1)->fileName, "kept");
}

class SummaryListFiles : public ::testing::Test {
protected:
    std::string Write(const std::string& name, const std::string& text) {
        std::ofstream(dir.File(name), std::ios::binary) << text;
        return dir.File(name);
    }
    doctest::Folder dir;
    UserFolders folders{dir.File("config"), dir.File("docs")};
};

TEST_F(SummaryListFiles, ListSurvivesAppSettingsRoundTrip) {
    {
        AppSettings app(folders);
        SummaryList none;
        EXPECT_EQ(LoadSummaryList(none, app), 0);
        EXPECT_EQ(LoadLastDischargeMeasurement(app), nullptr);
    }
    auto a = Record("A.kvr", 5, 7, 8);
    a->startTime.year = 2024;
    a->startTime.second = 9;
    a->endTime = a->startTime;
    a->endTime.minute = 30;
    const std::pair<int32_t CDischargeData::*, int32_t> ints[] = {
        {&CDischargeData::ProfileCount, 321}, {&CDischargeData::TrackReference, 2},
        {&CDischargeData::DepthReference, 1}, {&CDischargeData::ShallowWaterPing, 1},
        {&CDischargeData::ExcludeFromStatistics, 1}};
    // Values not exact in decimal: they must come back bit for bit.
    const std::pair<float CDischargeData::*, float> floats[] = {{&CDischargeData::TotalDischarge, 12.345f},
                                                                {&CDischargeData::MadeGood, 0.1f}};
    const std::pair<double CDischargeData::*, double> doubles[] = {{&CDischargeData::Area, 98.765},
                                                                   {&CDischargeData::TrackLength, 1.0 / 3.0}};
    for (const auto& [field, value] : ints) (*a).*field = value;
    for (const auto& [field, value] : floats) (*a).*field = value;
    for (const auto& [field, value] : doubles) (*a).*field = value;
    a->settings = NodeRef::MakeNew();
    a->settings.GetOrCreateChild("Discharge").SetValue("StartMeanHW", Variant(1.25));
    auto b = Record("B.kvr", 6, 6);
    b->Active = 0;
    SummaryList list;
    list.Add(a);
    list.Add(b);
    {
        AppSettings app(folders);
        StoreSummaryList(list, a.get(), app);
        RecordingPrompt prompt;
        ASSERT_TRUE(app.SaveAppSettings(prompt));
    }
    AppSettings app(folders);
    ASSERT_TRUE(app.LoadAppSettings());
    SummaryList back;
    EXPECT_EQ(LoadSummaryList(back, app), 2);
    ASSERT_EQ(Names(back), (std::vector<std::string>{"B.kvr", "A.kvr"}));
    EXPECT_EQ(back.Get(0)->Active, 0);
    const CDischargeData& r = *back.Get(1);
    EXPECT_EQ(r.startTime.year, 2024);
    EXPECT_EQ(r.startTime.second, 9);
    EXPECT_EQ(r.endTime.minute, 30);
    for (const auto& [field, value] : ints) EXPECT_EQ(r.*field, value);
    for (const auto& [field, value] : floats) EXPECT_EQ(r.*field, value);
    for (const auto& [field, value] : doubles) EXPECT_EQ(r.*field, value);
    const int index = r.settings.FindIndex("Discharge");
    ASSERT_GE(index, 0);
    EXPECT_EQ(r.settings.ItemChild(index).GetTyped<double>("StartMeanHW", 0.0), 1.25);
    const SummaryList::Record last = LoadLastDischargeMeasurement(app);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->fileName, "A.kvr");
}

TEST_F(SummaryListFiles, DisFileJoinsTheListAndAnythingElseIsRefused) {
    const std::string dis = Write("T.dis",
        "% KVR Data File: T.kvr"
        "\n% Start Date + Time: 2024/03/05  07:08:09"
        "\n% All Track Calculations use: GPS data"
        "\n% All Flow Velocities Relative to: Bottom Track"
        "\n% English Units"
        "\n%Profile   Time ..."
        "\n%---"
        "\n      1 07:08:09.00     10.0      9.0 rest of the line"
        "\n      2 07:08:19.50     32.8     16.4 rest of the line"
        "\n%---\n%\n% Discharge Summary\n% "
        "\n% Top Q      = 35.313 (cfs)"
        "\n% Total Q    = 70.627 (cfs)"
        "\n% Left Q     = 32767 (cfs)"
        "\n% TotalArea  = 10.764 (ft2)"
        "\n% MeanVel    = 3.28 (ft/s)\n");
    SummaryList list;
    EXPECT_FALSE(AddDisFileToSummary(list, Write("x.dis", "hello\n")).ok);
    EXPECT_FALSE(AddDisFileToSummary(list, dir.File("missing.dis")).ok);
    EXPECT_EQ(list.Size(), 0);
    list.Add(Record("later", 1, 9));
    const DisReadResult read = AddDisFileToSummary(list, dis);
    ASSERT_TRUE(read.ok) << read.error;
    ASSERT_EQ(list.Size(), 2);
    const CDischargeData& r = *list.Get(0);  // 07:08 sorts before 09:00
    EXPECT_EQ(r.fileName, "T.kvr");
    EXPECT_EQ(r.Active, 1);
    EXPECT_EQ(r.startTime.day, 5);
    EXPECT_EQ(r.endTime.second, 19);
    EXPECT_EQ(r.endTime.hundredths, 50);
    EXPECT_EQ(r.ProfileCount, 2);
    EXPECT_EQ(r.TrackReference, 2);
    EXPECT_EQ(r.VelocityReference, 1);
    // Back to metric by the file's own factors: 32.8 ft / 3.2808 = 9.998 m.
    EXPECT_NEAR(r.TrackLength, 32.8 / 3.2808, 1e-4);
    EXPECT_NEAR(r.MadeGood, 16.4 / 3.2808, 1e-4);
    EXPECT_NEAR(r.TopDischarge, 1.0, 1e-4);
    EXPECT_NEAR(r.TotalDischarge, 2.0, 1e-4);
    EXPECT_EQ(r.LeftDischarge, 32767.0f);  // missing stays missing
    EXPECT_NEAR(r.Area, 1.0, 1e-4);
    EXPECT_NEAR(r.MeanVelocity, 1.0, 1e-3);
}

}  // namespace
}  // namespace rm
