#pragma once
// The discharge summary as the list shows it: one row per shown record, then the blank row and
// the rows "Mean", "Std. Dev." and "Coefficient of Variation", 27 cell texts each, in metric or
// English units. Also the Copy text and the three texts of the dialog's "Total Discharge:"
// fields.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "app/summary_list.h"
#include "output/summary_columns.h"

namespace rm {

enum class SummaryRowKind { Record, Blank, Mean, Deviation, Coefficient };

struct SummaryRow {
    SummaryRowKind kind = SummaryRowKind::Record;
    bool excluded = false;  // a record left out of the statistics
    std::array<std::string, kSummaryColumnCount> cells;
};

// Text and background colours of a row, 0xRRGGBB.
struct RowColours {
    uint32_t text = 0x000000;
    uint32_t background = 0xFFFFFF;
};
RowColours ColoursOf(const SummaryRow& row);

struct SummaryTableOptions {
    int unitSystem = 1;          // 1 metric, else English
    int significantDigits = 5;   // "SignificantDigits"
};

struct SummaryTable {
    std::array<std::string, kSummaryColumnCount> header;  // first header lines
    std::array<std::string, kSummaryColumnCount> units;   // second header lines
    std::vector<SummaryRow> rows;
    int recordRows = 0;
    // "Abs. Mean:", "Standard Dev:" and "Coeff of Variation:" under "Total Discharge:".
    std::string absMean, standardDeviation, coefficientOfVariation;
};

// Refills the table from the list: first the removal rule (active records without a file name
// leave the list), then the rows and the statistics.
SummaryTable BuildSummaryTable(SummaryList& list, const SummaryTableOptions& options);

// The Copy text: both header lines and every row, each cell followed by a tab, each line ended
// by carriage return and line feed.
std::string SummaryCopyText(const SummaryTable& table);

// The cell texts of date and time: "dd/mm/yyyy " (with its trailing blank) and "hh:mm:ss",
// the time empty when the hour exceeds 24 or the minute or second exceeds 60.
std::string SummaryDateText(const ProfileHeader& time);
std::string SummaryTimeText(const ProfileHeader& time);

}  // namespace rm
