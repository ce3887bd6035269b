// The application's list of finished measurements: order, rows, deleting, reading .dis files
// and keeping the list in AppSettings.conf.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "app/summary_list.h"
#include "app/summary_list_store.h"

namespace rm {
namespace {

namespace fs = std::filesystem;

std::shared_ptr<CDischargeData> Record(const std::string& name, int day, int hour, int minute) {
    auto r = std::make_shared<CDischargeData>();
    r->fileName = name;
    r->Active = 1;
    r->startTime.day = static_cast<uint8_t>(day);
    r->startTime.hour = static_cast<uint8_t>(hour);
    r->startTime.minute = static_cast<uint8_t>(minute);
    return r;
}

TEST(SummaryListOrder, SortedByTimeOfDayWhateverTheDate) {
    SummaryList list;
    list.Add(Record("day1-10h", 1, 10, 0));
    list.Add(Record("day2-09h", 2, 9, 0));
    list.Add(Record("day1-11h", 1, 11, 0));
    list.Add(Record("day2-09h-again", 2, 9, 0));  // same key: stays after the first
    ASSERT_EQ(list.Size(), 4);
    EXPECT_EQ(list.Get(0)->fileName, "day2-09h");
    EXPECT_EQ(list.Get(1)->fileName, "day2-09h-again");
    EXPECT_EQ(list.Get(2)->fileName, "day1-10h");
    EXPECT_EQ(list.Get(3)->fileName, "day1-11h");
    EXPECT_EQ(list.Get(4), nullptr);
    EXPECT_EQ(list.Get(-1), nullptr);
    list.Add(nullptr);
    EXPECT_EQ(list.Size(), 4);
}

TEST(SummaryListRows, RowsCountOnlyActiveRecords) {
    SummaryList list;
    list.Add(Record("a", 1, 8, 0));
    list.Add(Record("b", 1, 9, 0));
    list.Add(Record("c", 1, 10, 0));
    list.Get(1)->Active = 0;
    EXPECT_EQ(list.RowCount(), 2);
    EXPECT_EQ(list.GetByRow(1)->fileName, "c");
    EXPECT_EQ(list.GetByRow(2), nullptr);
}

TEST(SummaryListDelete, SecondRowOfTheSameNameDeletesTheFirstRecord) {
    SummaryList list;
    list.Add(Record("same.kvr", 1, 8, 0));
    list.Add(Record("same.kvr", 1, 9, 0));
    list.DeleteRows({1});
    EXPECT_EQ(list.Get(0)->Active, 0);
    EXPECT_EQ(list.Get(1)->Active, 1);
    EXPECT_EQ(list.Size(), 2);  // never destroyed
    list.DeleteAll();
    EXPECT_EQ(list.RowCount(), 0);
    EXPECT_EQ(list.Size(), 2);
    EXPECT_FALSE(list.DeleteByName("same.kvr"));
}

TEST(SummaryListRemoval, ActiveRecordWithoutNameIsDropped) {
    SummaryList list;
    list.Add(Record("", 1, 8, 0));
    auto inactive = Record("", 1, 9, 0);
    inactive->Active = 0;
    list.Add(inactive);
    list.Add(Record("kept", 1, 10, 0));
    list.RemoveNameless();
    ASSERT_EQ(list.Size(), 2);
    EXPECT_EQ(list.Get(0)->Active, 0);
    EXPECT_EQ(list.Get(1)->fileName, "kept");
}

class SummaryListFiles : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("rm_summary_" + std::to_string(::getpid()) + "_" +
                                            ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_);
        folders_ = UserFolders{(dir_ / "config").string(), (dir_ / "docs").string()};
    }
    void TearDown() override { fs::remove_all(dir_); }
    std::string Write(const std::string& name, const std::string& text) {
        const std::string path = (dir_ / name).string();
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    fs::path dir_;
    UserFolders folders_;
};

TEST_F(SummaryListFiles, ListSurvivesAppSettingsRoundTrip) {
    SummaryList list;
    auto a = Record("A.kvr", 5, 7, 8);
    a->startTime.year = 2024;
    a->startTime.month = 3;
    a->startTime.second = 9;
    a->endTime = a->startTime;
    a->endTime.minute = 30;
    a->ProfileCount = 321;
    a->TrackReference = 2;
    a->DepthReference = 1;
    a->ShallowWaterPing = 1;
    a->ExcludeFromStatistics = 1;
    a->TotalDischarge = 12.345f;  // not exact in decimal: must come back bit for bit
    a->MadeGood = 0.1f;
    a->Area = 98.765;
    a->TrackLength = 1.0 / 3.0;
    a->settings = NodeRef::MakeNew();
    a->settings.GetOrCreateChild("Discharge").SetValue("StartMeanHW", Variant(1.25));
    auto b = Record("B.kvr", 6, 6, 0);
    b->Active = 0;
    list.Add(a);
    list.Add(b);
    {
        AppSettings app(folders_);
        StoreSummaryList(list, a.get(), app);
        RecordingPrompt prompt;
        ASSERT_TRUE(app.SaveAppSettings(prompt));
    }
    AppSettings app(folders_);
    ASSERT_TRUE(app.LoadAppSettings());
    SummaryList back;
    EXPECT_EQ(LoadSummaryList(back, app), 2);
    ASSERT_EQ(back.Size(), 2);
    const CDischargeData& r = *back.Get(1);
    EXPECT_EQ(back.Get(0)->fileName, "B.kvr");
    EXPECT_EQ(back.Get(0)->Active, 0);
    EXPECT_EQ(r.fileName, "A.kvr");
    EXPECT_EQ(r.startTime.year, 2024);
    EXPECT_EQ(r.startTime.second, 9);
    EXPECT_EQ(r.endTime.minute, 30);
    EXPECT_EQ(r.ProfileCount, 321);
    EXPECT_EQ(r.TrackReference, 2);
    EXPECT_EQ(r.DepthReference, 1);
    EXPECT_EQ(r.ShallowWaterPing, 1);
    EXPECT_EQ(r.ExcludeFromStatistics, 1);
    EXPECT_EQ(r.TotalDischarge, 12.345f);
    EXPECT_EQ(r.MadeGood, 0.1f);
    EXPECT_EQ(r.Area, 98.765);
    EXPECT_EQ(r.TrackLength, 1.0 / 3.0);
    const int index = r.settings.FindIndex("Discharge");
    ASSERT_GE(index, 0);
    EXPECT_EQ(r.settings.ItemChild(index).GetTyped<double>("StartMeanHW", 0.0), 1.25);
    const SummaryList::Record last = LoadLastDischargeMeasurement(app);
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->fileName, "A.kvr");
}

TEST_F(SummaryListFiles, NothingStoredGivesAnEmptyList) {
    AppSettings app(folders_);
    SummaryList list;
    EXPECT_EQ(LoadSummaryList(list, app), 0);
    EXPECT_EQ(LoadLastDischargeMeasurement(app), nullptr);
}

TEST_F(SummaryListFiles, DisFileJoinsTheList) {
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
    list.Add(Record("later", 1, 9, 0));
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

TEST_F(SummaryListFiles, FileThatIsNoDisFileIsRefused) {
    SummaryList list;
    EXPECT_FALSE(AddDisFileToSummary(list, Write("x.dis", "hello\n")).ok);
    EXPECT_FALSE(AddDisFileToSummary(list, (dir_ / "missing.dis").string()).ok);
    EXPECT_EQ(list.Size(), 0);
}

}  // namespace
}  // namespace rm
