// The cell layout rules by frequency: cell size limits from the table or as told by the
// instrument, the blank limit, the number of cells, and the two range tests at their limits.

#include <gtest/gtest.h>

#include <string>

#include "setup/check_parameter.h"
#include "setup_test_tree.h"

namespace rm {
namespace {

using setup_test::Set;
using setup_test::UseEnglishUnits;
using setup_test::ValidSystem;

void SetLayout(const NodeRef& system, double cells, double cellSizeCm, double blankCm) {
    Set(system, "Setup", "NumberOfCells", Variant(cells));
    Set(system, "Setup", "CellSizeInCm", Variant(cellSizeCm));
    Set(system, "Setup", "BlankingDistanceInCm", Variant(blankCm));
}

int Result(const char* rule, const NodeRef& system) { return CheckParameter(rule, system).result; }

// The frequency table, written out again in centimetres: least and greatest cell, working and
// absolute range; the blank limit is the working range less the least cell.
struct Row {
    int index;
    double leastCm, greatestCm, workingCm, absoluteCm, blankLimitCm;
    const char* cellRange;   // the "%5.2f to %5.2f" part of the cell size message, metres
    const char* blankRange;  // of the blanking message with a 10 cm least blank, metres
    const char* working;     // "%.1f" of the working range in metres
};

const Row kRows[] = {
    {0, 15, 200, 600, 650, 585, " 0.15 to  2.00", " 0.10 to  5.85", "6.0"},
    {1, 25, 400, 2400, 2500, 2375, " 0.25 to  4.00", " 0.10 to 23.75", "24.0"},
    {2, 50, 800, 8000, 8000, 7950, " 0.50 to  8.00", " 0.10 to 79.50", "80.0"},
    {3, 100, 1200, 13000, 13000, 12900, " 1.00 to 12.00", " 0.10 to 129.00", "130.0"},
    {4, 100, 2000, 20000, 20000, 19900, " 1.00 to 20.00", " 0.10 to 199.00", "200.0"},
    {5, 25, 500, 4500, 4500, 4475, " 0.25 to  5.00", " 0.10 to 44.75", "45.0"},
    {6, 5, 100, 800, 800, 795, " 0.05 to  1.00", " 0.10 to  7.95", "8.0"},
    {7, 400, 2500, 50000, 50000, 49600, " 4.00 to 25.00", " 0.10 to 496.00", "500.0"},
};

TEST(ProfilingRules, CellSizeAndBlankLimitsOfEachFrequencyWhenNotTold) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.index);
        const struct {
            const char* key;
            double least, greatest;
            std::string message;
        } limits[] = {
            {"CellSizeInCm", row.leastCm, row.greatestCm,
             std::string("Cell size should be in\nthe range of ") + row.cellRange + " m."},
            {"BlankingDistanceInCm", 10.0, row.blankLimitCm,
             std::string("Blanking distance should be in\nthe range of ") + row.blankRange + " m."},
        };
        for (const auto& limit : limits) {
            const NodeRef system = ValidSystem(row.index);
            for (double value : {limit.least, limit.greatest}) {
                Set(system, "Setup", limit.key, Variant(value));
                EXPECT_EQ(Result(limit.key, system), 1) << limit.key << " " << value;
            }
            for (double value : {limit.least - 1, limit.greatest + 1}) {
                Set(system, "Setup", limit.key, Variant(value));
                const ParameterCheck check = CheckParameter(limit.key, system);
                EXPECT_EQ(check.result, 0) << limit.key << " " << value;
                EXPECT_EQ(check.message, limit.message);
            }
        }
    }
}

TEST(ProfilingRules, RangeTestsOfEachFrequencyAtTheirLimits) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.index);
        const NodeRef system = ValidSystem(row.index);
        // 1 m cells behind a 0.5 m blank reach (n + 0.5) + 0.5 = n + 1 metres.
        const double cellsAtWorkingRange = row.workingCm / 100.0 - 1.0;
        SetLayout(system, cellsAtWorkingRange, 100, 50);
        EXPECT_EQ(Result("ProfilingRange", system), 1);
        EXPECT_EQ(Result("AbsoluteProfilingRange", system), 1);

        SetLayout(system, cellsAtWorkingRange, 100, 51);  // one centimetre too far
        const ParameterCheck working = CheckParameter("ProfilingRange", system);
        EXPECT_EQ(working.result, 0);
        EXPECT_EQ(working.message, std::string("The profiling parameters exceed the maximum range of this system (") +
                                       row.working + " m). Please reduce the current range (" + row.working +
                                       " m) by changing the number of cells, cell size or blanking distance.");
        EXPECT_EQ(Result("AbsoluteProfilingRange", system), row.absoluteCm > row.workingCm ? 1 : 0);

        SetLayout(system, cellsAtWorkingRange, 100, 50 + row.absoluteCm - row.workingCm);
        EXPECT_EQ(Result("AbsoluteProfilingRange", system), 1);
        SetLayout(system, cellsAtWorkingRange, 100, 51 + row.absoluteCm - row.workingCm);
        EXPECT_EQ(Result("AbsoluteProfilingRange", system), 0);
    }
}

TEST(ProfilingRules, RangeExactlyOnTheLimitInCentimetresIsValid) {
    // 19.5 x 30 cm + 15 cm = 600 cm: exactly the 6 m working range of 3000 kHz, a sum that
    // does not come out exact when each length is first turned into metres.
    const NodeRef system = ValidSystem(0);
    SetLayout(system, 19, 30, 15);
    EXPECT_EQ(Result("ProfilingRange", system), 1);
    SetLayout(system, 19, 30, 16);
    EXPECT_EQ(Result("ProfilingRange", system), 0);
}

TEST(ProfilingRules, AbsoluteTestNamesTheWorkingRange) {
    const NodeRef system = ValidSystem(0);
    SetLayout(system, 19, 30, 35);  // 6.2 m
    EXPECT_EQ(Result("AbsoluteProfilingRange", system), 1);
    EXPECT_EQ(CheckParameter("ProfilingRange", system).message,
              "The profiling parameters exceed the maximum range of this system (6.0 m). Please reduce the current "
              "range (6.2 m) by changing the number of cells, cell size or blanking distance.");

    SetLayout(system, 19, 30, 66);  // 6.51 m: beyond the absolute 6.5 m, the text still names 6.0
    EXPECT_EQ(CheckParameter("AbsoluteProfilingRange", system).message,
              "The profiling parameters significantly exceed the maximum range of this system (6.0 m). Please reduce "
              "the current range (6.5 m) by changing the number of cells, cell size or blanking distance.");

    UseEnglishUnits(system);  // 6 m = 19.685 ft, 6.51 m = 21.358 ft
    EXPECT_EQ(CheckParameter("AbsoluteProfilingRange", system).message,
              "The profiling parameters significantly exceed the maximum range of this system (19.7 ft). Please "
              "reduce the current range (21.4 ft) by changing the number of cells, cell size or blanking distance.");
}

TEST(ProfilingRules, CellLimitsToldByTheInstrumentReplaceTheTable) {
    const NodeRef system = ValidSystem(0);
    // 12.34 cm x 10 = 123.4 mm, truncated to 123 mm; 150 cm = 1500 mm.
    Set(system, "Other", "MinCellSizeInCm", Variant(12.34));
    Set(system, "Other", "MaxCellSizeInCm", Variant(150.0));
    Set(system, "Setup", "CellSizeInCm", Variant(12.3));
    EXPECT_EQ(Result("CellSizeInCm", system), 1);
    Set(system, "Setup", "CellSizeInCm", Variant(int16_t{12}));
    EXPECT_EQ(CheckParameter("CellSizeInCm", system).message, "Cell size should be in\nthe range of  0.12 to  1.50 m.");
    Set(system, "Setup", "CellSizeInCm", Variant(int16_t{150}));
    EXPECT_EQ(Result("CellSizeInCm", system), 1);
    Set(system, "Setup", "CellSizeInCm", Variant(int16_t{151}));
    EXPECT_EQ(Result("CellSizeInCm", system), 0);
    UseEnglishUnits(system);  // 123 mm = 0.4035 ft, 1500 mm = 4.9213 ft
    EXPECT_EQ(CheckParameter("CellSizeInCm", system).message,
              "Cell size should be in\nthe range of  0.40 to  4.92 ft.");

    // Only the side that was not told falls back on the table (3000 kHz: up to 2 m).
    Set(system, "Other", "MaxCellSizeInCm", Variant(-1.0));
    Set(system, "Setup", "CellSizeInCm", Variant(int16_t{200}));
    EXPECT_EQ(Result("CellSizeInCm", system), 1);
}

TEST(ProfilingRules, UnknownFrequencyRefusesTheLayoutRules) {
    for (double index : {8.0, 2.5, -1.0}) {
        const NodeRef system = ValidSystem(0);
        Set(system, "Conf", "SystemFreq", Variant(index));
        for (const char* rule : {"CellSizeInCm", "BlankingDistanceInCm", "AbsoluteProfilingRange", "ProfilingRange"}) {
            const ParameterCheck check = CheckParameter(rule, system);
            EXPECT_EQ(check.result, 0) << rule << " " << index;
            EXPECT_NE(check.message.find("frequency index"), std::string::npos) << check.message;
        }
    }
}

}  // namespace
}  // namespace rm
