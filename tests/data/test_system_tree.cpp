// The mirror of the records in the `System` node: key types, defaults, round trips, limits.

#include <gtest/gtest.h>

#include "data/system_tree.h"

namespace rm {
namespace {

struct Records {
    InstrumentConf conf;
    UserSetup user;
    SystemDocumentFields fields;
};

// Every mirrored field holds a value different from its default.
Records Sample() {
    Records r;
    InstrumentConf& c = r.conf;
    c.KvrType = 6, c.SerialNumber = "Q4711", c.CPUSoftwareVerNum = 165, c.PressureInstalled = 1;
    c.CompassInstalled = 1, c.TemperatureInstalled = 1, c.InternalGpsAvailable = 1;
    UserSetup& u = r.user;
    u.NumberOfCells = 40, u.CellSizeCm = 12.3f, u.BlankDistance = 25, u.AveragingInterval = 10;
    u.ProfileInterval = 12, u.SensorDepth = 35, u.CoordinateSystem = 2, u.TemperatureMode = 1;
    u.DefaultTemperature = 155, u.DefaultSalinity = -3, u.RecorderEnabled = 1, u.DeploymentName = "RIV";
    u.CommentLine1 = "one", u.CommentLine2 = "two", u.CommentLine3 = "three", u.EnableInternalGps = 1;
    u.PCMode = 1, u.BottomTrack = 2, u.MagneticDeclinationRaw = -615;
    r.fields = {1, 42, 0, 1, 20, 24};
    return r;
}

Variant Stored(const NodeRef& system, const char* node, const char* key) {
    const NodeRef n = system.GetChildByName(node);
    EXPECT_GE(n.FindIndex(key), 0) << node << "/" << key;
    return n.GetValue(key, Variant());
}

// Same names, values and types, item by item, at every depth.
void ExpectSameTree(const NodeRef& a, const NodeRef& b) {
    ASSERT_EQ(a.ItemCount(), b.ItemCount());
    for (int i = 0; i < a.ItemCount(); ++i) {
        EXPECT_EQ(a.ItemName(i), b.ItemName(i));
        EXPECT_EQ(a.ItemValue(i), b.ItemValue(i)) << a.ItemName(i) << ": " << a.ItemValue(i).ToText() << " vs "
                                                  << b.ItemValue(i).ToText();
        if (a.ItemChild(i)) ExpectSameTree(a.ItemChild(i), b.ItemChild(i));
    }
}

TEST(SystemTree, FillTreeWritesEachKeyWithItsType) {
    const Records r = Sample();
    const NodeRef system = NodeRef::MakeNew();
    SystemConfNode(system).SetValue("SystemFreq", Variant(int32_t{3}));  // an older type is replaced
    SystemOtherNode(system).SetValue("MinCellSizeInCm", Variant(5.0));   // a present default stays
    FillTree(system, r.conf, r.user, r.fields);

    EXPECT_EQ(Stored(system, "Conf", "SystemFreq"), Variant(uint8_t{6}));
    EXPECT_EQ(Stored(system, "Conf", "SerialNumber"), Variant("Q4711"));
    EXPECT_EQ(Stored(system, "Conf", "GpsInstalled"), Variant(uint8_t{1}));
    EXPECT_EQ(Stored(system, "Options", "BottomTrack"), Variant(uint8_t{2}));
    EXPECT_EQ(Stored(system, "Options", "BottomTrackInstalled"), Variant(uint8_t{1}));
    EXPECT_EQ(Stored(system, "Setup", "CellSizeInCm"), Variant(int16_t{12}));
    EXPECT_EQ(Stored(system, "Setup", "FixedMountingDepthInCm"), Variant(int16_t{35}));
    EXPECT_EQ(Stored(system, "Setup", "UserTemperature").type(), VarType::Double);
    EXPECT_DOUBLE_EQ(Stored(system, "Setup", "UserTemperature").As<double>(), 15.5);
    EXPECT_DOUBLE_EQ(Stored(system, "Setup", "UserSalinity").As<double>(), -0.3);
    EXPECT_EQ(Stored(system, "Setup", "EnableInternalGps"), Variant(uint8_t{1}));
    EXPECT_DOUBLE_EQ(Stored(system, "Other", "MagneticDeclination").As<double>(), -12.3);
    EXPECT_EQ(Stored(system, "Other", "AutoMountingDepthInCm"), Variant(int16_t{42}));
    EXPECT_EQ(Stored(system, "Other", "AutoFileName"), Variant(int16_t{0}));
    EXPECT_EQ(Stored(system, "Oper", "OperatingRangeInMeters"), Variant(uint8_t{24}));
    EXPECT_EQ(Stored(system, "Other", "UnitSystem"), Variant(int16_t{1}));
    EXPECT_EQ(Stored(system, "Other", "MaxCellSizeInCm"), Variant(-1.0));
    EXPECT_EQ(Stored(system, "Other", "MinCellSizeInCm"), Variant(5.0));
    EXPECT_EQ(SystemConfNode(system).ItemCount(), 7);  // no key twice
}

TEST(SystemTree, ReadTreeIsTheInverseOfFillTree) {
    const Records original = Sample();
    const NodeRef first = NodeRef::MakeNew();
    FillTree(first, original.conf, original.user, original.fields);

    // Into empty records and out again: the same tree, so every mirrored value arrived.
    Records fresh;
    ReadTree(first, fresh.conf, fresh.user, fresh.fields);
    const NodeRef second = NodeRef::MakeNew();
    FillTree(second, fresh.conf, fresh.user, fresh.fields);
    ExpectSameTree(first, second);
    EXPECT_EQ(fresh.user.CellSizeCm, 12.0f);  // whole centimetres are what the tree holds

    // Back into the records it came from: tenths of the cell size survive.
    Records same = original;
    ReadTree(first, same.conf, same.user, same.fields);
    EXPECT_EQ(same.user.CellSizeCm, 12.3f);
    EXPECT_EQ(same.user.MagneticDeclinationRaw, -615);

    // Edited values reach the records, rounded and limited as the record fields need.
    SystemSetupNode(first).SetValue("CellSizeInCm", Variant(int16_t{20}));
    SystemSetupNode(first).SetValue("UserTemperature", Variant(7.25));  // 72.5 tenths
    SystemSetupNode(first).SetValue("NumberOfCells", Variant(int16_t{-5}));
    SystemOtherNode(first).SetValue("MagneticDeclination", Variant(400.0));
    ReadTree(first, same.conf, same.user, same.fields);
    EXPECT_EQ(same.user.CellSizeCm, 20.0f);
    EXPECT_EQ(same.user.DefaultTemperature, 73);
    EXPECT_EQ(same.user.NumberOfCells, 0);
    EXPECT_EQ(same.user.MagneticDeclinationRaw, 20000);

    SystemConfNode(first).SetValue("SystemFreq", Variant("seven"));
    EXPECT_THROW(ReadTree(first, same.conf, same.user, same.fields), VariantConversionError);
}

}  // namespace
}  // namespace rm
