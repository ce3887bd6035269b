// The "Records" and "Statistics" nodes of the measurement report: one row of texts per active
// transect, and the rows Mean, StdDev, Rm and Total over them, column by column.

#include <cmath>
#include <cstdio>
#include <functional>

#include "data/kvr_data.h"
#include "output/report_tree.h"
#include "output/summary_columns.h"
#include "output/summary_statistics.h"
#include "processing/measurement_start.h"

namespace rm {

namespace {

constexpr double kMissing = 32767.0;
constexpr const char* kUndefined = "--";

enum class Kind {
    Text,       // no number: no statistics
    Discharge,  // significant-digit rounding; statistics of absolute values
    Fixed,      // a printf format; statistics with the same number of decimals
};

struct Row {
    const CDischargeData& record;
    const TransectFacts& facts;
    NodeRef discharge;
};

struct Column {
    const char* key;
    Kind kind;
    const char* format;  // record text of a Fixed column
    const char* statisticsFormat;
    int lengthPower;  // the value is multiplied by L to this power
    bool absolute;    // statistics of absolute values
    std::function<double(const Row&)> value;
    std::function<std::string(const Row&)> text;  // Text columns
};

std::string TimeText(const ProfileHeader& header) {
    const ProfileTime t = TimeOfHeader(header);
    char text[16];
    std::snprintf(text, sizeof text, "%02d:%02d", t.hour, t.minute);
    return text;
}

// The file name without its folder and without ".KVR" (in any case).
std::string ReportFileName(const std::string& path) {
    const size_t slash = path.find_last_of("/\\");
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    if (name.size() >= 4) {
        std::string tail = name.substr(name.size() - 4);
        for (char& c : tail) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        if (tail == ".KVR") name.resize(name.size() - 4);
    }
    return name;
}

double NodeNumber(const Row& row, const char* key) {
    return row.discharge.IsNull() ? 0.0 : row.discharge.GetTyped<double>(key, 0.0);
}

double PercentMeasured(const CDischargeData& r) {
    if (r.TotalDischarge == 0.0f || r.TotalDischarge >= kMissing || r.MiddleDischarge >= kMissing) return kMissing;
    return 100.0 * static_cast<double>(r.MiddleDischarge) / static_cast<double>(r.TotalDischarge);
}

const std::vector<Column>& Columns() {
    static const std::vector<Column> columns = [] {
        const auto q = [](const char* key, float CDischargeData::*field) {
            return Column{key, Kind::Discharge, "", "", 3, true,
                          [field](const Row& r) { return static_cast<double>(r.record.*field); }, nullptr};
        };
        const auto fixed = [](const char* key, const char* format, const char* statisticsFormat, int power,
                              bool absolute, std::function<double(const Row&)> value) {
            return Column{key, Kind::Fixed, format, statisticsFormat, power, absolute, std::move(value), nullptr};
        };
        const auto text = [](const char* key, std::function<std::string(const Row&)> make) {
            return Column{key, Kind::Text, "", "", 0, false, nullptr, std::move(make)};
        };
        return std::vector<Column>{
            text("StartSide",
                 [](const Row& r) {
                     const int side = r.discharge.IsNull() ? 0 : r.discharge.GetTyped<int32_t>("CorrectedStartBankSide", 0);
                     return std::string(side == 1 ? "Right" : "Left");
                 }),
            text("FileName", [](const Row& r) { return ReportFileName(r.record.fileName); }),
            q("TopDischarge", &CDischargeData::TopDischarge),
            q("MiddleDischarge", &CDischargeData::MiddleDischarge),
            q("BottomDischarge", &CDischargeData::BottomDischarge),
            q("LeftDischarge", &CDischargeData::LeftDischarge),
            q("RightDischarge", &CDischargeData::RightDischarge),
            q("TotalDischarge", &CDischargeData::TotalDischarge),
            fixed("LeftDistance", "%.1f", "%.1f", 1, false, [](const Row& r) { return double(r.record.LeftDistance); }),
            fixed("RightDistance", "%.1f", "%.1f", 1, false, [](const Row& r) { return double(r.record.RightDistance); }),
            fixed("TotalDistance", "%.1f", "%.1f", 1, false, [](const Row& r) { return double(r.record.TotalWidth); }),
            fixed("Area", "%.1f", "%.1f", 2, true, [](const Row& r) { return r.record.Area; }),
            text("StartTime", [](const Row& r) { return TimeText(r.record.startTime); }),
            text("EndTime", [](const Row& r) { return TimeText(r.record.endTime); }),
            fixed("BoatVelocity", "%.2f", "%.2f", 1, false, [](const Row& r) { return r.record.MadeGoodSpeed; }),
            fixed("WaterVelocity", "%.2f", "%.2f", 1, false, [](const Row& r) { return r.record.MeanVelocity; }),
            fixed("TotalProfiles", "%.0f", "%.0f", 0, false, [](const Row& r) { return double(r.record.ProfileCount); }),
            fixed("BadProfiles", "%.0f", "%.0f", 0, false, [](const Row& r) { return double(r.facts.badProfiles); }),
            fixed("StartMHW", "%.2f", "%.2f", 1, false, [](const Row& r) { return NodeNumber(r, "StartMeanHW"); }),
            fixed("StartMTW", "%.2f", "%.2f", 1, false, [](const Row& r) { return NodeNumber(r, "StartMeanTW"); }),
            fixed("EndMHW", "%.2f", "%.2f", 1, false, [](const Row& r) { return NodeNumber(r, "EndMeanHW"); }),
            fixed("EndMTW", "%.2f", "%.2f", 1, false, [](const Row& r) { return NodeNumber(r, "EndMeanTW"); }),
            // The keys of the compact list.
            text("Name", [](const Row& r) { return ReportFileName(r.record.fileName); }),
            fixed("TotalWidth", "%.1f", "%.1f", 1, false, [](const Row& r) { return double(r.record.TotalWidth); }),
            fixed("MeanVelocity", "%.2f", "%.2f", 1, false, [](const Row& r) { return r.record.MeanVelocity; }),
            q("Discharge", &CDischargeData::TotalDischarge),
            fixed("PercentMeasuredDischarge", "%.1f", "%.1f", 0, false,
                  [](const Row& r) { return PercentMeasured(r.record); }),
        };
    }();
    return columns;
}

std::string Printf(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

// The value of a column in the user's units; kMissing stays missing.
double UserValue(const Column& column, const Row& row, double L) {
    const double v = column.value(row);
    if (v >= kMissing) return kMissing;
    double factor = 1.0;
    for (int i = 0; i < column.lengthPower; ++i) factor *= L;
    return v * factor;
}

std::string CellText(const Column& column, const Row& row, const ReportSettings& settings, double L) {
    if (column.kind == Kind::Text) return column.text(row);
    const double v = UserValue(column, row, L);
    if (v >= kMissing) return kUndefined;
    if (column.kind == Kind::Discharge) return ReportDischargeText(v, settings);
    return Printf(column.format, v);
}

struct ColumnStatistics {
    bool computed = false;
    SummaryStatistics values;
};

ColumnStatistics StatisticsOf(const Column& column, const std::vector<Row>& rows, double L) {
    ColumnStatistics result;
    if (column.kind == Kind::Text) return result;
    std::vector<float> values;
    for (const Row& row : rows) {
        if (row.record.ExcludeFromStatistics != 0) continue;
        const double v = UserValue(column, row, L);
        if (v >= kMissing) {
            values.push_back(static_cast<float>(kMissing));
            continue;
        }
        const float stored = static_cast<float>(v);
        values.push_back(column.absolute ? std::fabs(stored) : stored);
    }
    result.computed = ComputeSummaryStatistics(values, result.values);
    return result;
}

std::string StatisticText(const Column& column, float value, const ReportSettings& settings) {
    if (column.kind == Kind::Discharge) return ReportDischargeText(value, settings);
    return Printf(column.statisticsFormat, value);
}

}  // namespace

void FillRecordsAndStatistics(const std::vector<ReportTransect>& active, const ReportSettings& settings,
                              ReportTree& tree) {
    const double L = SummaryLengthFactor(settings.unitSystem);
    std::vector<Row> rows;
    for (const ReportTransect& t : active) {
        rows.push_back(Row{*t.record, t.facts, t.record->settings.IsNull() ? NodeRef() : MeasurementDischargeNode(*t.record)});
    }

    tree.records.assign(rows.size(), ReportRecord{});
    ReportStatistics& s = tree.statistics;
    s = ReportStatistics{};
    ColumnStatistics totalDischarge;
    for (const Column& column : Columns()) {
        for (size_t i = 0; i < rows.size(); ++i) {
            tree.records[i].fields.push_back({column.key, CellText(column, rows[i], settings, L)});
        }
        const ColumnStatistics stats = StatisticsOf(column, rows, L);
        if (std::string(column.key) == "TotalDischarge") totalDischarge = stats;
        if (!stats.computed) {
            s.mean.push_back({column.key, kUndefined});
            s.stdDev.push_back({column.key, kUndefined});
            s.rm.push_back({column.key, kUndefined});
        } else {
            const SummaryStatistics& v = stats.values;
            s.mean.push_back({column.key, StatisticText(column, v.mean, settings)});
            s.stdDev.push_back({column.key, StatisticText(column, v.deviation, settings)});
            s.rm.push_back({column.key, v.mean == 0.0f ? kUndefined : Printf("%.3f", std::fabs(v.deviation / v.mean))});
        }
        std::string total = kUndefined;
        if (!rows.empty() && std::string(column.key) == "StartTime") total = column.text(rows.front());
        if (!rows.empty() && std::string(column.key) == "EndTime") total = column.text(rows.back());
        s.total.push_back({column.key, total});
    }

    for (size_t i = 0; i < rows.size(); ++i) {
        ReportFields& fields = tree.records[i].fields;
        for (const ReportField& text : active[i].rowTexts)
            if (FindReportField(fields, text.key) == nullptr) fields.push_back(text);
    }

    // Italics: a total discharge more than 5% from the mean of the absolute totals.
    if (totalDischarge.computed) {
        const double mean = totalDischarge.values.mean;
        for (size_t i = 0; i < rows.size(); ++i) {
            const double total = static_cast<double>(rows[i].record.TotalDischarge);
            if (total >= kMissing) continue;
            const double value = std::fabs(static_cast<float>(total * L * L * L));
            tree.records[i].italic = std::fabs(value - mean) > 0.05 * std::fabs(mean);
        }
    }
}

}  // namespace rm
