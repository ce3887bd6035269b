#include <gtest/gtest.h>

#include <string>

#include "app/load_selection.h"

namespace rm {
namespace {

TEST(LoadSelectionGroup, SelectEveryOneIsEveryProfile) {
    EXPECT_EQ(GroupTypeFor(false, 1), LoadGroupType::EveryProfile);
    EXPECT_EQ(GroupTypeFor(false, 2), LoadGroupType::SelectEvery);
    EXPECT_EQ(GroupTypeFor(true, 1), LoadGroupType::AverageOver);
    EXPECT_EQ(GroupTypeFor(true, 5), LoadGroupType::AverageOver);
    EXPECT_EQ(static_cast<int>(LoadGroupType::SelectEvery), 0);
    EXPECT_EQ(static_cast<int>(LoadGroupType::AverageOver), 1);
    EXPECT_EQ(static_cast<int>(LoadGroupType::EveryProfile), 2);
}

TEST(LoadSelectionCount, IntegerDivisionOfTheChosenRange) {
    EXPECT_EQ(LoadCount(1, 100, 1), 100);
    EXPECT_EQ(LoadCount(1, 100, 3), 33);  // 100 / 3 = 33
    EXPECT_EQ(LoadCount(5, 14, 4), 2);    // 10 / 4 = 2
    EXPECT_EQ(LoadCount(5, 14, 11), 0);   // 10 / 11 = 0: nothing reaches the document
}

TEST(LoadSelectionMemory, PerProfileBytesByHand) {
    ProfileMemoryFacts plain;
    plain.cells = 20;
    plain.beams = 4;
    plain.gps = 1;
    plain.bottomTrack = 1;
    // 18*1 + 12 + 4*(21*4 + 2*(0 + 2*3)) + 4*20*4 + 84 = 18 + 12 + 384 + 320 + 84
    EXPECT_EQ(PerProfileMemory(plain), 818);

    ProfileMemoryFacts waves = plain;
    waves.waveBursts = true;
    waves.pseriesLength = 1024;
    waves.burstInterval = 60;
    EXPECT_EQ(PerProfileMemory(waves), 818 + 52);  // (3*1024 + 80) / 60 = 3152 / 60 = 52
    waves.burstInterval = 0;
    EXPECT_EQ(PerProfileMemory(waves), 818);

    ProfileMemoryFacts all;
    all.cells = 10;
    all.beams = 3;
    all.gps = all.ctd = all.externalSensor = all.pulseCoherent = 1;
    all.bottomTrack = 2;
    // 18*(2+2) + 12 + 4*(11*3 + 2*(1 + 2*(3+1))) + 4*10*3 + 84 = 72 + 12 + 204 + 120 + 84
    EXPECT_EQ(PerProfileMemory(all), 492);
}

TEST(LoadSelectionMemory, LimitAndItsMessage) {
    // (4,000,000 / 4) / 818 = 1,000,000 / 818 = 1222 (818 * 1223 = 1,000,414)
    EXPECT_EQ(LoadLimit(4000000, 818), 1222);
    EXPECT_EQ(LoadLimit(3, 818), 0);
    EXPECT_EQ(LoadLimitMessage(12), "Please reduce the number of profiles below   12 to meet system requirements");
    EXPECT_EQ(LoadLimitMessage(123456), "Please reduce the number of profiles below 123456 to meet system requirements");
}

TEST(LoadSelectionMemory, MeminfoSumsAvailableAndFreeSwap) {
    const std::string meminfo =
        "MemTotal:        8000000 kB\n"
        "MemFree:          100000 kB\n"
        "MemAvailable:    2000000 kB\n"
        "SwapTotal:       1000000 kB\n"
        "SwapFree:         500000 kB\n";
    EXPECT_EQ(AvailableMemoryFromMeminfo(meminfo), uint64_t{2500000} * 1024);
    EXPECT_EQ(AvailableMemoryFromMeminfo("MemAvailable: 10 kB\n"), uint64_t{10240});
    EXPECT_FALSE(AvailableMemoryFromMeminfo("MemTotal: 10 kB\n").has_value());
    EXPECT_GT(AvailableMemoryBytes(), 0u);
}

TEST(LoadSelectionFields, StartAndEndFallBackWhenOutOfRange) {
    EXPECT_EQ(StartFieldValue(0, 50), 1);
    EXPECT_EQ(StartFieldValue(51, 50), 1);
    EXPECT_EQ(StartFieldValue(50, 50), 50);
    EXPECT_EQ(EndFieldValue(0, 50), 50);
    EXPECT_EQ(EndFieldValue(51, 50), 50);
    EXPECT_EQ(EndFieldValue(7, 50), 7);
}

TEST(LoadSelectionFileSize, UnitsStepAt1024) {
    EXPECT_EQ(FileSizeText(0), "0 bytes");
    EXPECT_EQ(FileSizeText(1023), "1023 bytes");
    EXPECT_EQ(FileSizeText(1024), "1.00 kB");
    EXPECT_EQ(FileSizeText(1536), "1.50 kB");
    EXPECT_EQ(FileSizeText(1048575), "1024.00 kB");  // 1048575 / 1024 = 1023.999 rounds up in print
    EXPECT_EQ(FileSizeText(1048576), "1.00 MB");
    EXPECT_EQ(FileSizeText(uint64_t{5} << 30), "5.00 GB");
    EXPECT_EQ(FileSizeText(uint64_t{3} << 40), "3072.00 GB");
}

class LoadDialogOk : public ::testing::Test {
protected:
    LoadDialogOk() {
        facts.cells = 20;
        facts.beams = 4;
        facts.gps = 1;
        facts.bottomTrack = 1;  // 818 bytes a profile
    }
    ProfileMemoryFacts facts;
    const uint64_t plenty = uint64_t{1} << 40;
};

TEST_F(LoadDialogOk, AllProfilesTakesTheWholeFile) {
    LoadDialogResult r = ApplyLoadDialog(LoadDialogInput{}, 250, facts, plenty);
    ASSERT_TRUE(r.accepted) << r.message;
    EXPECT_EQ(r.start, 1);
    EXPECT_EQ(r.end, 250);
    EXPECT_EQ(r.step, 1);
    EXPECT_EQ(r.count, 250);
    EXPECT_EQ(r.groupType, LoadGroupType::EveryProfile);
}

TEST_F(LoadDialogOk, SelectedRangeWithAveraging) {
    LoadDialogInput in;
    in.allProfiles = false;
    in.start = 11;
    in.end = 110;
    in.averageOver = true;
    in.n = 7;
    LoadDialogResult r = ApplyLoadDialog(in, 250, facts, plenty);
    ASSERT_TRUE(r.accepted);
    EXPECT_EQ(r.groupType, LoadGroupType::AverageOver);
    EXPECT_EQ(r.count, 14);  // 100 / 7 = 14
}

TEST_F(LoadDialogOk, EndNotAboveStartIsRefusedAndEndReturnsToTheCount) {
    LoadDialogInput in;
    in.allProfiles = false;
    in.start = 40;
    in.end = 40;
    LoadDialogResult r = ApplyLoadDialog(in, 250, facts, plenty);
    EXPECT_FALSE(r.accepted);
    EXPECT_EQ(r.message, "End Profile Number must be greater than Start Profile Number");
    EXPECT_EQ(r.end, 250);
}

TEST_F(LoadDialogOk, MemoryLimitCountsTheStep) {
    // L = (32720 * 4 / 4) / 818 = 40 profiles; with N = 2 up to 80 chosen profiles pass.
    const uint64_t available = uint64_t{818} * 40 * 4;
    LoadDialogInput in;
    in.allProfiles = false;
    in.start = 1;
    in.end = 80;
    in.n = 2;
    LoadDialogResult ok = ApplyLoadDialog(in, 500, facts, available);
    EXPECT_TRUE(ok.accepted) << ok.message;
    EXPECT_EQ(ok.groupType, LoadGroupType::SelectEvery);
    EXPECT_EQ(ok.count, 40);
    in.end = 81;
    LoadDialogResult refused = ApplyLoadDialog(in, 500, facts, available);
    EXPECT_FALSE(refused.accepted);
    EXPECT_EQ(refused.message, "Please reduce the number of profiles below   40 to meet system requirements");
}

TEST_F(LoadDialogOk, StepOutsideTheFieldRangeIsRefused) {
    LoadDialogInput in;
    in.n = 0;
    EXPECT_EQ(ApplyLoadDialog(in, 10, facts, plenty).message, "Please enter an integer between 1 and 99999999.");
    in.n = 100000000;
    EXPECT_FALSE(ApplyLoadDialog(in, 10, facts, plenty).accepted);
    in.n = 99999999;
    EXPECT_TRUE(ApplyLoadDialog(in, 10, facts, plenty).accepted);
}

}  // namespace
}  // namespace rm
