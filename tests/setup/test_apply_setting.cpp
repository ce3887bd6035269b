// Applying "Node/Key=Value" texts: stored when every rule passes, refused with the rule's text
// and the tree left exactly as it was otherwise; several values at once for dependent rules.

#include <gtest/gtest.h>

#include <string>

#include "setup/apply_setting.h"
#include "setup_test_tree.h"

namespace rm {
namespace {

using setup_test::Set;
using setup_test::TreeText;
using setup_test::ValidSystem;

Variant Stored(const NodeRef& system, const char* node, const char* key) {
    const NodeRef child = system.GetChildByName(node);
    return child.ItemValue(child.FindIndex(key));
}

// Applies and expects a refusal that leaves the tree unchanged; returns the result.
ApplyResult ExpectRefusedUnchanged(const NodeRef& system, const std::vector<std::string>& assignments) {
    const std::string before = TreeText(system);
    const ApplyResult result = ApplySettings(system, assignments);
    EXPECT_FALSE(result.applied);
    EXPECT_FALSE(result.message.empty());
    EXPECT_EQ(TreeText(system), before);
    return result;
}

TEST(ApplySetting, StoresValuesWithTheKeysOwnType) {
    const NodeRef system = ValidSystem();
    EXPECT_TRUE(ApplySetting(system, "Setup/NumberOfCells=25").applied);
    EXPECT_EQ(Stored(system, "Setup", "NumberOfCells"), Variant(int16_t{25}));
    EXPECT_TRUE(ApplySetting(system, "UserTemperature=12.5").applied);
    EXPECT_EQ(Stored(system, "Setup", "UserTemperature"), Variant(12.5));
    EXPECT_TRUE(ApplySetting(system, "Other/MagneticDeclination=-4.25").applied);
    EXPECT_EQ(Stored(system, "Other", "MagneticDeclination"), Variant(-4.25));
    EXPECT_TRUE(ApplySetting(system, "MagneticDeclination=400").applied);  // out of range, yet stored
    EXPECT_EQ(Stored(system, "Other", "MagneticDeclination"), Variant(400.0));
    EXPECT_TRUE(ApplySetting(system, "Options/BottomTrack=0").applied);
    EXPECT_EQ(Stored(system, "Options", "BottomTrack"), Variant(uint8_t{0}));
    // Key and node match without regard to case; text keeps everything after the first '='.
    EXPECT_TRUE(ApplySetting(system, "setup/numberofcells=26").applied);
    EXPECT_EQ(Stored(system, "Setup", "NumberOfCells"), Variant(int16_t{26}));
    EXPECT_TRUE(ApplySetting(system, "Setup/CommentLine1=a=b, c").applied);
    EXPECT_EQ(Stored(system, "Setup", "CommentLine1"), Variant("a=b, c"));
}

TEST(ApplySetting, RefusedByARuleLeavesTheTreeAsItWas) {
    const NodeRef system = ValidSystem();
    ApplyResult result = ExpectRefusedUnchanged(system, {"Setup/NumberOfCells=129"});
    EXPECT_EQ(result.key, "NumberOfCells");
    EXPECT_EQ(result.rule, "NumberOfCells");
    EXPECT_EQ(result.message, "Number of cells should be between 1 and 128.");

    // A key that was missing is not left behind either.
    ASSERT_LT(system.GetChildByName("Other").FindIndex("EchoSounderMountingDepthInCm"), 0);
    result = ExpectRefusedUnchanged(system, {"EchoSounderMountingDepthInCm=900"});
    EXPECT_EQ(result.rule, "EchoSounderMountingDepthInCm");
    // Nor a missing node.
    const NodeRef empty = NodeRef::MakeNew();
    result = ExpectRefusedUnchanged(empty, {"Setup/DeploymentName="});
    EXPECT_EQ(result.message, "The file name must not be left blank.");
    EXPECT_EQ(empty.ItemCount(), 0);
}

TEST(ApplySetting, CellLayoutChangesAreCheckedAgainstTheRange) {
    const NodeRef system = ValidSystem(0);  // 20 cells of 20 cm behind 30 cm: 4.4 m
    // 28 cells: 28.5 x 20 + 30 = 600 cm, on the limit; 29 cells are 620 cm.
    EXPECT_TRUE(ApplySetting(system, "NumberOfCells=28").applied);
    ApplyResult result = ExpectRefusedUnchanged(system, {"NumberOfCells=29"});
    EXPECT_EQ(result.rule, "ProfilingRange");
    result = ExpectRefusedUnchanged(system, {"BlankingDistanceInCm=31"});
    EXPECT_EQ(result.rule, "ProfilingRange");
    result = ExpectRefusedUnchanged(system, {"CellSizInCm=20"});
    EXPECT_EQ(result.rule, "");
    // Far past the absolute range the absolute test speaks first.
    result = ExpectRefusedUnchanged(system, {"CellSizeInCm=30"});
    EXPECT_EQ(result.rule, "AbsoluteProfilingRange");
    // Several together: fewer, larger cells.
    EXPECT_TRUE(ApplySettings(system, {"NumberOfCells=10", "CellSizeInCm=50"}).applied);
    EXPECT_EQ(Stored(system, "Setup", "CellSizeInCm"), Variant(int16_t{50}));
}

TEST(ApplySetting, DependentIntervalsChangeTogether) {
    const NodeRef system = ValidSystem();  // averaging 10, profiling 10, bottom track on
    ApplyResult result = ExpectRefusedUnchanged(system, {"AveragingInterval=30"});
    EXPECT_EQ(result.rule, "ProfilingInterval");
    EXPECT_EQ(result.key, "AveragingInterval");
    EXPECT_EQ(ExpectRefusedUnchanged(system, {"ProfilingInterval=30"}).rule, "ProfilingInterval");

    EXPECT_TRUE(ApplySettings(system, {"AveragingInterval=30", "ProfilingInterval=35"}).applied);
    EXPECT_EQ(Stored(system, "Setup", "AveragingInterval"), Variant(int16_t{30}));
    EXPECT_EQ(Stored(system, "Setup", "ProfilingInterval"), Variant(int16_t{35}));

    // Switching bottom track on again is checked against the intervals.
    EXPECT_TRUE(ApplySettings(system, {"BottomTrack=0", "ProfilingInterval=60"}).applied);
    result = ExpectRefusedUnchanged(system, {"BottomTrack=1"});
    EXPECT_EQ(result.rule, "ProfilingInterval");

    // One refused value takes the others of the batch back too.
    ExpectRefusedUnchanged(system, {"UserTemperature=20", "UserSalinity=70"});
    ExpectRefusedUnchanged(system, {"UserTemperature=20", "NumberOfCells=0"});
}

TEST(ApplySetting, FieldLimitsComeBeforeTheRules) {
    const NodeRef system = ValidSystem();
    ApplyResult result = ExpectRefusedUnchanged(system, {"UserSalinity=60.5"});
    EXPECT_EQ(result.message, "Water Salinity out of range.\nValue must be between 0 and 60");
    EXPECT_EQ(result.rule, "");
    EXPECT_TRUE(ApplySetting(system, "UserSalinity=60").applied);

    result = ExpectRefusedUnchanged(system, {"AveragingInterval=4"});
    EXPECT_EQ(result.message, "Averaging Interval out of range.\nValue must be between 5.0 and 43200 (s)");
    Set(system, "Setup", "PCMode", Variant(uint8_t{1}));
    EXPECT_TRUE(ApplySettings(system, {"AveragingInterval=4", "ProfilingInterval=10"}).applied);

    result = ExpectRefusedUnchanged(system, {"CoordinateSystem=3"});
    EXPECT_EQ(result.message, "CoordinateSystem must be between 0 and 2.");
    EXPECT_TRUE(ApplySetting(system, "CoordinateSystem=2").applied);
    ExpectRefusedUnchanged(system, {"BottomTrack=3"});
    ExpectRefusedUnchanged(system, {"UnitSystem=2"});
}

TEST(ApplySetting, MalformedOrForeignSettingsAreRefusedWithAReason) {
    const NodeRef system = ValidSystem();
    const struct {
        const char* text;
        const char* part;  // a piece of the reason
    } cases[] = {
        {"NumberOfCells", "Node/Key=Value"},
        {"Setup/Bogus=1", "Unknown setup key"},
        {"Other/NumberOfCells=5", "Setup node"},
        {"MaxNumberOfCells=500", "told by the instrument"},
        {"Conf/SystemFreq=1", "told by the instrument"},
        {"PCMode=1", "told by the instrument"},
        {"NumberOfCells=abc", "Not a valid value"},
        {"NumberOfCells=", "Not a valid value"},
        {"NumberOfCells=3.5", "whole number"},
        {"NumberOfCells=40000", "-32768 to 32767"},
        {"TemperatureMode=-1", "0 to 255"},
        {"UserTemperature=nan", "finite"},
        {"MagneticDeclination=inf", "finite"},
    };
    for (const auto& c : cases) {
        const ApplyResult result = ExpectRefusedUnchanged(system, {c.text});
        EXPECT_NE(result.message.find(c.part), std::string::npos) << c.text << ": " << result.message;
    }
}

}  // namespace
}  // namespace rm
