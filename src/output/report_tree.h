#pragma once
// The measurement report's tree of keyed texts, built from the transects of the discharge
// summary and handed to the template renderer.
//
//   User        the processing and instrument parameters, one entry per parameter with its
//               title (ending in a line feed) and its text. Built from the first transect; a
//               parameter whose text differs in any other transect gets the blank text and
//               its title goes to the mismatch list.
//   Data        Records: one row per active transect (italic when its total discharge lies
//               more than 5% from the mean); Statistics: the rows Mean, StdDev, Rm and Total.
//   Collection  facts about the report itself: program, date, units, rounding, the number of
//               transects and the station's fields.
//
// Lengths, areas, velocities and discharges are in the user's units: the length factor L is
// 1 in metric and the single-precision 3.2808 in English units, areas take L x L and
// discharges L x L x L, as the discharge summary converts them.

#include <memory>
#include <string>
#include <vector>

#include "processing/discharge_data.h"

namespace rm {

// One keyed text.
struct ReportField {
    std::string key;
    std::string text;
};
using ReportFields = std::vector<ReportField>;

// The text under `key`, or null when there is none.
const std::string* FindReportField(const ReportFields& fields, const std::string& key);

// One entry of "User". An entry without a title (RipplemarkVersion, FootNote, the units) is
// not part of the mismatch check.
struct ReportParameter {
    std::string key;
    std::string title;
    std::string text;
};

struct ReportRecord {
    ReportFields fields;
    bool italic = false;  // total discharge more than 5% from the mean
};

struct ReportStatistics {
    ReportFields mean, stdDev, rm, total;
};

struct ReportTree {
    std::vector<ReportParameter> user;
    std::vector<ReportRecord> records;
    ReportStatistics statistics;
    ReportFields collection;
    // Titles (with their line feed) of the parameters that differ between transects.
    std::vector<std::string> mismatched;

    // "The following parameters ... do not match:\n\n" and the titles; empty when all match.
    std::string MismatchMessage() const;
    const std::string* UserText(const std::string& key) const;
};

// What the report needs of a transect beyond its discharge record.
struct TransectFacts {
    double salinity = 0.0;            // ppt, as used by the computation
    bool echoSounderPresent = false;  // the recording holds echo sounder data
    int badProfiles = 0;              // profiles of the range without a discharge
};

struct ReportTransect {
    std::shared_ptr<const CDischargeData> record;
    TransectFacts facts;
    // Texts added to the transect's row of Records after its own columns, such as its pictures
    // as data URIs for a template that shows them. A key equal to a column's is dropped.
    ReportFields rowTexts;
};

struct ReportSettings {
    int unitSystem = 1;         // 1 metric, anything else English
    int significantDigits = 5;  // "SignificantDigits"
    bool usgsRounding = true;   // "UseUsgsRoundingFormat"
    std::string reportDate;     // when the report was made, as the Collection shows it
};

constexpr const char* kBlankParameterText = "                    ";
constexpr const char* kMismatchHeading =
    "The following parameters in the files selected for the discharge summary do not match:\n\n";

// Builds the whole tree. Inactive transects (Active 0) are left out. `station` lands in
// Collection after the built-in facts; a station key equal to a built-in one is dropped.
ReportTree BuildReportTree(const std::vector<ReportTransect>& transects, const ReportSettings& settings,
                           const ReportFields& station = {});

// The parts of BuildReportTree, for callers that need one of them.
std::vector<ReportParameter> UserParameters(const ReportTransect& transect, const ReportSettings& settings);
// Merges the parameters of all transects into the first one's: differing texts become blank.
std::vector<ReportParameter> MergeUserParameters(const std::vector<std::vector<ReportParameter>>& perTransect,
                                                 std::vector<std::string>& mismatched);
void FillRecordsAndStatistics(const std::vector<ReportTransect>& active, const ReportSettings& settings,
                              ReportTree& tree);

// A discharge in the user's units as the report prints it: routine C of the significant-digit
// rounding with USGS rounding, else routine B, written with the digits the rounded value has
// (at most 15 significant digits, no trailing zeros). "--" for a missing value.
std::string ReportDischargeText(double valueInUserUnits, const ReportSettings& settings);

}  // namespace rm
