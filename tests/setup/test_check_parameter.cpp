// The rules on single values: each just inside and just outside its limits, with the exact
// texts in metric and English units.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "setup/check_parameter.h"
#include "setup_test_tree.h"

namespace rm {
namespace {

using setup_test::Set;
using setup_test::UseEnglishUnits;
using setup_test::ValidSystem;

// One rule at its limits: values that pass, values that fail with `message`, in a valid setup
// that `prepare` may change first.
struct Boundary {
    const char* rule;
    const char* node;
    const char* key;
    std::vector<Variant> inside;
    std::vector<Variant> outside;
    std::string message;
    void (*prepare)(const NodeRef&) = nullptr;
};

void NoSensor(const NodeRef& s) { Set(s, "Conf", "TemperatureInstalled", Variant(uint8_t{0})); }
void PulseCoherent(const NodeRef& s) { Set(s, "Setup", "PCMode", Variant(uint8_t{1})); }
void CellCountNotTold(const NodeRef& s) { Set(s, "Other", "MaxNumberOfCells", Variant(int16_t{0})); }
// Told least cell 12.34 cm, kept as 123 mm, and least blank 20 cm: the blank limit of 3000 kHz
// is then 600 - 12.3 = 587.7 cm.
void ToldLeastCellAndBlank(const NodeRef& s) {
    Set(s, "Other", "MinCellSizeInCm", Variant(12.34));
    Set(s, "Oper", "MinBlankLengthInCm", Variant(uint8_t{20}));
}
void ToldLeastCellAndBlankInFeet(const NodeRef& s) {
    ToldLeastCellAndBlank(s);
    UseEnglishUnits(s);
}

const std::string kMounting = "Mounting depth should be in\nthe range of  0.00 to  5.00 m.";
const std::string kMountingFt = "Mounting depth should be in\nthe range of  0.00 to 16.40 ft.";

const std::vector<Boundary>& Boundaries() {
    static const std::vector<Boundary> all = {
        {"DeploymentName", "Setup", "DeploymentName", {Variant("A"), Variant("ABCDE")}, {Variant("ABCDEF")},
         "The file name must not be more than 5 characters."},
        {"DeploymentName", "Setup", "DeploymentName", {}, {Variant("")}, "The file name must not be left blank."},
        {"CommentLine1", "Setup", "CommentLine1", {Variant(std::string(60, 'c'))}, {Variant(std::string(61, 'c'))},
         "The first comment line must not\nbe more than 60 characters."},
        {"CommentLine2", "Setup", "CommentLine2", {Variant(std::string(60, 'c'))}, {Variant(std::string(61, 'c'))},
         "The second comment line must not\nbe more than 60 characters."},
        {"CommentLine3", "Setup", "CommentLine3", {Variant(std::string(60, 'c'))}, {Variant(std::string(61, 'c'))},
         "The third comment line must not\nbe more than 60 characters."},
        // The upper limit 43200 is the dialog's, not the checker's.
        {"AveragingInterval", "Setup", "AveragingInterval", {Variant(int16_t{5}), Variant(int16_t{30000})},
         {Variant(int16_t{4})}, "The averaging interval must\nbe between 5 and 43200 seconds."},
        {"AveragingInterval", "Setup", "AveragingInterval", {Variant(int16_t{2})}, {}, "", PulseCoherent},
        {"FixedMountingDepthInCm", "Setup", "FixedMountingDepthInCm", {Variant(0.0), Variant(500.0)},
         {Variant(-1.0), Variant(501.0)}, kMounting},
        {"EstimatedDepth", "Other", "EstimatedDepth", {Variant(0.0), Variant(500.0)}, {Variant(-1.0), Variant(501.0)},
         kMounting},
        {"FixedMountingDepthInCm", "Setup", "FixedMountingDepthInCm", {}, {Variant(501.0)}, kMountingFt,
         UseEnglishUnits},
        {"EstimatedDepth", "Other", "EstimatedDepth", {}, {Variant(501.0)}, kMountingFt, UseEnglishUnits},
        {"NumberOfCells", "Setup", "NumberOfCells", {Variant(int16_t{1}), Variant(int16_t{128})},
         {Variant(int16_t{0}), Variant(int16_t{129})}, "Number of cells should be between 1 and 128."},
        // Not told: only the stored type bounds it.
        {"NumberOfCells", "Setup", "NumberOfCells", {Variant(int16_t{500})}, {Variant(int16_t{0})},
         "Number of cells should be between 1 and 32767.", CellCountNotTold},
        {"BlankingDistanceInCm", "Setup", "BlankingDistanceInCm", {Variant(20.0), Variant(587.0)},
         {Variant(19.0), Variant(588.0)}, "Blanking distance should be in\nthe range of  0.20 to  5.88 m.",
         ToldLeastCellAndBlank},
        // 20 cm = 0.656 ft, 587.7 cm = 19.281 ft.
        {"BlankingDistanceInCm", "Setup", "BlankingDistanceInCm", {}, {Variant(588.0)},
         "Blanking distance should be in\nthe range of  0.66 to 19.28 ft.", ToldLeastCellAndBlankInFeet},
        {"MountingMethod", "Other", "MountingMethod", {Variant(int16_t{0}), Variant(int16_t{7})}, {}, ""},
        {"UserSalinity", "Setup", "UserSalinity", {Variant(0.0), Variant(60.0)}, {Variant(-0.01), Variant(60.01)},
         "Water salinity should be in the range of 0 to 60."},
        {"TemperatureMode", "Setup", "TemperatureMode", {Variant(uint8_t{0}), Variant(uint8_t{1})},
         {Variant(uint8_t{2})}, "Temperature Mode must be either USER or MEASURED."},
        {"TemperatureMode", "Setup", "TemperatureMode", {Variant(uint8_t{0})}, {Variant(uint8_t{1})},
         "Temperature Mode can only be set to NO for systems without a temperature sensor.", NoSensor},
        {"UserTemperature", "Setup", "UserTemperature", {Variant(-5.0), Variant(50.0)},
         {Variant(-5.01), Variant(50.01)}, "Water Temperature should be in the range of  -5.0 to  50.0 deg C."},
        // Stored in degrees C whatever the units; only the text names the Fahrenheit limits.
        {"UserTemperature", "Setup", "UserTemperature", {Variant(50.0)}, {Variant(51.0)},
         "Water Temperature should be in the range of  23.0 to 122.0 deg F.", UseEnglishUnits},
        {"EchoSounderMountingDepthInCm", "Other", "EchoSounderMountingDepthInCm", {Variant(int16_t{0}),
         Variant(int16_t{500})}, {Variant(int16_t{-1}), Variant(int16_t{501})},
         "Echo sounder mounting depth should be in\nthe range of  0.00 to  5.00 m."},
        {"EchoSounderMountingDepthInCm", "Other", "EchoSounderMountingDepthInCm", {}, {Variant(int16_t{501})},
         "Echo sounder mounting depth should be in\nthe range of  0.00 to 16.40 ft.", UseEnglishUnits},
    };
    return all;
}

TEST(CheckParameter, EachRuleAtItsLimits) {
    for (const Boundary& b : Boundaries()) {
        const NodeRef system = ValidSystem();
        if (b.prepare) b.prepare(system);
        for (const Variant& value : b.inside) {
            Set(system, b.node, b.key, value);
            const ParameterCheck check = CheckParameter(b.rule, system);
            EXPECT_EQ(check.result, 1) << b.rule << " = " << value.ToText() << ": " << check.message;
            EXPECT_TRUE(check.known);
        }
        for (const Variant& value : b.outside) {
            Set(system, b.node, b.key, value);
            const ParameterCheck check = CheckParameter(b.rule, system);
            EXPECT_EQ(check.result, 0) << b.rule << " = " << value.ToText();
            EXPECT_EQ(check.message, b.message) << b.rule << " = " << value.ToText();
        }
    }
}

TEST(CheckParameter, ValidSetupPassesAndUnknownNamesPass) {
    const NodeRef system = ValidSystem();
    EXPECT_TRUE(CheckSetup(system).empty());
    const ParameterCheck unknown = CheckParameter("NoSuchKey", system);
    EXPECT_EQ(unknown.result, 1);
    EXPECT_FALSE(unknown.known);
    EXPECT_EQ(unknown.message, "Parameter not found.");
    EXPECT_FALSE(CheckParameter("numberofcells", system).known);  // names are compared exactly

    // A check reads without bringing missing keys or nodes into being; missing means blank here.
    const NodeRef empty = NodeRef::MakeNew();
    EXPECT_EQ(CheckParameter("DeploymentName", empty).message, "The file name must not be left blank.");
    for (const std::string& name : CheckedParameterNames()) CheckParameter(name, empty);
    EXPECT_EQ(empty.ItemCount(), 0);
}

TEST(CheckParameter, ProfilingIntervalTestsInTheirOrder) {
    const std::string belowAveraging =
        "The profiling interval must be greater\nthan or equal to the averaging interval.";
    const std::string belowTen = "The profiling interval must\nbe between 10 and 43200 seconds.";
    const std::string bottomTrack =
        "The profiling interval can be no more than 10 seconds greater\nthan the averaging interval for Bottom "
        "Tracking systems.";
    const auto check = [](int averaging, int profiling, int bottomTrackMode) {
        const NodeRef system = ValidSystem();
        Set(system, "Setup", "AveragingInterval", Variant(static_cast<int16_t>(averaging)));
        Set(system, "Setup", "ProfilingInterval", Variant(static_cast<int16_t>(profiling)));
        Set(system, "Options", "BottomTrack", Variant(static_cast<uint8_t>(bottomTrackMode)));
        return CheckParameter("ProfilingInterval", system);
    };
    EXPECT_EQ(check(20, 19, 1).message, belowAveraging);
    EXPECT_EQ(check(20, 5, 1).message, belowAveraging);  // below both: the first test speaks
    EXPECT_EQ(check(20, 20, 1).result, 1);
    EXPECT_EQ(check(5, 9, 1).message, belowTen);
    EXPECT_EQ(check(5, 10, 1).result, 1);
    EXPECT_EQ(check(10, 20, 1).result, 1);
    EXPECT_EQ(check(10, 21, 1).message, bottomTrack);
    EXPECT_EQ(check(10, 21, 2).message, bottomTrack);  // the shallow-water ping is bottom track too
    EXPECT_EQ(check(10, 21, 0).result, 1);
}

TEST(CheckParameter, DeclinationOutOfRangeSetsItsTextButPasses) {
    const std::string text = "Magnetic declination should be in\nthe range of -360.00 to 360.00 deg.";
    const NodeRef system = ValidSystem();
    for (double declination : {400.0, -360.5}) {
        Set(system, "Other", "MagneticDeclination", Variant(declination));
        const ParameterCheck check = CheckParameter("MagneticDeclination", system);
        EXPECT_EQ(check.result, 1);
        EXPECT_EQ(check.message, text);
    }
    Set(system, "Other", "MagneticDeclination", Variant(360.0));
    EXPECT_EQ(CheckParameter("MagneticDeclination", system).message, "Parameter not found.");
}

TEST(CheckParameter, FailuresOfAWholeSetupInTheCheckersOrder) {
    const NodeRef system = ValidSystem();
    Set(system, "Setup", "UserSalinity", Variant(70.0));
    Set(system, "Setup", "DeploymentName", Variant("TOOLONG"));
    Set(system, "Other", "MagneticDeclination", Variant(400.0));  // passes: not listed
    const std::vector<RuleFailure> failures = CheckSetup(system);
    ASSERT_EQ(failures.size(), 2u);
    EXPECT_EQ(failures[0].rule, "DeploymentName");
    EXPECT_EQ(failures[1].rule, "UserSalinity");
    EXPECT_EQ(failures[1].message, "Water salinity should be in the range of 0 to 60.");

    // A value that does not read as a number fails its rule without throwing.
    Set(system, "Setup", "UserSalinity", Variant("salty"));
    const ParameterCheck check = CheckParameter("UserSalinity", system);
    EXPECT_EQ(check.result, 0);
    EXPECT_NE(check.message.find("UserSalinity"), std::string::npos) << check.message;
}

}  // namespace
}  // namespace rm
