#include "output/flow_data_sample.h"

#include <cstdio>

#include "app/survey_document.h"
#include "processing/measurement_start.h"
#include "data/civil_date.h"

namespace rm {

namespace {

bool LeapYear(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int DaysInMonth(int y, int m) {
    static constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && LeapYear(y) ? 29 : kDays[m - 1];
}

// A value of the record's Discharge node read without adding it; `def` when missing.
template <class T>
T DischargeValue(const CDischargeData& record, const char* key, T def) {
    const NodeRef discharge = MeasurementDischargeNode(record);
    const int index = discharge.FindIndex(key);
    if (index < 0 || discharge.ItemValue(index).IsEmptyOrNull()) return def;
    return discharge.ItemValue(index).As<T>();
}

uint8_t AsByte(int32_t v) { return static_cast<uint8_t>(v); }

}  // namespace

std::string FlowFrequencyText(int code) {
    static const char* const kTexts[] = {"3 MHz", "1.5 MHz", "750 kHz", "500 kHz", "250 kHz", "1 MHz", "125 kHz"};
    if (code < 0 || code > 6) return {};
    return kTexts[code];
}

FlowMeasurement FlowMeasurementOf(const CSurveyKVRDoc& document) {
    FlowMeasurement m;
    m.fileName = document.Stem() + ".kvr";
    m.filePath = document.Folder();
    m.record = &document.Measurement();
    m.system = document.SystemRoot();
    m.hasSource = true;
    return m;
}

bool FlowRecordUsable(const FlowMeasurement& m) {
    return m.record != nullptr && m.record->Active != 0 && (m.hasSource || !m.record->fileName.empty());
}

namespace {
// The value of a key of the system tree's `Conf` child, or null; the tree is not changed.
const Variant* SystemConfValue(const NodeRef& system, const char* key) {
    const int confIndex = system.FindIndex("Conf");
    if (confIndex < 0) return nullptr;
    const NodeRef conf = system.ItemChild(confIndex);
    const int index = conf.FindIndex(key);
    if (index < 0 || conf.ItemValue(index).IsEmptyOrNull()) return nullptr;
    return &conf.ItemValue(index);
}
}  // namespace

std::string SystemConfText(const NodeRef& system, const char* key) {
    const Variant* value = SystemConfValue(system, key);
    return value == nullptr ? std::string() : value->As<std::string>();
}

std::string FlowSystemFrequency(const NodeRef& system) {
    const Variant* code = SystemConfValue(system, "SystemFreq");
    return code == nullptr ? std::string() : FlowFrequencyText(code->As<int32_t>());
}

bool OleDateOf(const ProfileTime& t, double& days) {
    days = 0.0;
    if (t.year < 100 || t.year > 9999 || t.month < 1 || t.month > 12) return false;
    if (t.day < 1 || t.day > DaysInMonth(t.year, t.month)) return false;
    if (t.hour < 0 || t.hour > 23 || t.minute < 0 || t.minute > 59 || t.second < 0 || t.second > 59) return false;
    const int64_t whole = DaysFromCivil(t.year, t.month, t.day) - DaysFromCivil(1899, 12, 30);
    const double fraction = (t.hour * 3600.0 + t.minute * 60.0 + t.second) / 86400.0;
    // Before the epoch the OLE form counts whole days back and the time of day forward.
    days = whole >= 0 ? static_cast<double>(whole) + fraction : static_cast<double>(whole) - fraction;
    return true;
}

const std::array<FlowSampleRow, kFlowSampleRows>& FlowSampleStructure() {
    using K = FlowValueKind;
    static const std::array<FlowSampleRow, kFlowSampleRows> rows{{
        {"SampleNumber", "", "LONG", K::Long},
        {"Time", "", "VariantDate", K::Date},
        {"Duration", "", "DOUBLE", K::Duration},
        {"NumberOfProfiles", "", "LONG", K::Long},
        {"TrackReference", "", "BYTE", K::Byte},
        {"VelocityReference", "", "BYTE", K::Byte},
        {"DepthReference", "", "BYTE", K::Byte},
        {"UseSwPing", "", "BYTE", K::Byte},
        {"StartMeanHW", "m", "DOUBLE", K::Double},
        {"StartMeanTW", "m", "DOUBLE", K::Double},
        {"EndMeanHW", "m", "DOUBLE", K::Double},
        {"EndMeanTW", "m", "DOUBLE", K::Double},
        {"TrackDistance", "m", "DOUBLE", K::Double},
        {"LeftDistance", "m", "DOUBLE", K::Double},
        {"DMG", "m", "DOUBLE", K::Double},
        {"RightDistance", "m", "DOUBLE", K::Double},
        {"Width", "m", "DOUBLE", K::Double},
        {"Stage", "m", "DOUBLE", K::Double},
        {"Area", "m2", "DOUBLE", K::Double},
        {"MeanVelocity", "m/s", "DOUBLE", K::Double},
        {"TopDischarge", "cms", "DOUBLE", K::Double},
        {"MiddleDischarge", "cms", "DOUBLE", K::Double},
        {"BottomDischarge", "cms", "DOUBLE", K::Double},
        {"LeftDischarge", "cms", "DOUBLE", K::Double},
        {"RightDischarge", "cms", "DOUBLE", K::Double},
        {"TotalDischarge", "cms", "DOUBLE", K::Double},
    }};
    return rows;
}

FlowSample MakeFlowSample(const FlowMeasurement& m) {
    FlowSample s;
    if (m.record == nullptr) return s;
    const CDischargeData& r = *m.record;
    s.start = TimeOfHeader(r.startTime);
    OleDateOf(s.start, s.startDate);
    double endDate = 0.0;
    OleDateOf(TimeOfHeader(r.endTime), endDate);
    s.durationDays = endDate + r.Interval * kOneSecondInDays - s.startDate;

    const int32_t useShallow = DischargeValue<int32_t>(r, "UseShallowWaterPing", 1);
    // Single-precision fields widen to double here, so their decimals show the float's error.
    s.values = {1.0,
                s.startDate,
                s.durationDays,
                static_cast<double>(r.ProfileCount),
                static_cast<double>(AsByte(r.TrackReference)),
                static_cast<double>(AsByte(r.VelocityReference)),
                static_cast<double>(AsByte(r.DepthReference)),
                useShallow != 0 && r.ShallowWaterPing != 0 ? 1.0 : 0.0,
                DischargeValue<double>(r, "StartMeanHW", 0.0),
                DischargeValue<double>(r, "StartMeanTW", 0.0),
                DischargeValue<double>(r, "EndMeanHW", 0.0),
                DischargeValue<double>(r, "EndMeanTW", 0.0),
                r.TrackLength,
                static_cast<double>(r.LeftDistance),
                static_cast<double>(r.MadeGood),
                static_cast<double>(r.RightDistance),
                static_cast<double>(r.TotalWidth),
                0.0,
                r.Area,
                r.MeanVelocity,
                static_cast<double>(r.TopDischarge),
                static_cast<double>(r.MiddleDischarge),
                static_cast<double>(r.BottomDischarge),
                static_cast<double>(r.LeftDischarge),
                static_cast<double>(r.RightDischarge),
                static_cast<double>(r.TotalDischarge)};
    return s;
}

std::string FlowDateText(const ProfileTime& t) {
    char text[64];
    std::snprintf(text, sizeof text, "%02d/%02d/%4d %02d:%02d:%02d", t.day, t.month, t.year, t.hour, t.minute,
                  t.second);
    return text;
}

}  // namespace rm
