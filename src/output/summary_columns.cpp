#include "output/summary_columns.h"

namespace rm {

const std::array<SummaryColumn, kSummaryColumnCount>& SummaryColumns() {
    static const std::array<SummaryColumn, kSummaryColumnCount> columns{{
        {"File Name", "File Name", " ", " ", 120},
        {"Start Date", "Start", "Date", "Date", 85},
        {"Start Time", "Start", "Time", "Time", 75},
        {"End Date", "End", "Date", "Date", 85},
        {"End Time", "End", "Time", "Time", 75},
        {"# Profiles", "# Profiles", " ", " ", 65},
        {"Track Reference", "Track", "Reference", "Reference", 85},
        {"Velocity Reference", "Velocity", "Reference", "Reference", 85},
        {"Depth Reference", "Depth", "Reference", "Reference", 80},
        {"SW Ping On/Off", "SW Ping", "On/Off", "On/Off", 65},
        {"Start MHW", "Start MHW", "(m)", "(ft)", 85},
        {"Start MTW", "Start MTW", "(m)", "(ft)", 85},
        {"End MHW", "End MHW", "(m)", "(ft)", 85},
        {"End MTW", "End MTW", "(m)", "(ft)", 85},
        {"Track Distance", "Track Distance", "(m)", "(ft)", 0},
        {"Left Distance", "Left Distance", "(m)", "(ft)", 100},
        {"Measured Distance", "Measured Distance", "(m)", "(ft)", 100},
        {"Right Distance", "Right Distance", "(m)", "(ft)", 100},
        {"Total Distance", "Total Distance", "m", "ft", 100},
        {"Area", "Area", "(m^2)", "(ft^2)", 90},
        {"Mean Vel", "Mean Vel", "(m/s)", "(ft/s)", 80},
        {"Top Q", "Top Discharge", "(m^3/s)", "(ft^3/s)", 110},
        {"Middle Q", "Middle Discharge", "(m^3/s)", "(ft^3/s)", 110},
        {"Bottom Q", "Bottom Discharge", "(m^3/s)", "(ft^3/s)", 110},
        {"Left Q", "Left Discharge", "(m^3/s)", "(ft^3/s)", 110},
        {"Right Q", "Right Discharge", "(m^3/s)", "(ft^3/s)", 110},
        {"Total Q", "Total Discharge", "(m^3/s)", "(ft^3/s)", 110},
    }};
    return columns;
}

double SummaryLengthFactor(int unitSystem) { return unitSystem == 1 ? 1.0 : static_cast<double>(3.2808f); }

NodeRef SummaryColumnsNode(const AppSettings& app) { return app.Section("DataDisplay/DischargeSummary"); }

namespace {
NodeRef ColumnNode(const NodeRef& columns, int index) {
    return columns.GetOrCreateChild(SummaryColumns()[static_cast<size_t>(index)].key);
}
}  // namespace

std::vector<SummaryColumnState> GiveColumnNodes(const NodeRef& columns) {
    std::vector<SummaryColumnState> states;
    for (int i = 0; i < kSummaryColumnCount; ++i) {
        const NodeRef node = ColumnNode(columns, i);
        node.SetValue("Position", Variant(static_cast<uint8_t>(i)));
        SummaryColumnState state;
        state.visible = node.GetTyped<int16_t>("ColumnVisible", 1) != 0;
        const int32_t width = node.GetTyped<int32_t>("ColumnWidth", SummaryColumns()[static_cast<size_t>(i)].defaultWidth);
        state.width = state.visible ? width : 0;
        states.push_back(state);
    }
    return states;
}

void StoreColumnChecks(const NodeRef& columns, const std::vector<bool>& visible) {
    for (int i = 0; i < kSummaryColumnCount && i < static_cast<int>(visible.size()); ++i) {
        ColumnNode(columns, i).SetValue("ColumnVisible", Variant(static_cast<int16_t>(visible[static_cast<size_t>(i)] ? 1 : 0)));
    }
}

void StoreColumnWidths(const NodeRef& columns, const std::vector<int>& widths) {
    for (int i = 0; i < kSummaryColumnCount && i < static_cast<int>(widths.size()); ++i) {
        const NodeRef node = ColumnNode(columns, i);
        const int width = widths[static_cast<size_t>(i)];
        if (width > 0) {
            node.SetValue("ColumnVisible", Variant(int16_t{1}));
            node.SetValue("ColumnWidth", Variant(int32_t{width}));
        } else {
            node.SetValue("ColumnVisible", Variant(int16_t{0}));
        }
    }
}

}  // namespace rm
