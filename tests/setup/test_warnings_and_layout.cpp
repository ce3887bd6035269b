// The warnings before a collection, the declination question, the profiling range line with
// its cell table, and the cells derived from the depths to cover.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "setup/apply_setting.h"
#include "setup/check_parameter.h"
#include "setup/collection_warnings.h"
#include "setup/depth_method.h"
#include "setup/profiling_layout.h"
#include "setup_test_tree.h"

namespace rm {
namespace {

using setup_test::Set;
using setup_test::UseEnglishUnits;
using setup_test::ValidSystem;

const char* const kDeclinationZero = "Magnetic declination is zero. This value may not have been set.";
const char* const kBottomTrackOff =
    "Bottom Track has been disabled. In general, it is preferable to have Bottom Track set to YES.";

TEST(CollectionWarnings, ListsWhatIsUnwiseOnlyWhenAskedFor) {
    const NodeRef system = ValidSystem();
    EXPECT_TRUE(CollectionWarnings(system, true).empty());

    Set(system, "Other", "MagneticDeclination", Variant(0.0));
    Set(system, "Options", "BottomTrack", Variant(uint8_t{0}));
    EXPECT_EQ(CollectionWarnings(system, true), (std::vector<std::string>{kDeclinationZero, kBottomTrackOff}));
    EXPECT_TRUE(CollectionWarnings(system, false).empty());

    // Bottom track off is no warning when the instrument has none.
    Set(system, "Options", "BottomTrackInstalled", Variant(uint8_t{0}));
    EXPECT_EQ(CollectionWarnings(system, true), std::vector<std::string>{kDeclinationZero});
    // Only exactly zero counts; a missing declination was never set.
    Set(system, "Other", "MagneticDeclination", Variant(0.01));
    EXPECT_TRUE(CollectionWarnings(system, true).empty());
    EXPECT_EQ(CollectionWarnings(NodeRef::MakeNew(), true), std::vector<std::string>{kDeclinationZero});
}

TEST(CollectionWarnings, DeclinationChangeAsksOnlyWhenDataAreHeld) {
    RecordingPrompt prompt;
    EXPECT_TRUE(ConfirmDeclinationChange(prompt, false, 1.0, 2.0));
    EXPECT_TRUE(ConfirmDeclinationChange(prompt, true, 2.0, 2.0));
    EXPECT_TRUE(prompt.questions.empty());

    prompt.answerYes = false;
    EXPECT_FALSE(ConfirmDeclinationChange(prompt, true, 1.0, 2.0));
    prompt.answerYes = true;
    EXPECT_TRUE(ConfirmDeclinationChange(prompt, true, 1.0, 2.0));
    ASSERT_EQ(prompt.questions.size(), 2u);
    EXPECT_EQ(prompt.questions[0],
              "Changing Magnetic Declination will restart the data set at Profile 1\nDo you wish to proceed?");
}

TEST(ProfilingLayout, RangeLineAndCellTable) {
    // 3 cells of 50 cm behind 30 cm: the first starts at 30 + 25 = 55 cm, the last ends at
    // 3.5 x 50 + 30 = 205 cm; centres at 80, 130, 180 cm.
    const ProfilingLayout layout{3, 50, 30};
    EXPECT_EQ(ProfilingRangeLine(layout, true), "Profiling Range:   0.55 -   2.05 m");
    // 0.55 m = 1.8045 ft, 2.05 m = 6.7257 ft
    EXPECT_EQ(ProfilingRangeLine(layout, false), "Profiling Range:   1.80 -   6.73 ft");

    const std::string gap(20, ' ');
    EXPECT_EQ(CellTableLines(layout, true),
              (std::vector<std::string>{"Cell #           Depth Range (m) (relative to sensor)",
                                        "    1" + gap + "      0.80", "    2" + gap + "      1.30",
                                        "    3" + gap + "      1.80"}));
    const std::vector<std::string> feet = CellTableLines(layout, false);
    ASSERT_EQ(feet.size(), 4u);
    EXPECT_EQ(feet[0], "Cell #           Depth Range (ft) (relative to sensor)");
    EXPECT_EQ(feet[3], "    3" + gap + "      5.91");  // 1.8 m = 5.9055 ft

    EXPECT_EQ(CellTableLines(ProfilingLayout{0, 50, 30}, true).size(), 1u);
    EXPECT_EQ(CellTableLines(ProfilingLayout{-4, 50, 30}, true).size(), 1u);
}

TEST(DepthMethod, DerivesALayoutThatPassesTheRules) {
    const NodeRef system = ValidSystem(0);  // 3000 kHz, least cell 15 cm, 128 cells, least blank 10 cm
    // From 0.2 m to 5 m: blank 20 cm, span 480 cm; 15 cm cells (480 / 128.5 needs only 4 cm);
    // floor(480 / 15 - 0.5) = 31 cells reaching 31.5 x 15 + 20 = 492.5 cm.
    DepthMethodResult result = DeriveProfilingFromDepths(system, 0.2, 5.0);
    ASSERT_TRUE(result.ok) << result.message;
    EXPECT_EQ(result.blankingDistanceCm, 20);
    EXPECT_EQ(result.cellSizeCm, 15);
    EXPECT_EQ(result.numberOfCells, 31);

    // At most 10 cells: ceil(480 / 10.5) = 46 cm, floor(480 / 46 - 0.5) = 9 cells (10 would reach 503 cm).
    Set(system, "Other", "MaxNumberOfCells", Variant(int16_t{10}));
    result = DeriveProfilingFromDepths(system, 0.2, 5.0);
    ASSERT_TRUE(result.ok) << result.message;
    EXPECT_EQ(result.cellSizeCm, 46);
    EXPECT_EQ(result.numberOfCells, 9);
    EXPECT_TRUE(ApplySettings(system, {"NumberOfCells=" + std::to_string(result.numberOfCells),
                                       "CellSizeInCm=" + std::to_string(result.cellSizeCm),
                                       "BlankingDistanceInCm=" + std::to_string(result.blankingDistanceCm)})
                    .applied);
    EXPECT_TRUE(CheckSetup(system).empty());

    // A minimum nearer than the instrument allows starts at its least blank.
    result = DeriveProfilingFromDepths(system, 0.0, 5.0);
    ASSERT_TRUE(result.ok);
    EXPECT_EQ(result.blankingDistanceCm, 10);
}

TEST(DepthMethod, RefusesDepthsThatCannotBeProfiled) {
    const NodeRef system = ValidSystem(0);
    const std::string invalid = "Please input valid values for Minimum and Maximum Depths";
    EXPECT_EQ(DeriveProfilingFromDepths(system, -0.1, 5.0).message, invalid);
    EXPECT_EQ(DeriveProfilingFromDepths(system, 0.2, 0.0).message, invalid);
    EXPECT_EQ(DeriveProfilingFromDepths(system, 0.2, std::nan("")).message, invalid);
    EXPECT_EQ(DeriveProfilingFromDepths(system, 5.0, 5.0).message, "Minimum Depth must be less than the Maximum Depth");
    // No room for one whole cell of 15 cm between 5.9 m and 6 m.
    EXPECT_EQ(DeriveProfilingFromDepths(system, 5.9, 6.0).message, invalid);

    EXPECT_TRUE(DeriveProfilingFromDepths(system, 0.2, 6.0).ok);
    const std::string tooDeep =
        "You have input a maximum depth greater than the range of this instrument.\nPlease reduce the maximum depth "
        "below ";
    EXPECT_EQ(DeriveProfilingFromDepths(system, 0.2, 6.01).message, tooDeep + "6.0 m");
    UseEnglishUnits(system);
    EXPECT_EQ(DeriveProfilingFromDepths(system, 0.2, 6.01).message, tooDeep + "19.7 ft");
}

}  // namespace
}  // namespace rm
