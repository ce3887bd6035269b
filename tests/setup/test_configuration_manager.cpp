// Saved configurations: listing, saving and loading by name with their messages, the overwrite
// question, configurations that break the rules, and damaged or hostile files.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include "setup/configuration_manager.h"
#include "setup_test_tree.h"

namespace rm {
namespace {

namespace fs = std::filesystem;
using setup_test::Set;
using setup_test::TreeText;
using setup_test::ValidSystem;

class ConfigurationManagerTest : public ::testing::Test {
protected:
    void SetUp() override {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    std::string Folder() const { return folder_.string() + "/"; }
    std::string PathOf(const std::string& title) const { return Folder() + title + ".scf"; }

    void WriteBytes(const std::string& title, const std::string& bytes) const {
        std::ofstream(PathOf(title), std::ios::binary) << bytes;
    }
    std::string ReadBytes(const std::string& title) const {
        std::ifstream in(PathOf(title), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    // Loads `title` into a valid setup and expects the refusal with the system untouched.
    void ExpectLoadRefused(const std::string& title) {
        const NodeRef system = ValidSystem();
        const std::string before = TreeText(system);
        RecordingPrompt loadPrompt;
        EXPECT_FALSE(ConfigurationManager(Folder(), loadPrompt).Load(title, system)) << title;
        ASSERT_EQ(loadPrompt.messages.size(), 1u);
        EXPECT_EQ(loadPrompt.messages[0], "Unable to load configuration file: " + title);
        EXPECT_EQ(TreeText(system), before);
    }

    const fs::path folder_ = fs::path(::testing::TempDir()) /
                             ("rm_setup_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    // Most tests work through one manager of the folder and read its messages.
    RecordingPrompt prompt;
    ConfigurationManager manager{Folder(), prompt};
};

TEST_F(ConfigurationManagerTest, ListsTitlesOfScfFilesOnly) {
    EXPECT_TRUE(manager.List().empty());
    EXPECT_TRUE(ConfigurationManager(Folder() + "missing", prompt).List().empty());

    const NodeRef system = ValidSystem();
    ASSERT_TRUE(manager.Save("bridge", system));
    ASSERT_TRUE(manager.Save("Alder Creek", system));
    ASSERT_TRUE(manager.Save("Weir", system));
    std::ofstream(folder_ / "notes.txt") << "x";
    std::ofstream(folder_ / "shouting.SCF") << "x";  // the extension is matched as written
    fs::create_directory(folder_ / "folder.scf");
    EXPECT_EQ(manager.List(), (std::vector<std::string>{"Alder Creek", "bridge", "Weir"}));
    EXPECT_TRUE(prompt.messages.empty());
}

TEST_F(ConfigurationManagerTest, SaveAndLoadRoundTripOtherAndSetup) {
    const NodeRef saved = ValidSystem();
    Set(saved, "Setup", "DeploymentName", Variant("WEIR"));
    Set(saved, "Setup", "CommentLine1", Variant("upstream of the gauge"));
    Set(saved, "Other", "MagneticDeclination", Variant(-3.75));
    ASSERT_TRUE(manager.Save("Station 12", saved));
    EXPECT_TRUE(fs::exists(PathOf("Station 12")));

    const NodeRef loaded = ValidSystem(2);
    Set(loaded, "Setup", "DeploymentName", Variant("OTHER"));
    const std::string confBefore = TreeText(loaded.GetChildByName("Conf"));
    ASSERT_TRUE(manager.Load("Station 12", loaded));
    ASSERT_EQ(prompt.messages.size(), 1u);
    EXPECT_EQ(prompt.messages[0], "Configuration file: Station 12 has been loaded.");
    EXPECT_EQ(TreeText(loaded.GetChildByName("Setup")), TreeText(saved.GetChildByName("Setup")));
    EXPECT_EQ(TreeText(loaded.GetChildByName("Other")), TreeText(saved.GetChildByName("Other")));
    // What the file does not hold stays as it was.
    EXPECT_EQ(TreeText(loaded.GetChildByName("Conf")), confBefore);

    // The file holds the two nodes, `Other` first.
    const NodeRef file = NodeRef::MakeNew();
    ASSERT_TRUE(LoadTreeFile(file, PathOf("Station 12")));
    ASSERT_EQ(file.ItemCount(), 2);
    EXPECT_EQ(file.ItemName(0), "Other");
    EXPECT_EQ(file.ItemName(1), "Setup");
}

// Loading applies no rule: a configuration that breaks one arrives whole, and the nodes the
// system lacks are appended.
TEST_F(ConfigurationManagerTest, LoadAppendsNodesAndChecksNoRule) {
    const NodeRef saved = ValidSystem();
    Set(saved, "Setup", "NumberOfCells", Variant(int16_t{200}));  // the instrument allows 128
    ASSERT_TRUE(manager.Save("too many cells", saved));
    const NodeRef empty = NodeRef::MakeNew();
    ASSERT_TRUE(manager.Load("too many cells", empty));
    EXPECT_GE(empty.FindIndex("Setup"), 0);
    EXPECT_GE(empty.FindIndex("Other"), 0);
    EXPECT_EQ(empty.GetChildByName("Setup").GetTyped<int16_t>("NumberOfCells", 0), 200);
}

TEST_F(ConfigurationManagerTest, FileWithoutOtherKeepsTheCurrentOther) {
    const NodeRef file = NodeRef::MakeNew();
    const NodeRef setup = file.GetOrCreateChild("Setup");
    setup.SetValue("DeploymentName", Variant("ONLY"));
    ASSERT_TRUE(SaveTreeFile(file, PathOf("setup only")));

    const NodeRef system = ValidSystem();
    const NodeRef otherBefore = system.GetChildByName("Other");
    ASSERT_TRUE(manager.Load("setup only", system));
    EXPECT_TRUE(system.GetChildByName("Other").SameNode(otherBefore));
    EXPECT_EQ(system.GetChildByName("Setup").GetTyped<std::string>("DeploymentName", ""), "ONLY");
}

TEST_F(ConfigurationManagerTest, OverwriteAsksAndNoChangesNothing) {
    const NodeRef first = ValidSystem();
    ASSERT_TRUE(manager.Save("site", first));
    const std::string original = ReadBytes("site");

    const NodeRef second = ValidSystem();
    Set(second, "Setup", "DeploymentName", Variant("NEW"));
    prompt.answerYes = false;
    EXPECT_FALSE(manager.Save("site", second));
    ASSERT_EQ(prompt.questions.size(), 1u);
    EXPECT_EQ(prompt.questions[0], "File " + PathOf("site") + " Already exists.\nOverwrite?");
    EXPECT_EQ(ReadBytes("site"), original);
    EXPECT_TRUE(prompt.messages.empty());

    prompt.answerYes = true;
    EXPECT_TRUE(manager.Save("site", second));
    EXPECT_NE(ReadBytes("site"), original);
    const NodeRef loaded = NodeRef::MakeNew();
    ASSERT_TRUE(manager.Load("site", loaded));
    EXPECT_EQ(loaded.GetChildByName("Setup").GetTyped<std::string>("DeploymentName", ""), "NEW");
}

TEST_F(ConfigurationManagerTest, MissingDamagedOrForeignFilesAreRefusedAndChangeNothing) {
    ExpectLoadRefused("gone");
    ExpectLoadRefused("../escape");  // a title that would lead out of the folder
    WriteBytes("empty", "");
    ExpectLoadRefused("empty");
    WriteBytes("garbage", std::string("\xff\xff\xff\x7f not a tree at all", 22));
    ExpectLoadRefused("garbage");
    ASSERT_TRUE(manager.Save("whole", ValidSystem()));
    const std::string whole = ReadBytes("whole");
    for (size_t keep : {size_t{3}, whole.size() / 2, whole.size() - 1}) {
        WriteBytes("cut", whole.substr(0, keep));
        ExpectLoadRefused("cut");
    }
    // Well-formed trees that are no configuration: neither child, `Setup` as a plain value, a
    // number stored as text that does not read as a number.
    const NodeRef stranger = NodeRef::MakeNew(), leaf = NodeRef::MakeNew(), wrongType = NodeRef::MakeNew();
    stranger.GetOrCreateChild("General").SetValue("Unit System", Variant(int16_t{1}));
    leaf.SetValue("Setup", Variant("flat"));
    wrongType.GetOrCreateChild("Setup").SetValue("NumberOfCells", Variant("twenty"));
    for (const auto& [title, tree] : {std::pair{"stranger", stranger}, {"leaf", leaf}, {"wrong type", wrongType}}) {
        ASSERT_TRUE(SaveTreeFile(tree, PathOf(title)));
        ExpectLoadRefused(title);
    }
}

TEST_F(ConfigurationManagerTest, SaveFailuresLeaveNoFile) {
    EXPECT_FALSE(manager.Save("", ValidSystem()));
    EXPECT_FALSE(manager.Save("sub/name", ValidSystem()));
    ASSERT_EQ(prompt.messages.size(), 2u);
    EXPECT_EQ(prompt.messages[0], "Error saving configuration.");
    EXPECT_TRUE(manager.List().empty());

    // The folder is a file: nothing can be written there.
    WriteBytes("blocker", "x");
    RecordingPrompt blockedPrompt;
    ConfigurationManager blocked(PathOf("blocker"), blockedPrompt);
    EXPECT_FALSE(blocked.Save("site", ValidSystem()));
    ASSERT_EQ(blockedPrompt.messages.size(), 1u);
    EXPECT_EQ(blockedPrompt.messages[0], "Error saving configuration.");
    EXPECT_EQ(ReadBytes("blocker"), "x");
}

TEST_F(ConfigurationManagerTest, SaveMakesAMissingFolder) {
    ConfigurationManager deeper(Folder() + "new/deeper", prompt);
    EXPECT_TRUE(deeper.Save("site", ValidSystem()));
    EXPECT_EQ(deeper.List(), std::vector<std::string>{"site"});
}

TEST_F(ConfigurationManagerTest, DeleteRemovesTheFile) {
    ASSERT_TRUE(manager.Save("old", ValidSystem()));
    EXPECT_TRUE(manager.Delete("old"));
    EXPECT_TRUE(manager.List().empty());
    EXPECT_FALSE(manager.Delete("old"));
    ASSERT_EQ(prompt.messages.size(), 1u);
    EXPECT_EQ(prompt.messages[0], "Unable to delete configuration file: old");
}

}  // namespace
}  // namespace rm
