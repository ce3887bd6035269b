#include "output/report_tree.h"

#include <cstdio>
#include <set>

#include "data/product.h"
#include "output/summary_columns.h"
#include "processing/measurement_start.h"
#include "processing/settings_reader.h"
#include "processing/significant_digits.h"

namespace rm {

namespace {

std::string Format(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string FormatInt(int value) {
    char text[24];
    std::snprintf(text, sizeof text, "%d", value);
    return text;
}

// A fit name with blanks to the width of the blank text, so that every text of the entry
// has one width.
std::string FitText(int fitType) {
    std::string text = fitType == 1 ? "Power " : "Constant ";
    const std::string blank = kBlankParameterText;
    if (text.size() < blank.size()) text.append(blank.size() - text.size(), ' ');
    return text;
}

std::string AreaMethodText(int method) {
    switch (method) {
        case 0: return "Mean Flow";
        case 1: return "Avg Course";
        case 2: return "Proj Angle";
        default: return "none";
    }
}

std::string BankText(int method) {
    switch (method) {
        case 0: return "User";
        case 1: return "Vertical";
        default: return "Sloped";
    }
}

std::string ReferenceText(int reference) {
    switch (reference) {
        case 2: return "GPS";
        case 0: return "System";
        default: return "BTrack";
    }
}

// The settings node's Discharge child, or a scratch node that yields the defaults.
NodeRef DischargeOf(const CDischargeData& record) {
    NodeRef discharge = record.settings.IsNull() ? NodeRef() : MeasurementDischargeNode(record);
    if (discharge.IsNull()) {
        discharge = NodeRef::MakeNew();
        CreateDischargeDefaults(discharge);
    }
    return discharge;
}

}  // namespace

const std::string* FindReportField(const ReportFields& fields, const std::string& key) {
    for (const ReportField& field : fields) {
        if (field.key == key) return &field.text;
    }
    return nullptr;
}

std::string ReportDischargeText(double value, const ReportSettings& settings) {
    if (value >= 32767.0) return "--";
    const double rounded = settings.usgsRounding ? UsgsRoundedValue(value, settings.significantDigits)
                                                 : SignificantDigitsValue(value, settings.significantDigits);
    char text[64];
    std::snprintf(text, sizeof text, "%.15g", rounded);
    return std::string(text) == "-0" ? "0" : text;
}

std::vector<ReportParameter> UserParameters(const ReportTransect& transect, const ReportSettings& settings) {
    const CDischargeData& r = *transect.record;
    const NodeRef discharge = DischargeOf(r);
    const bool metric = settings.unitSystem == 1;
    const double L = SummaryLengthFactor(settings.unitSystem);

    // Read as the computation reads it: with the same top and bottom the bottom is computed with
    // the top's fit and exponent.
    const ExtrapolationChoice fits = ReadExtrapolation(discharge);
    const int topFit = fits.top.fitType;
    const double topExponent = fits.top.exponent;
    const int bottomFit = fits.bottom.fitType;
    const double bottomExponent = fits.bottom.exponent;

    std::string footNote = "Note: Units for the above parameters are:";
    footNote += metric ? "Distance (m), Velocity (m/s), Area (m2), Discharge (cms)"
                       : "Distance (ft), Velocity (ft/s), Area (ft2), Discharge (cfs)";
    footNote += "\nDischarge values in italics have a Total Discharge that is more than 5% from the mean.";

    return {
        {"TopFit", "Profile Extrapolation - Top Fit\n", FitText(topFit)},
        {"TopExponent", "Profile Extrapolation - Top Exponent\n", Format("%.4f", topExponent)},
        {"BottomFit", "Profile Extrapolation - Bottom Fit\n", FitText(bottomFit)},
        {"BottomExponent", "Profile Extrapolation - Bottom Exponent\n", Format("%.4f", bottomExponent)},
        {"AreaMethod", "Area Computation\n", AreaMethodText(discharge.GetTyped<int32_t>("AreaComputation", 0))},
        {"LeftBank", "Left Bank Method\n", BankText(discharge.GetTyped<int32_t>("LeftBankMethod", 2))},
        {"RightBank", "Right Bank Method\n", BankText(discharge.GetTyped<int32_t>("RightBankMethod", 2))},
        // The mean course of the area always runs over the whole range of the transect.
        {"OrientationProfiles", "River Orientation Profiles\n", "all"},
        {"SerialNumber", "Serial Number\n", r.SystemName},
        {"SystemFrequency", "System Frequency\n", r.SystemType},
        {"FirmwareVersion", "Firmware Version\n", r.SoftwareVersion},
        {"RipplemarkVersion", "", kProgramVersion},
        {"AveragingInterval", "Averaging Interval\n", Format("%.1f", r.Interval)},
        {"MountingDepth", "Transducer Depth\n", Format("%.2f", r.TransducerDepth * L)},
        {"BlankingDistance", "Blanking Distance\n", Format("%.2f", r.Blanking * L)},
        {"NumberOfCells", "Number of Cells\n", FormatInt(r.NumberOfCells)},
        {"CellSize", "Cell Size\n", Format("%.2f", r.CellSize * L)},
        {"TrackReference", "Track Reference\n", ReferenceText(r.TrackReference)},
        {"VelocityReference", "Velocity Reference\n", ReferenceText(r.VelocityReference)},
        {"DepthReference", "Depth Reference\n", r.DepthReference == 0 ? "KVR" : "EchoS"},
        {"MagneticDeclination", "Magnetic Declination\n",
         Format("%.2f", discharge.GetTyped<double>("MagneticDeclination", 0.0))},
        {"Salinity", "Salinity\n", Format("%.1f", transect.facts.salinity)},
        {"EchoSounder", "Echo Sounder\n", transect.facts.echoSounderPresent ? "Present" : "Not Pres."},
        {"FootNote", "", footNote},
        {"UnitDistance", "", metric ? "m" : "ft"},
        {"UnitVelocity", "", metric ? "m/s" : "ft/s"},
        {"UnitArea", "", metric ? "m2" : "ft2"},
        {"UnitDischarge", "", metric ? "m3/s" : "cfs"},
    };
}

std::vector<ReportParameter> MergeUserParameters(const std::vector<std::vector<ReportParameter>>& perTransect,
                                                 std::vector<std::string>& mismatched) {
    mismatched.clear();
    if (perTransect.empty()) return {};
    std::vector<ReportParameter> merged = perTransect.front();
    for (ReportParameter& parameter : merged) {
        if (parameter.title.empty()) continue;
        for (size_t t = 1; t < perTransect.size(); ++t) {
            bool differs = true;
            for (const ReportParameter& other : perTransect[t]) {
                if (other.key == parameter.key) {
                    differs = other.text != parameter.text;
                    break;
                }
            }
            if (differs) {
                parameter.text = kBlankParameterText;
                mismatched.push_back(parameter.title);
                break;
            }
        }
    }
    return merged;
}

std::string ReportTree::MismatchMessage() const {
    if (mismatched.empty()) return "";
    std::string message = kMismatchHeading;
    for (const std::string& title : mismatched) message += title;
    return message;
}

const std::string* ReportTree::UserText(const std::string& key) const {
    for (const ReportParameter& parameter : user) {
        if (parameter.key == key) return &parameter.text;
    }
    return nullptr;
}

ReportTree BuildReportTree(const std::vector<ReportTransect>& transects, const ReportSettings& settings,
                           const ReportFields& station) {
    std::vector<ReportTransect> active;
    for (const ReportTransect& t : transects) {
        if (t.record && t.record->Active != 0) active.push_back(t);
    }
    ReportTree tree;
    std::vector<std::vector<ReportParameter>> perTransect;
    for (const ReportTransect& t : active) perTransect.push_back(UserParameters(t, settings));
    if (perTransect.empty()) {
        // Without a transect the units and the foot note still describe the report.
        ReportTransect none{std::make_shared<CDischargeData>(), {}};
        for (const ReportParameter& p : UserParameters(none, settings)) {
            tree.user.push_back({p.key, p.title, p.title.empty() ? p.text : ""});
        }
    } else {
        tree.user = MergeUserParameters(perTransect, tree.mismatched);
    }
    FillRecordsAndStatistics(active, settings, tree);

    const bool metric = settings.unitSystem == 1;
    tree.collection = {
        {"ProgramName", kProgramName},
        {"ProgramVersion", kProgramVersion},
        {"ReportDate", settings.reportDate},
        {"NumberOfTransects", FormatInt(static_cast<int>(active.size()))},
        {"UnitSystem", metric ? "Metric" : "English"},
        {"SignificantDigits", FormatInt(settings.significantDigits)},
        {"RoundingFormat", settings.usgsRounding ? "USGS" : "Significant digits"},
        {"ParametersMatch", tree.mismatched.empty() ? "Yes" : "No"},
    };
    std::set<std::string> builtIn;
    for (const ReportField& f : tree.collection) builtIn.insert(f.key);
    for (const ReportField& f : station) {
        if (builtIn.insert(f.key).second) tree.collection.push_back(f);
    }
    return tree;
}

}  // namespace rm
