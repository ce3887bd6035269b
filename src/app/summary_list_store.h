#pragma once
// The summary list in AppSettings.conf. `DischargeRecord` holds one child "Record" per record
// of the list, in list order; `LastDischargeMeasurement` holds the last record added, so that
// the most recent measurement is known again at the next start. Each record node holds the
// fields the summary shows, under their field names, and the record's settings node as the
// child "Settings" (with its `Discharge` node, where StartMeanHW ... and UseShallowWaterPing
// live). Times are kept as their parts (year, month, day, hour, minute, second, hundredths).

#include "app/app_settings.h"
#include "app/summary_list.h"

namespace rm {

// A record as a node, and back. Reading a node fills missing keys with their defaults.
NodeRef SummaryRecordNode(const CDischargeData& record);
SummaryList::Record SummaryRecordFromNode(const NodeRef& node);

// Replaces DischargeRecord with the list (inactive records included, so that nothing the run
// knew is lost) and LastDischargeMeasurement with `last` when it is not null.
void StoreSummaryList(const SummaryList& list, const CDischargeData* last, AppSettings& app);
// Appends the records of DischargeRecord to `list` (sorted); returns how many were read.
int LoadSummaryList(SummaryList& list, const AppSettings& app);
// The record under LastDischargeMeasurement; null when none was stored.
SummaryList::Record LoadLastDischargeMeasurement(const AppSettings& app);

}  // namespace rm
