#include "output/summary_table.h"

#include <cmath>
#include <cstdio>

#include "output/significant_digits.h"
#include "output/summary_statistics.h"
#include "processing/measurement_start.h"
#include "processing/processing_types.h"

namespace rm {

namespace {

namespace col = summary_column;

enum class Format { Integer, Fixed1, Fixed2, Rounded };

// One column with statistics: its field, format, unit power and whether magnitudes are taken.
struct StatisticsColumn {
    int column;
    Format format;
    int lengthPower;  // the factor is L to this power
    bool absolute;
};

constexpr StatisticsColumn kStatisticsColumns[] = {
    {col::Profiles, Format::Integer, 0, false},    {col::StartMHW, Format::Fixed2, 1, false},
    {col::StartMTW, Format::Fixed2, 1, false},     {col::EndMHW, Format::Fixed2, 1, false},
    {col::EndMTW, Format::Fixed2, 1, false},       {col::TrackDistance, Format::Fixed1, 1, false},
    {col::LeftDistance, Format::Fixed1, 1, false}, {col::MeasuredDistance, Format::Fixed1, 1, false},
    {col::RightDistance, Format::Fixed1, 1, false}, {col::TotalDistance, Format::Fixed1, 1, false},
    {col::Area, Format::Rounded, 2, true},         {col::MeanVelocity, Format::Fixed2, 1, false},
    {col::TopQ, Format::Rounded, 3, true},         {col::MiddleQ, Format::Rounded, 3, true},
    {col::BottomQ, Format::Rounded, 3, true},      {col::LeftQ, Format::Rounded, 3, true},
    {col::RightQ, Format::Rounded, 3, true},       {col::TotalQ, Format::Rounded, 3, true},
};

std::string Printf(const char* format, double value) {
    char text[400];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

// The column's value of a record, in metric units.
double FieldValue(const CDischargeData& r, int column) {
    const auto recorded = [&](const char* key) {
        const NodeRef discharge = MeasurementDischargeNode(r);
        return discharge.FindIndex(key) < 0 ? 0.0 : discharge.GetTyped<double>(key, 0.0);
    };
    switch (column) {
        case col::Profiles: return r.ProfileCount;
        case col::StartMHW: return recorded("StartMeanHW");
        case col::StartMTW: return recorded("StartMeanTW");
        case col::EndMHW: return recorded("EndMeanHW");
        case col::EndMTW: return recorded("EndMeanTW");
        case col::TrackDistance: return r.TrackLength;
        case col::LeftDistance: return r.LeftDistance;
        case col::MeasuredDistance: return r.MadeGood;
        case col::RightDistance: return r.RightDistance;
        case col::TotalDistance: return r.TotalWidth;
        case col::Area: return r.Area;
        case col::MeanVelocity: return r.MeanVelocity;
        case col::TopQ: return r.TopDischarge;
        case col::MiddleQ: return r.MiddleDischarge;
        case col::BottomQ: return r.BottomDischarge;
        case col::LeftQ: return r.LeftDischarge;
        case col::RightQ: return r.RightDischarge;
        case col::TotalQ: return r.TotalDischarge;
        default: return 0.0;
    }
}

// A missing value stays 32767 in any unit, so that it is never taken for a measured one.
double Scaled(double value, double factor) { return value == MissingValue ? value : value * factor; }

double Power(double L, int power) {
    double f = 1.0;
    for (int i = 0; i < power; ++i) f *= L;
    return f;
}

std::string ValueText(double value, Format format, bool wide, int digits) {
    if (value == MissingValue) return "--";
    switch (format) {
        case Format::Integer: return Printf(wide ? "%8.0f" : "%.0f", value);
        case Format::Fixed1: return Printf(wide ? "%8.1f" : "%.1f", value);
        case Format::Fixed2: return Printf(wide ? "%8.2f" : "%.2f", value);
        case Format::Rounded: return SignificantDigitsText(value, digits);
    }
    return {};
}

const char* ReferenceText(int code) {
    switch (code) {
        case 0: return "System";
        case 1: return "Bottom-Track";
        case 2: return "GPS";
        default: return "";
    }
}

bool ShallowWaterPingOn(const CDischargeData& r) {
    if (r.ShallowWaterPing == 0) return false;
    const NodeRef discharge = MeasurementDischargeNode(r);
    return discharge.FindIndex("UseShallowWaterPing") >= 0 && discharge.GetTyped<int32_t>("UseShallowWaterPing", 1) != 0;
}

SummaryRow RecordRow(const CDischargeData& r, double L, int digits) {
    SummaryRow row;
    row.excluded = r.ExcludeFromStatistics != 0;
    auto& c = row.cells;
    c[col::FileName] = r.fileName;
    c[col::StartDate] = SummaryDateText(r.startTime);
    c[col::StartTime] = SummaryTimeText(r.startTime);
    c[col::EndDate] = SummaryDateText(r.endTime);
    c[col::EndTime] = SummaryTimeText(r.endTime);
    c[col::Profiles] = std::to_string(r.ProfileCount);
    c[col::TrackReference] = ReferenceText(r.TrackReference);
    c[col::VelocityReference] = ReferenceText(r.VelocityReference);
    c[col::DepthReference] = r.DepthReference == 0 ? "Bottom-Track" : "Echo Sounder";
    c[col::ShallowWaterPing] = ShallowWaterPingOn(r) ? "On" : "Off";
    for (const StatisticsColumn& s : kStatisticsColumns) {
        if (s.column == col::Profiles) continue;
        c[static_cast<size_t>(s.column)] =
            ValueText(Scaled(FieldValue(r, s.column), Power(L, s.lengthPower)), s.format, true, digits);
    }
    return row;
}

SummaryRow LabelRow(SummaryRowKind kind, const char* label) {
    SummaryRow row;
    row.kind = kind;
    row.cells[col::FileName] = label;
    return row;
}

void FillStatistics(const std::vector<const CDischargeData*>& active, double L, int digits, SummaryTable& table) {
    const size_t n = static_cast<size_t>(table.recordRows);
    SummaryRow& meanRow = table.rows[n + 1];
    SummaryRow& deviationRow = table.rows[n + 2];
    SummaryRow& coefficientRow = table.rows[n + 3];
    for (const StatisticsColumn& s : kStatisticsColumns) {
        const size_t c = static_cast<size_t>(s.column);
        if (active.empty()) {
            meanRow.cells[c] = deviationRow.cells[c] = ValueText(0.0, s.format, false, digits);
            coefficientRow.cells[c] = "--";
            continue;
        }
        std::vector<float> values;
        for (const CDischargeData* r : active) {
            if (r->ExcludeFromStatistics != 0) continue;
            float v = static_cast<float>(Scaled(FieldValue(*r, s.column), Power(L, s.lengthPower)));
            if (s.absolute && v != static_cast<float>(MissingValue)) v = std::fabs(v);
            values.push_back(v);
        }
        SummaryStatistics stats;
        ComputeSummaryStatistics(values, stats);
        meanRow.cells[c] = ValueText(stats.mean, s.format, true, digits);
        deviationRow.cells[c] = ValueText(stats.deviation, s.format, true, digits);
        coefficientRow.cells[c] =
            stats.mean == 0.0f ? "--" : Printf("%8.3f", static_cast<double>(std::fabs(stats.deviation / stats.mean)));
    }
    table.absMean = meanRow.cells[col::TotalQ];
    table.standardDeviation = deviationRow.cells[col::TotalQ];
    table.coefficientOfVariation = coefficientRow.cells[col::TotalQ];
}

}  // namespace

RowColours ColoursOf(const SummaryRow& row) {
    switch (row.kind) {
        case SummaryRowKind::Record:
            return row.excluded ? RowColours{0xFFFFFF, 0xFF0000} : RowColours{0x000000, 0xFFFFFF};
        case SummaryRowKind::Blank: return RowColours{0xFF0000, 0xAAAAAA};
        default: return RowColours{0x000000, 0xDCDCDC};
    }
}

std::string SummaryDateText(const ProfileHeader& t) {
    char text[64];
    std::snprintf(text, sizeof text, "%02d/%02d/%d ", t.day, t.month, t.year);
    return text;
}

std::string SummaryTimeText(const ProfileHeader& t) {
    if (t.hour > 24 || t.minute > 60 || t.second > 60) return {};
    char text[64];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", t.hour, t.minute, t.second);
    return text;
}

SummaryTable BuildSummaryTable(SummaryList& list, const SummaryTableOptions& options) {
    list.RemoveNameless();
    const double L = SummaryLengthFactor(options.unitSystem);
    SummaryTable table;
    for (int i = 0; i < kSummaryColumnCount; ++i) {
        const SummaryColumn& column = SummaryColumns()[static_cast<size_t>(i)];
        table.header[static_cast<size_t>(i)] = column.header;
        table.units[static_cast<size_t>(i)] = L == 1.0 ? column.metric : column.english;
    }
    std::vector<const CDischargeData*> active;
    for (const SummaryList::Record& r : list.Records()) {
        if (!IsShown(*r)) continue;
        active.push_back(r.get());
        table.rows.push_back(RecordRow(*r, L, options.significantDigits));
    }
    table.recordRows = static_cast<int>(table.rows.size());
    table.rows.push_back(LabelRow(SummaryRowKind::Blank, ""));
    table.rows.push_back(LabelRow(SummaryRowKind::Mean, "Mean"));
    table.rows.push_back(LabelRow(SummaryRowKind::Deviation, "Std. Dev."));
    table.rows.push_back(LabelRow(SummaryRowKind::Coefficient, "Coefficient of Variation"));
    FillStatistics(active, L, options.significantDigits, table);
    return table;
}

std::string SummaryCopyText(const SummaryTable& table) {
    std::string text;
    const auto line = [&text](const std::array<std::string, kSummaryColumnCount>& cells) {
        for (const std::string& cell : cells) text += cell + "\t";
        text += "\r\n";
    };
    line(table.header);
    line(table.units);
    for (const SummaryRow& row : table.rows) line(row.cells);
    return text;
}

}  // namespace rm
