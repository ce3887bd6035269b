#include "cli/summary_output.h"

#include <algorithm>

namespace rm::cli {

namespace {

std::string Centred(const std::string& text, size_t width) {
    if (text.size() >= width) return text;
    const size_t left = (width - text.size()) / 2;
    return std::string(left, ' ') + text + std::string(width - text.size() - left, ' ');
}

const char* KindName(SummaryRowKind kind) {
    switch (kind) {
        case SummaryRowKind::Record: return "record";
        case SummaryRowKind::Blank: return "blank";
        case SummaryRowKind::Mean: return "mean";
        case SummaryRowKind::Deviation: return "deviation";
        case SummaryRowKind::Coefficient: return "coefficient";
    }
    return "";
}

bool Shown(const std::vector<SummaryColumnState>& columns, size_t c) {
    return c >= columns.size() || columns[c].width > 0;
}

}  // namespace

std::string SummaryListText(const SummaryTable& table, const std::vector<SummaryColumnState>& columns) {
    std::vector<size_t> shown;
    std::vector<size_t> widths;
    for (size_t c = 0; c < kSummaryColumnCount; ++c) {
        if (!Shown(columns, c)) continue;
        size_t width = std::max(table.header[c].size(), table.units[c].size());
        for (const SummaryRow& row : table.rows) width = std::max(width, row.cells[c].size());
        shown.push_back(c);
        widths.push_back(width);
    }
    std::string text;
    const auto line = [&](const std::array<std::string, kSummaryColumnCount>& cells) {
        std::string out;
        for (size_t i = 0; i < shown.size(); ++i) {
            if (i > 0) out += "  ";
            out += Centred(cells[shown[i]], widths[i]);
        }
        out.erase(out.find_last_not_of(' ') + 1);
        text += out + "\n";
    };
    line(table.header);
    line(table.units);
    for (const SummaryRow& row : table.rows) line(row.cells);
    return text;
}

nlohmann::json SummaryJson(const SummaryTable& table, const std::vector<SummaryColumnState>& columns) {
    nlohmann::json out;
    out["columns"] = nlohmann::json::array();
    for (size_t c = 0; c < kSummaryColumnCount; ++c) {
        out["columns"].push_back({{"key", SummaryColumns()[c].key},
                                  {"header", table.header[c]},
                                  {"units", table.units[c]},
                                  {"visible", Shown(columns, c)}});
    }
    out["rows"] = nlohmann::json::array();
    for (const SummaryRow& row : table.rows) {
        out["rows"].push_back(
            {{"kind", KindName(row.kind)}, {"excluded", row.excluded}, {"cells", nlohmann::json(row.cells)}});
    }
    out["totalDischarge"] = {{"absMean", table.absMean},
                             {"standardDeviation", table.standardDeviation},
                             {"coefficientOfVariation", table.coefficientOfVariation}};
    return out;
}

}  // namespace rm::cli
