// The load dialog's arithmetic: group type and count of the chosen range, memory per profile
// and the limit it sets, the memory the system has, the fields' fallbacks, and OK.

#include <gtest/gtest.h>

#include <string>

#include "app/load_selection.h"

namespace rm {
namespace {

TEST(LoadSelection, GroupTypeAndCountOfTheChosenRange) {
    EXPECT_EQ(GroupTypeFor(false, 1), LoadGroupType::EveryProfile);
    EXPECT_EQ(GroupTypeFor(false, 2), LoadGroupType::SelectEvery);
    EXPECT_EQ(GroupTypeFor(true, 1), LoadGroupType::AverageOver);
    EXPECT_EQ(GroupTypeFor(true, 5), LoadGroupType::AverageOver);
    EXPECT_EQ(static_cast<int>(LoadGroupType::SelectEvery), 0);
    EXPECT_EQ(static_cast<int>(LoadGroupType::AverageOver), 1);
    EXPECT_EQ(static_cast<int>(LoadGroupType::EveryProfile), 2);
    // Integer division of the range by the step.
    const struct {
        int start, end, n, count;
    } counts[] = {{1, 100, 1, 100}, {1, 100, 3, 33}, {5, 14, 4, 2}, {5, 14, 11, 0}};
    for (const auto& c : counts) EXPECT_EQ(LoadCount(c.start, c.end, c.n), c.count) << c.end << "/" << c.n;
    // The fields fall back when out of range.
    EXPECT_EQ(StartFieldValue(0, 50), 1);
    EXPECT_EQ(StartFieldValue(51, 50), 1);
    EXPECT_EQ(StartFieldValue(50, 50), 50);
    EXPECT_EQ(EndFieldValue(0, 50), 50);
    EXPECT_EQ(EndFieldValue(51, 50), 50);
    EXPECT_EQ(EndFieldValue(7, 50), 7);
}

TEST(LoadSelection, MemoryPerProfileAndItsLimitByHand) {
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

    // (4,000,000 / 4) / 818 = 1,000,000 / 818 = 1222 (818 * 1223 = 1,000,414)
    EXPECT_EQ(LoadLimit(4000000, 818), 1222);
    EXPECT_EQ(LoadLimit(3, 818), 0);
    EXPECT_EQ(LoadLimitMessage(12), "Please reduce the number of profiles below   12 to meet system requirements");
    EXPECT_EQ(LoadLimitMessage(123456), "Please reduce the number of profiles below 123456 to meet system requirements");

    const std::string meminfo =
        "MemTotal:        8000000 kB\nMemFree:          100000 kB\nMemAvailable:    2000000 kB\n"
        "SwapTotal:       1000000 kB\nSwapFree:         500000 kB\n";
    EXPECT_EQ(AvailableMemoryFromMeminfo(meminfo), uint64_t{2500000} * 1024);  // available + free swap
    EXPECT_EQ(AvailableMemoryFromMeminfo("MemAvailable: 10 kB\n"), uint64_t{10240});
    EXPECT_FALSE(AvailableMemoryFromMeminfo("MemTotal: 10 kB\n").has_value());
    EXPECT_GT(AvailableMemoryBytes(), 0u);
}

TEST(LoadSelection, OkAcceptsOrRefusesWithTheDialogsWords) {
    ProfileMemoryFacts facts;
    facts.cells = 20;
    facts.beams = 4;
    facts.gps = 1;
    facts.bottomTrack = 1;  // 818 bytes a profile
    const uint64_t plenty = uint64_t{1} << 40;
    const uint64_t forty = uint64_t{818} * 40 * 4;  // (32720 * 4 / 4) / 818 = 40 profiles
    const auto input = [](bool all, int start, int end, int n, bool average = false) {
        LoadDialogInput in;
        in.allProfiles = all;
        in.start = start;
        in.end = end;
        in.n = n;
        in.averageOver = average;
        return in;
    };
    const char* kEndNotAbove = "End Profile Number must be greater than Start Profile Number";
    const char* kStepRange = "Please enter an integer between 1 and 99999999.";
    const struct {
        LoadDialogInput in;
        int profiles;
        uint64_t memory;
        bool accepted;
        int count;  // or the end field after a refusal
        LoadGroupType type;
        const char* message;
    } cases[] = {
        {LoadDialogInput{}, 250, plenty, true, 250, LoadGroupType::EveryProfile, ""},
        {input(false, 11, 110, 7, true), 250, plenty, true, 14, LoadGroupType::AverageOver, ""},  // 100 / 7
        {input(false, 40, 40, 1), 250, plenty, false, 250, LoadGroupType::EveryProfile, kEndNotAbove},
        // With N = 2 up to 80 chosen profiles fit the limit of 40.
        {input(false, 1, 80, 2), 500, forty, true, 40, LoadGroupType::SelectEvery, ""},
        {input(false, 1, 81, 2), 500, forty, false, 81, LoadGroupType::SelectEvery,
         "Please reduce the number of profiles below   40 to meet system requirements"},
        {input(true, 1, 10, 0), 10, plenty, false, 10, LoadGroupType::EveryProfile, kStepRange},
        {input(true, 1, 10, 100000000), 10, plenty, false, 10, LoadGroupType::EveryProfile, kStepRange},
        {input(true, 1, 10, 99999999), 10, plenty, true, 0, LoadGroupType::SelectEvery, ""},
    };
    for (const auto& c : cases) {
        const LoadDialogResult r = ApplyLoadDialog(c.in, c.profiles, facts, c.memory);
        const std::string what = std::to_string(c.in.start) + ".." + std::to_string(c.in.end) + " n " +
                                 std::to_string(c.in.n);
        EXPECT_EQ(r.accepted, c.accepted) << what << ": " << r.message;
        EXPECT_EQ(r.message, c.message) << what;
        if (c.accepted) {
            EXPECT_EQ(r.count, c.count) << what;
            EXPECT_EQ(r.groupType, c.type) << what;
        } else if (c.message == kEndNotAbove) {
            EXPECT_EQ(r.end, c.count) << what;  // the end field returns to the count
        }
    }
    const LoadDialogResult all = ApplyLoadDialog(LoadDialogInput{}, 250, facts, plenty);
    EXPECT_EQ(all.start, 1);
    EXPECT_EQ(all.end, 250);
    EXPECT_EQ(all.step, 1);
}

}  // namespace
}  // namespace rm
