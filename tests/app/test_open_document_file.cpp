// OpenDocumentFile: the checks before the load dialog, the dialog's answer reaching the
// document (every N-th profile, the mean of N), a refused OK, and Cancel.

#include <gtest/gtest.h>

#include <fstream>

#include "app/open_document_file.h"
#include "document_test_support.h"

namespace rm {
namespace {

using doctest::RecordRiver;
using doctest::TestApp;

constexpr uint64_t kPlentyOfMemory = uint64_t{1} << 34;

class OpenFile : public ::testing::Test {
protected:
    void SetUp() override { RecordRiver(path, 30); }

    std::unique_ptr<CSurveyKVRDoc> Open(const LoadDialogRunner& dialog, LoadFields* fields = nullptr) {
        return OpenDocumentFile(path, t.app, t.prompt, dialog, CSurveyKVRDoc::Options{}, fields, kPlentyOfMemory);
    }

    TestApp t;
    std::string path = t.folder.File("SEL.kvr");
    std::vector<LoadDialogInfo> shown;
};

TEST_F(OpenFile, AFileThatIsNotARecordingIsRefusedBeforeTheDialog) {
    const std::string junk = t.folder.File("JUNK.kvr");
    std::ofstream(junk, std::ios::binary) << std::string(300, '\x01');
    bool asked = false;
    auto doc = OpenDocumentFile(junk, t.app, t.prompt, [&](const LoadDialogInfo&) {
        asked = true;
        return std::optional<LoadDialogInput>(LoadDialogInput{});
    });
    EXPECT_EQ(doc, nullptr);
    EXPECT_FALSE(asked);
    EXPECT_EQ(t.prompt.messages, std::vector<std::string>{"The file is not a valid Kvr file"});

    t.prompt.messages.clear();
    EXPECT_EQ(OpenDocumentFile(t.folder.File("MISSING.kvr"), t.app, t.prompt,
                               [](const LoadDialogInfo&) { return std::optional<LoadDialogInput>(); }),
              nullptr);
    EXPECT_TRUE(t.prompt.messages.empty());
}

TEST_F(OpenFile, TheDialogShowsTheFileAndCancelOpensNothing) {
    auto doc = Open([&](const LoadDialogInfo& info) {
        shown.push_back(info);
        return std::optional<LoadDialogInput>();
    });
    EXPECT_EQ(doc, nullptr);
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(shown[0].caption, "FileName: " + path);
    EXPECT_EQ(shown[0].profileCount, 30);
    EXPECT_EQ(shown[0].facts.cells, 20);
    EXPECT_EQ(shown[0].facts.beams, 4);
    EXPECT_TRUE(t.prompt.messages.empty());
}

TEST_F(OpenFile, TheDialogsSelectionReachesTheDocument) {
    const struct {
        bool average;
        int start, n, count, firstOfItem2, lastOfItem2;
        LoadGroupType type;
    } cases[] = {
        // Every 3rd from 4: ((30 - 4 + 1) / 3 - 1) + 1 = 9 profiles, 4, 7, ..., 28.
        {false, 4, 3, 9, 7, 7, LoadGroupType::SelectEvery},
        // The mean of 5: 30 / 5 = 6 items, the second of profiles 6 to 10.
        {true, 1, 5, 6, 6, 10, LoadGroupType::AverageOver},
    };
    for (const auto& c : cases) {
        LoadFields fields;
        auto doc = Open(
            [&](const LoadDialogInfo&) {
                LoadDialogInput in;
                in.allProfiles = c.start == 1;
                in.start = c.start;
                in.end = 30;
                in.averageOver = c.average;
                in.n = c.n;
                return std::optional<LoadDialogInput>(in);
            },
            &fields);
        ASSERT_NE(doc, nullptr);
        EXPECT_EQ(fields.count, c.count);
        EXPECT_EQ(fields.groupType, c.type);
        EXPECT_EQ(doc->ProfileCount(), c.count);
        EXPECT_EQ(doc->Measurement().ProfileCount, c.count);
        EXPECT_EQ(doc->Source().FirstFileProfile(2), c.firstOfItem2);
        EXPECT_EQ(doc->Source().LastFileProfile(2), c.lastOfItem2);
        EXPECT_EQ(doc->Data().Averaging(), c.average);
        if (c.average) continue;
        CKvrData file;  // the last item of every 3rd is the file's profile 28
        ASSERT_TRUE(file.OpenFile(path));
        ASSERT_EQ(file.ReadHeader(false), kReadOk);
        ASSERT_EQ(file.LoadProfile(27, 0), kReadOk);
        EXPECT_EQ(doc->Data().Slot(8).header.profileNumber, file.Slot(0).header.profileNumber);
    }
}

TEST_F(OpenFile, ARefusedOkAsksAgainWithTheMessage) {
    auto doc = Open([&](const LoadDialogInfo& info) {
        shown.push_back(info);
        LoadDialogInput in;
        in.allProfiles = false;
        in.start = 10;
        in.end = shown.size() == 1 ? 10 : 20;
        return std::optional<LoadDialogInput>(in);
    });
    ASSERT_NE(doc, nullptr);
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[1].refusal, "End Profile Number must be greater than Start Profile Number");
    EXPECT_EQ(shown[1].input.end, 30);
    EXPECT_EQ(t.prompt.messages, std::vector<std::string>{"End Profile Number must be greater than Start Profile Number"});
    EXPECT_EQ(doc->ProfileCount(), 11);
}

}  // namespace
}  // namespace rm
