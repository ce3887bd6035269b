#pragma once
// The 27 columns of the discharge summary and their settings nodes. Each column has a node
// below the summary's column node, named by the column key, with "Position" (u8, rewritten to
// the index), "ColumnVisible" (i16, default 1) and "ColumnWidth" (i32, default the table's
// width). A visible column is shown at its stored width, a hidden one at width 0; "Track
// Distance" starts hidden because its default width is 0.

#include <array>
#include <vector>

#include "app/app_settings.h"

namespace rm {

constexpr int kSummaryColumnCount = 27;

struct SummaryColumn {
    const char* key;        // also the first header line in the settings tree
    const char* header;     // first header line in the list
    const char* metric;     // second header line, metric
    const char* english;    // second header line, English
    int defaultWidth;
};

const std::array<SummaryColumn, kSummaryColumnCount>& SummaryColumns();

// Column indices the code refers to by name.
namespace summary_column {
constexpr int FileName = 0, StartDate = 1, StartTime = 2, EndDate = 3, EndTime = 4, Profiles = 5;
constexpr int TrackReference = 6, VelocityReference = 7, DepthReference = 8, ShallowWaterPing = 9;
constexpr int StartMHW = 10, StartMTW = 11, EndMHW = 12, EndMTW = 13;
constexpr int TrackDistance = 14, LeftDistance = 15, MeasuredDistance = 16, RightDistance = 17, TotalDistance = 18;
constexpr int Area = 19, MeanVelocity = 20;
constexpr int TopQ = 21, MiddleQ = 22, BottomQ = 23, LeftQ = 24, RightQ = 25, TotalQ = 26;
}  // namespace summary_column

// The length factor L: 1 in metric, the single-precision 3.2808 in English (Unit System 0).
// Area and discharge use L x L and L x L x L formed in double from that same float.
double SummaryLengthFactor(int unitSystem);

// The node that holds the column nodes: "DataDisplay/DischargeSummary" of the application tree.
NodeRef SummaryColumnsNode(const AppSettings& app);

struct SummaryColumnState {
    bool visible = true;
    int width = 0;  // the width shown: the stored width when visible, else 0
};

// Gives the column nodes to the list: creates missing nodes and keys with their defaults,
// rewrites each "Position" to its index and returns the shown state of every column.
std::vector<SummaryColumnState> GiveColumnNodes(const NodeRef& columns);
// "&Options" OK: writes each check as "ColumnVisible".
void StoreColumnChecks(const NodeRef& columns, const std::vector<bool>& visible);
// Closing the list: a column wider than 0 stores visible and its width; a column of width 0
// stores invisible and keeps its stored width.
void StoreColumnWidths(const NodeRef& columns, const std::vector<int>& widths);

}  // namespace rm
