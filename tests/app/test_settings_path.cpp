// Changing a setting by its path: the value keeps the key's type, and every kind of mistake is
// refused with the tree left as it was.

#include <gtest/gtest.h>

#include "app/settings_path.h"

namespace rm {
namespace {

class SettingsPath : public ::testing::Test {
protected:
    void SetUp() override {
        const NodeRef discharge = root.GetOrCreateChild("Discharge");
        discharge.SetValue("LeftBankMethod", Variant(int32_t{2}));
        discharge.SetValue("LeftBankSlope", Variant(0.707));
        discharge.GetOrCreateChild("ProfileExtrapolation").SetValue("TopFitType", Variant(int32_t{1}));
        root.GetOrCreateChild("General").SetValue("FileIsLocked", Variant(uint8_t{0}));
    }
    NodeRef root = NodeRef::MakeNew();
};

TEST_F(SettingsPath, AssignsConvertedToTheKeysOwnType) {
    EXPECT_TRUE(AssignSetting(root, "Discharge/LeftBankMethod=1").ok);
    EXPECT_TRUE(AssignSetting(root, "discharge/profileextrapolation/TopFitType=0").ok);
    EXPECT_TRUE(AssignSetting(root, "Discharge/LeftBankSlope=0.35").ok);
    EXPECT_TRUE(AssignSetting(root, "General/FileIsLocked=1").ok);
    const NodeRef d = root.GetOrCreateChild("Discharge");
    EXPECT_EQ(d.ItemValue(d.FindIndex("LeftBankMethod")), Variant(int32_t{1}));
    EXPECT_EQ(d.ItemValue(d.FindIndex("LeftBankSlope")), Variant(0.35));
    const NodeRef x = d.GetOrCreateChild("ProfileExtrapolation");
    EXPECT_EQ(x.ItemValue(x.FindIndex("TopFitType")), Variant(int32_t{0}));
    const NodeRef g = root.GetOrCreateChild("General");
    EXPECT_EQ(g.ItemValue(g.FindIndex("FileIsLocked")), Variant(uint8_t{1}));
}

TEST_F(SettingsPath, RefusesUnknownPathsGroupsAndBadValues) {
    const char* refused[] = {
        "Discharge/LeftBankMethod",       // no value
        "=1",                             // no path
        "Discharge//LeftBankMethod=1",    // an empty name
        "Nowhere/LeftBankMethod=1",       // no such node
        "Discharge/NoSuchKey=1",          // no such key
        "Discharge/ProfileExtrapolation=1",  // a group, not a value
        "Discharge/LeftBankMethod=two",   // not a number
        "Discharge/LeftBankMethod=1.5e40",  // out of range
        "General/FileIsLocked=300",       // out of the byte's range
    };
    for (const char* assignment : refused) {
        const SettingAssignment r = AssignSetting(root, assignment);
        EXPECT_FALSE(r.ok) << assignment;
        EXPECT_FALSE(r.message.empty()) << assignment;
    }
    const NodeRef d = root.GetOrCreateChild("Discharge");
    EXPECT_EQ(d.ItemValue(d.FindIndex("LeftBankMethod")), Variant(int32_t{2}));
    EXPECT_EQ(d.FindIndex("NoSuchKey"), -1);
}

}  // namespace
}  // namespace rm
