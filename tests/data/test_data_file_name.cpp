// Naming and creating a new data file, with files already in a scratch folder.

#include <gtest/gtest.h>

#include <cstdio>
#include <set>

#include "data/data_file_name.h"
#include "data/test_data_file_support.h"
#include "data/user_prompt.h"

namespace rm {
namespace {

void Touch(const std::string& path) { test::WriteFileBytes(path, {}); }

std::tm LocalTime(int year, int month, int day, int hour, int minute) {
    std::tm t{};
    t.tm_year = year - 1900;
    t.tm_mon = month - 1;
    t.tm_mday = day;
    t.tm_hour = hour;
    t.tm_min = minute;
    return t;
}

TEST(DataFileName, TimedStemHasTwoDigitsForEachPartOfTheTime) {
    EXPECT_EQ(TimedStem("RIVER", LocalTime(2023, 7, 4, 9, 5)), "RIVER2307040905");
    EXPECT_EQ(TimedStem("", LocalTime(2000, 12, 31, 23, 59)), "0012312359");
}

TEST(DataFileName, NumberedNameIsTheFirstFreeOne) {
    test::ScratchDir dir;
    EXPECT_EQ(NumberedPath(dir.path(), "BANK", PathExists), dir.File("BANK.kvr"));
    Touch(dir.File("BANK.kvr"));
    EXPECT_EQ(NumberedPath(dir.path(), "BANK", PathExists), dir.File("BANK0000.kvr"));
    Touch(dir.File("BANK0000.kvr"));
    Touch(dir.File("BANK0001.kvr"));
    EXPECT_EQ(NumberedPath(dir.path() + "/", "BANK", PathExists), dir.File("BANK0002.kvr"));

    // Numbers run in four digits; when all are taken, the last one tried is used.
    const std::set<std::string> taken = {"d/X.kvr", "d/X0000.kvr", "d/X0001.kvr", "d/X0002.kvr", "d/X0003.kvr",
                                         "d/X0004.kvr", "d/X0005.kvr", "d/X0006.kvr", "d/X0007.kvr",
                                         "d/X0008.kvr", "d/X0009.kvr"};
    const auto exists = [&](const std::string& p) { return taken.count(p) > 0; };
    EXPECT_EQ(NumberedPath("d", "X", exists), "d/X0010.kvr");
    EXPECT_EQ(NumberedPath("d", "X", [](const std::string&) { return true; }), "d/X9999.kvr");
}

TEST(DataFileName, ExistingFileIsOverwrittenOnlyWhenThePersonAgrees) {
    test::ScratchDir dir;
    DataFileNameRequest request;
    request.directory = dir.path();
    request.deploymentName = "SITE";
    RecordingPrompt prompt;

    EXPECT_EQ(ChooseDataFilePath(request, prompt), dir.File("SITE.kvr"));
    EXPECT_TRUE(prompt.questions.empty());

    Touch(dir.File("SITE.kvr"));
    prompt.answerYes = true;
    EXPECT_EQ(ChooseDataFilePath(request, prompt), dir.File("SITE.kvr"));
    ASSERT_EQ(prompt.questions.size(), 1u);
    EXPECT_EQ(prompt.questions[0], "File " + dir.File("SITE.kvr") + " Already exists.\nOverwrite?");

    prompt.answerYes = false;
    prompt.savePath = dir.File("other");
    EXPECT_EQ(ChooseDataFilePath(request, prompt), dir.File("other.kvr"));
    prompt.savePath = dir.File("other.dat");
    EXPECT_EQ(ChooseDataFilePath(request, prompt), dir.File("other.dat"));
    prompt.savePath.clear();  // cancelled
    EXPECT_EQ(ChooseDataFilePath(request, prompt), "");

    // Numbering never asks.
    request.naming = FileNaming::Numbered;
    const size_t asked = prompt.questions.size();
    EXPECT_EQ(ChooseDataFilePath(request, prompt), dir.File("SITE0000.kvr"));
    EXPECT_EQ(prompt.questions.size(), asked);
}

TEST(DataFileName, TimedNameAsksWhenItExists) {
    test::ScratchDir dir;
    DataFileNameRequest request;
    request.directory = dir.path();
    request.deploymentName = "T";
    request.naming = FileNaming::Timed;
    request.localTime = LocalTime(2024, 1, 2, 3, 4);
    RecordingPrompt prompt;
    EXPECT_EQ(ChooseDataFilePath(request, prompt), dir.File("T2401020304.kvr"));
    Touch(dir.File("T2401020304.kvr"));
    prompt.answerYes = false;
    prompt.savePath.clear();
    EXPECT_EQ(ChooseDataFilePath(request, prompt), "");
    EXPECT_EQ(prompt.questions.size(), 1u);
}

TEST(DataFileName, NewFileIsCreatedEmptyOrTheFailureIsTold) {
    test::ScratchDir dir;
    RecordingPrompt prompt;
    test::WriteFileBytes(dir.File("old.kvr"), std::vector<uint8_t>(100, 1));
    std::FILE* f = OpenNewDataFile(dir.File("old.kvr"), prompt);
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(std::fputc('x', f), 'x');
    std::fclose(f);
    EXPECT_EQ(test::ReadFileBytes(dir.File("old.kvr")).size(), 1u);
    EXPECT_TRUE(prompt.messages.empty());

    const std::string missing = dir.File("no/such/folder.kvr");
    EXPECT_EQ(OpenNewDataFile(missing, prompt), nullptr);
    ASSERT_EQ(prompt.messages.size(), 1u);
    EXPECT_EQ(prompt.messages[0], "Can not initialize File: " + missing);
}

}  // namespace
}  // namespace rm
