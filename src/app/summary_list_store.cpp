#include "app/summary_list_store.h"

#include <string>

namespace rm {

namespace {

constexpr const char* kRecordName = "Record";
constexpr const char* kSettingsName = "Settings";

void PutTime(const NodeRef& node, const std::string& prefix, const ProfileHeader& t) {
    node.SetValue(prefix + "Year", Variant(int32_t{t.year}));
    node.SetValue(prefix + "Month", Variant(int32_t{t.month}));
    node.SetValue(prefix + "Day", Variant(int32_t{t.day}));
    node.SetValue(prefix + "Hour", Variant(int32_t{t.hour}));
    node.SetValue(prefix + "Minute", Variant(int32_t{t.minute}));
    node.SetValue(prefix + "Second", Variant(int32_t{t.second}));
    node.SetValue(prefix + "Hundredths", Variant(int32_t{t.hundredths}));
}

void GetTime(const NodeRef& node, const std::string& prefix, ProfileHeader& t) {
    const auto part = [&](const char* name) { return node.GetTyped<int32_t>(prefix + name, 0); };
    t.year = static_cast<int16_t>(part("Year"));
    t.month = static_cast<uint8_t>(part("Month"));
    t.day = static_cast<uint8_t>(part("Day"));
    t.hour = static_cast<uint8_t>(part("Hour"));
    t.minute = static_cast<uint8_t>(part("Minute"));
    t.second = static_cast<uint8_t>(part("Second"));
    t.hundredths = static_cast<uint8_t>(part("Hundredths"));
}

// The integer and floating fields of a record with their names; one table for both ways.
template <class Record, class IntVisit, class FloatVisit, class DoubleVisit>
void VisitFields(Record& r, IntVisit visitInt, FloatVisit visitFloat, DoubleVisit visitDouble) {
    visitInt("Active", r.Active);
    visitInt("NumProfiles", r.ProfileCount);
    visitInt("TrackReference", r.TrackReference);
    visitInt("VelocityReference", r.VelocityReference);
    visitInt("DepthReference", r.DepthReference);
    visitInt("ShallowWaterPing", r.ShallowWaterPing);
    visitInt("ExcludeFromStatistics", r.ExcludeFromStatistics);
    visitDouble("TrackDistance", r.TrackLength);
    visitFloat("TotalDistance", r.TotalWidth);
    visitFloat("LeftDistance", r.LeftDistance);
    visitFloat("MeasuredDistance", r.MadeGood);
    visitFloat("RightDistance", r.RightDistance);
    visitDouble("Area", r.Area);
    visitDouble("MeanVelocity", r.MeanVelocity);
    visitFloat("TopDischarge", r.TopDischarge);
    visitFloat("MiddleDischarge", r.MiddleDischarge);
    visitFloat("BottomDischarge", r.BottomDischarge);
    visitFloat("LeftDischarge", r.LeftDischarge);
    visitFloat("RightDischarge", r.RightDischarge);
    visitFloat("TotalDischarge", r.TotalDischarge);
}

NodeRef ChildOf(const NodeRef& node, const char* name) {
    const int index = node.FindIndex(name);
    return index < 0 ? NodeRef() : node.ItemChild(index);
}

}  // namespace

NodeRef SummaryRecordNode(const CDischargeData& record) {
    NodeRef node = NodeRef::MakeNew();
    node.SetValue("FileName", Variant(record.fileName));
    PutTime(node, "Start", record.startTime);
    PutTime(node, "End", record.endTime);
    VisitFields(
        record, [&](const char* name, int32_t v) { node.SetValue(name, Variant(v)); },
        [&](const char* name, float v) { node.SetValue(name, Variant(static_cast<double>(v))); },
        [&](const char* name, double v) { node.SetValue(name, Variant(v)); });
    // Floats go through double, which holds every float exactly.
    if (!record.settings.IsNull()) node.Append(kSettingsName, Variant(), record.settings);
    return node;
}

SummaryList::Record SummaryRecordFromNode(const NodeRef& node) {
    auto record = std::make_shared<CDischargeData>();
    if (node.IsNull()) return record;
    record->fileName = node.GetTyped<std::string>("FileName", std::string());
    GetTime(node, "Start", record->startTime);
    GetTime(node, "End", record->endTime);
    VisitFields(
        *record, [&](const char* name, int32_t& v) { v = node.GetTyped<int32_t>(name, v); },
        [&](const char* name, float& v) {
            v = static_cast<float>(node.GetTyped<double>(name, static_cast<double>(v)));
        },
        [&](const char* name, double& v) { v = node.GetTyped<double>(name, v); });
    record->settings = ChildOf(node, kSettingsName);
    if (record->settings.IsNull()) record->settings = NodeRef::MakeNew();
    return record;
}

void StoreSummaryList(const SummaryList& list, const CDischargeData* last, AppSettings& app) {
    const NodeRef records = app.DischargeRecord();
    records.Clear();
    for (const SummaryList::Record& r : list.Records()) records.Append(kRecordName, Variant(), SummaryRecordNode(*r));
    if (last != nullptr) {
        const NodeRef lastNode = app.LastDischargeMeasurement();
        lastNode.Clear();
        lastNode.Append(kRecordName, Variant(), SummaryRecordNode(*last));
    }
}

int LoadSummaryList(SummaryList& list, const AppSettings& app) {
    const NodeRef records = app.DischargeRecord();
    int read = 0;
    for (int i = 0; i < records.ItemCount(); ++i) {
        const NodeRef child = records.ItemChild(i);
        if (child.IsNull()) continue;
        list.Add(SummaryRecordFromNode(child));
        ++read;
    }
    return read;
}

SummaryList::Record LoadLastDischargeMeasurement(const AppSettings& app) {
    const NodeRef child = ChildOf(app.LastDischargeMeasurement(), kRecordName);
    return child.IsNull() ? nullptr : SummaryRecordFromNode(child);
}

}  // namespace rm
