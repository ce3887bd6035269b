#pragma once
// The discharge summary on the command line: the list as it shows (visible columns only, both
// header lines, every row, cells centred in their column) and the rows as JSON.

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "output/summary_table.h"

namespace rm::cli {

// Columns of width 0 (hidden) are left out; columns are separated by two blanks and each cell
// is centred in the width of the column's longest text. Lines end with "\n", without trailing
// blanks.
std::string SummaryListText(const SummaryTable& table, const std::vector<SummaryColumnState>& columns);

// {"columns": [{"key","header","units","visible"}...], "rows": [{"kind", "excluded", "cells":
// [27 texts]}...], "totalDischarge": {"absMean", "standardDeviation", "coefficientOfVariation"}}
nlohmann::json SummaryJson(const SummaryTable& table, const std::vector<SummaryColumnState>& columns);

}  // namespace rm::cli
