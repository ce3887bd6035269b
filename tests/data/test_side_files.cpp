#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "data/cfg_file.h"
#include "data/pmk_file.h"
#include "data/side_file_path.h"
#include "data/test_data_file_support.h"

namespace rm {
namespace {

namespace fs = std::filesystem;

class SideFiles : public ::testing::Test {
protected:
    // The GPS tree of one profile as the GPS reader keeps it: one child per sentence id.
    static NodeRef GpsTree(int profile) {
        NodeRef gps = NodeRef::MakeNew();
        NodeRef gga = gps.GetOrCreateChild("GGA");
        gga.SetAt(0, Variant("1235" + std::to_string(profile)));
        gga.SetAt(1, Variant("4807.038"));
        return gps;
    }

    static NodeRef EsTree(double depth) {
        NodeRef es = NodeRef::MakeNew();
        es.GetOrCreateChild("DPT").SetAt(0, Variant(depth));
        return es;
    }

    void WritePmk(int profiles) {
        PmkWriter writer;
        PmkSettings settings;
        settings.gpsPresent = 1;
        settings.echoSounderPresent = 1;
        settings.customEsString = "SDXDR";
        settings.depthIndex = 3;
        ASSERT_TRUE(writer.CreatePmk(dataPath_, settings, prompt_));
        for (int n = 1; n <= profiles; ++n) ASSERT_TRUE(writer.AppendProfile(GpsTree(n), EsTree(n * 0.5), prompt_));
    }

    test::ScratchDir dir_;
    const std::string dataPath_ = dir_.File("river01.kvr");
    RecordingPrompt prompt_;
};

TEST(SideFilePath, ReplacesTheDataExtensionInAnyCase) {
    EXPECT_EQ(SideFilePath("/data/river01.kvr", ".pmk"), "/data/river01.pmk");
    EXPECT_EQ(SideFilePath("/data/RIVER01.KVR", ".cfg"), "/data/RIVER01.cfg");
    EXPECT_EQ(SideFilePath("/data/river.Kvr", ".pmk"), "/data/river.pmk");
    EXPECT_EQ(SideFilePath("/data/river01", ".pmk"), "/data/river01.pmk");
    EXPECT_EQ(SideFilePath("/data/river.kvr.bak", ".cfg"), "/data/river.kvr.bak.cfg");
    EXPECT_EQ(SideFilePath("kvr", ".pmk"), "kvr.pmk");
}

TEST_F(SideFiles, TenProfilesGiveTenTreesAndAnEmptyEleventh) {
    WritePmk(10);
    PmkState state;
    ASSERT_EQ(LoadPmk(dataPath_, state), 1);
    EXPECT_TRUE(state.loaded);
    EXPECT_EQ(state.profileTrees, 10);
    EXPECT_EQ(state.settings.gpsPresent, 1);
    EXPECT_EQ(state.settings.echoSounderPresent, 1);
    EXPECT_EQ(state.settings.customEsString, "SDXDR");
    EXPECT_EQ(state.settings.depthIndex, 3);

    const NodeRef& root = state.extraDataRoot;
    ASSERT_EQ(root.ItemCount(), 12);  // Settings, Prf1..Prf10, Prf11
    EXPECT_EQ(root.ItemName(0), "Settings");
    for (int n = 1; n <= 10; ++n) {
        NodeRef profile = root.GetChildByName("Prf" + std::to_string(n));
        // The writer says "GPSData", the reader asks for "GpsData": they meet.
        NodeRef gga = profile.GetChildByName("GpsData").GetChildByName("GGA");
        EXPECT_EQ(gga.ItemValue(0), Variant("1235" + std::to_string(n)));
        EXPECT_EQ(profile.GetChildByName("EsData").GetChildByName("DPT").ItemValue(0), Variant(n * 0.5));
    }
    NodeRef eleventh = root.GetChildByName("Prf11");
    ASSERT_FALSE(eleventh.IsNull());
    EXPECT_EQ(eleventh.ItemCount(), 0);

    EXPECT_EQ(LoadPmk(dataPath_, state), 1);  // loaded once
    EXPECT_EQ(root.ItemCount(), 12);
}

TEST_F(SideFiles, OnlySettingsLoadsWithOneEmptyFirstProfileAndLeadsTheFile) {
    WritePmk(0);
    PmkState state;
    ASSERT_EQ(LoadPmk(dataPath_, state), 1);
    EXPECT_EQ(state.profileTrees, 0);
    ASSERT_EQ(state.extraDataRoot.ItemCount(), 2);
    EXPECT_EQ(state.extraDataRoot.ItemName(1), "Prf1");
    EXPECT_EQ(state.extraDataRoot.GetChildByName("Prf1").ItemCount(), 0);
    // The settings tree leads the file: four keys, the first "GpsPresent" (length 11 with its NUL).
    const auto bytes = test::ReadFileBytes(SideFilePath(dataPath_, ".pmk"));
    ASSERT_GE(bytes.size(), 19u);
    EXPECT_EQ(std::vector<uint8_t>(bytes.begin(), bytes.begin() + 8), (std::vector<uint8_t>{4, 0, 0, 0, 11, 0, 0, 0}));
    EXPECT_EQ(std::string(bytes.begin() + 8, bytes.begin() + 19), std::string("GpsPresent\0", 11));
}

TEST_F(SideFiles, MissingPmkMeansNoStreamData) {
    PmkState state;
    state.settings.echoSounderPresent = 7;
    EXPECT_EQ(LoadPmk(dataPath_, state), 0);
    EXPECT_FALSE(state.loaded);
    EXPECT_EQ(state.settings.echoSounderPresent, 7);
    PmkSettings only;
    EXPECT_FALSE(ReadPmkSettings(dataPath_, only));
}

TEST_F(SideFiles, ProfilesWithoutAStreamAndTheSettingsOnly) {
    PmkWriter writer;
    PmkSettings settings;
    settings.echoSounderPresent = 1;
    NodeRef extraDataRoot = NodeRef::MakeNew();
    extraDataRoot.SetValue("stale", Variant(1));
    ASSERT_TRUE(writer.CreatePmk(dataPath_, settings, prompt_, extraDataRoot));
    ASSERT_EQ(extraDataRoot.ItemCount(), 1);  // cleared, then Settings
    EXPECT_EQ(extraDataRoot.GetChildByName("Settings").GetTyped<int32_t>("EchoSounderPresent", 0), 1);
    ASSERT_TRUE(writer.AppendProfile(NodeRef(), EsTree(2.0), prompt_));
    writer.Close();

    PmkSettings read;
    ASSERT_TRUE(ReadPmkSettings(dataPath_, read));
    EXPECT_EQ(read.echoSounderPresent, 1);
    EXPECT_EQ(read.gpsPresent, 0);
    PmkState state;
    ASSERT_EQ(LoadPmk(dataPath_, state), 1);
    NodeRef profile = state.extraDataRoot.GetChildByName("Prf1");
    EXPECT_EQ(profile.FindIndex("GPSData"), -1);
    EXPECT_GE(profile.FindIndex("EsData"), 0);
}

TEST_F(SideFiles, RecordingThatEndsInsideAProfileKeepsThePartialTree) {
    WritePmk(3);
    const std::string pmk = SideFilePath(dataPath_, ".pmk");
    // Cut the file inside the third profile tree, after its first item's name.
    PmkState whole;
    ASSERT_EQ(LoadPmk(dataPath_, whole), 1);
    const auto size = fs::file_size(pmk);
    NodeRef third = MakeProfileNode(GpsTree(3), EsTree(1.5));
    test::TempFile probe;
    ASSERT_TRUE(third.Save(probe.get()));
    const long thirdSize = std::ftell(probe.get());
    fs::resize_file(pmk, size - static_cast<uintmax_t>(thirdSize) + 20);

    PmkState state;
    ASSERT_EQ(LoadPmk(dataPath_, state), 1);
    EXPECT_EQ(state.profileTrees, 2);
    ASSERT_EQ(state.extraDataRoot.ItemCount(), 4);  // Settings, Prf1, Prf2, partial Prf3
    NodeRef partial = state.extraDataRoot.GetChildByName("Prf3");
    ASSERT_EQ(partial.ItemCount(), 1);
    EXPECT_EQ(partial.ItemName(0), "GPSData");
    EXPECT_TRUE(partial.ItemChild(0).IsNull());  // its sub-tree did not arrive
}

TEST_F(SideFiles, PmkWriteFailuresShowTheirMessages) {
    PmkWriter writer;
    const std::string badData = dir_.File("no/such/run.kvr");
    EXPECT_FALSE(writer.CreatePmk(badData, PmkSettings(), prompt_));
    EXPECT_FALSE(writer.IsOpen());
    ASSERT_EQ(prompt_.messages.size(), 1u);
    EXPECT_EQ(prompt_.messages[0],
              "Error - Unable to record to GPS and EchoSounder data file " + dir_.File("no/such/run.pmk"));

    // Appending without an open file fails once with its message and then stays quiet.
    EXPECT_FALSE(writer.AppendProfile(GpsTree(1), NodeRef(), prompt_));
    EXPECT_FALSE(writer.AppendProfile(GpsTree(2), NodeRef(), prompt_));
    ASSERT_EQ(prompt_.messages.size(), 2u);
    EXPECT_EQ(prompt_.messages[1], "Can not write output file");
}

// ---- .cfg ----

class CfgFiles : public SideFiles {
protected:
    static CfgValues SampleValues() {
        CfgValues v;
        v.display.contourDisplayVariable = 2;
        v.display.contourDisplayComponent = 3;
        v.display.coordinateSystem = 1;
        v.display.velocityReference = 2;
        v.display.trackReference = 2;
        v.display.showXAxisAs = 1;
        v.display.mapGridSpacing = 99.0;  // not saved: the track window or 10.0 decide
        v.soundSpeed.temperatureCorrectionType = 1;
        v.soundSpeed.salinityCorrectionType = 2;
        v.soundSpeed.correctedSalinityInPpt = 0.1;
        v.soundSpeed.correctedTemperatureInDegC = 12.75;
        return v;
    }
    static NodeRef SystemRoot(int16_t cells) {
        NodeRef system = NodeRef::MakeNew();
        system.GetOrCreateChild("Setup").SetValue("NumberOfCells", Variant(cells));
        return system;
    }
};

TEST_F(CfgFiles, RoundTripOfValuesSystemAndOtherNodes) {
    NodeRef documentRoot = NodeRef::MakeNew();
    documentRoot.GetOrCreateChild("Discharge").SetValue("LeftProfile", Variant(4));
    NodeRef system = SystemRoot(25);
    ASSERT_TRUE(SaveCfg(dataPath_, documentRoot, system, SampleValues(), std::nullopt, CfgSaveReason::Closing));
    EXPECT_TRUE(documentRoot.GetChildByName("System").SameNode(system));
    EXPECT_TRUE(fs::exists(dir_.File("river01.cfg")));
    // The key names, their order and types are those of every .cfg written so far.
    const auto expectKeys = [](const NodeRef& node, const std::vector<std::pair<std::string, Variant>>& keys) {
        ASSERT_EQ(node.ItemCount(), static_cast<int>(keys.size()));
        for (int i = 0; i < node.ItemCount(); ++i) {
            EXPECT_EQ(node.ItemName(i), keys[static_cast<size_t>(i)].first);
            EXPECT_EQ(node.ItemValue(i), keys[static_cast<size_t>(i)].second) << node.ItemName(i);
        }
    };
    expectKeys(documentRoot.GetChildByName("Display"),
               {{"ContourDisplayVariable", Variant(int32_t{2})}, {"ContourDisplayComponent", Variant(int32_t{3})},
                {"CoordinateSystem", Variant(int32_t{1})},       {"VelocityReference", Variant(int32_t{2})},
                {"TrackReference", Variant(int32_t{2})},         {"ShowXAxisAs", Variant(uint8_t{1})},
                {"MapGridSpacing", Variant(10.0)},               {"MapVectorScale", Variant(50.0)}});
    expectKeys(documentRoot.GetChildByName("Processing").GetChildByName("SoundSpeed"),
               {{"TemperatureCorrectionType", Variant(int32_t{1})}, {"SalinityCorrectionType", Variant(int32_t{2})},
                {"CorrectedSalinityInPpt", Variant(0.1)}, {"CorrectedTemperatureInDegC", Variant(12.75)}});

    NodeRef loadedRoot = NodeRef::MakeNew();
    CfgValues loaded;
    NodeRef systemFromFile;
    ASSERT_EQ(LoadCfg(dataPath_, loadedRoot, loaded, systemFromFile), CfgLoadResult::Loaded);
    ASSERT_FALSE(systemFromFile.IsNull());
    EXPECT_EQ(systemFromFile.GetChildByName("Setup").GetTyped<int16_t>("NumberOfCells", 0), 25);
    EXPECT_FALSE(loaded.fileIsLocked);
    EXPECT_EQ(loaded.soundSpeed.temperatureCorrectionType, 1);
    EXPECT_EQ(loaded.soundSpeed.salinityCorrectionType, 2);
    EXPECT_EQ(loaded.soundSpeed.correctedSalinityInPpt, 0.1);
    EXPECT_EQ(loaded.soundSpeed.correctedTemperatureInDegC, 12.75);
    EXPECT_EQ(loadedRoot.GetChildByName("Discharge").GetTyped<int32_t>("LeftProfile", 0), 4);

    CfgDisplay display;
    LoadDisplay(loadedRoot, display);
    EXPECT_EQ(display.contourDisplayVariable, 2);
    EXPECT_EQ(display.contourDisplayComponent, 3);
    EXPECT_EQ(display.coordinateSystem, 1);
    EXPECT_EQ(display.velocityReference, 2);
    EXPECT_EQ(display.trackReference, 2);
    EXPECT_EQ(display.showXAxisAs, 1);
    EXPECT_EQ(display.mapGridSpacing, 10.0);
    EXPECT_EQ(display.mapVectorScale, 50.0);

    // An open track window gives its scales instead.
    ASSERT_TRUE(SaveCfg(dataPath_, documentRoot, system, SampleValues(), TrackWindowScale{2.5, 125.0},
                        CfgSaveReason::LockMeasurement));
    ASSERT_EQ(LoadCfg(dataPath_, loadedRoot, loaded, systemFromFile), CfgLoadResult::Loaded);
    LoadDisplay(loadedRoot, display);
    EXPECT_EQ(display.mapGridSpacing, 2.5);
    EXPECT_EQ(display.mapVectorScale, 125.0);
}

TEST_F(CfgFiles, LockedMeasurementKeepsTheLockedState) {
    NodeRef documentRoot = NodeRef::MakeNew();
    NodeRef system = SystemRoot(20);
    CfgValues values = SampleValues();
    values.fileIsLocked = true;
    ASSERT_TRUE(SaveCfg(dataPath_, documentRoot, system, values, std::nullopt, CfgSaveReason::LockMeasurement));

    // A change made afterwards and a close: nothing is written.
    values.soundSpeed.correctedTemperatureInDegC = 30.0;
    system.GetChildByName("Setup").SetValue("NumberOfCells", Variant(int16_t{40}));
    ASSERT_TRUE(SaveCfg(dataPath_, documentRoot, system, values, std::nullopt, CfgSaveReason::Closing));

    NodeRef reopened = NodeRef::MakeNew();
    CfgValues read;
    NodeRef systemFromFile;
    ASSERT_EQ(LoadCfg(dataPath_, reopened, read, systemFromFile), CfgLoadResult::Loaded);
    EXPECT_TRUE(read.fileIsLocked);
    EXPECT_EQ(read.soundSpeed.correctedTemperatureInDegC, 12.75);
    EXPECT_EQ(systemFromFile.GetChildByName("Setup").GetTyped<int16_t>("NumberOfCells", 0), 20);

    // Unlocking is a Lock Measurement command too: it writes.
    values.fileIsLocked = false;
    ASSERT_TRUE(SaveCfg(dataPath_, documentRoot, system, values, std::nullopt, CfgSaveReason::LockMeasurement));
    ASSERT_EQ(LoadCfg(dataPath_, reopened, read, systemFromFile), CfgLoadResult::Loaded);
    EXPECT_FALSE(read.fileIsLocked);
    EXPECT_EQ(read.soundSpeed.correctedTemperatureInDegC, 30.0);
}

TEST_F(CfgFiles, MissingAndDamagedFiles) {
    NodeRef root = NodeRef::MakeNew();
    CfgValues values = SampleValues();
    NodeRef system;
    EXPECT_EQ(LoadCfg(dataPath_, root, values, system), CfgLoadResult::Missing);
    EXPECT_EQ(values.soundSpeed.correctedTemperatureInDegC, 12.75);  // defaults kept
    EXPECT_TRUE(system.IsNull());

    ASSERT_TRUE(SaveCfg(dataPath_, root, SystemRoot(20), values, std::nullopt, CfgSaveReason::Closing));
    const std::string cfg = dir_.File("river01.cfg");
    fs::resize_file(cfg, fs::file_size(cfg) / 2);
    NodeRef damagedRoot = NodeRef::MakeNew();
    CfgValues fresh;
    EXPECT_EQ(LoadCfg(dataPath_, damagedRoot, fresh, system), CfgLoadResult::Unreadable);
    EXPECT_EQ(damagedRoot.ItemCount(), 0);
    EXPECT_TRUE(system.IsNull());
    EXPECT_EQ(fresh.soundSpeed.correctedTemperatureInDegC, 0.0);
    EXPECT_TRUE(fs::exists(dir_.File("river01.cfg.unreadable")));

    EXPECT_FALSE(SaveCfg(dir_.File("gone/x.kvr"), root, SystemRoot(1), values, std::nullopt,
                         CfgSaveReason::Closing));
}

}  // namespace
}  // namespace rm
