#pragma once
// The list of finished measurements that the discharge summary shows, owned by the application
// object for the whole run. Every processed file adds one record. The list is kept in ascending
// order of the start time of day (hour, minute, second; the date takes no part), so transects
// of two days interleave by clock time. Deleting a row only clears the record's `Active` flag;
// a record that is active but has no file name is taken out when the list is refilled.

#include <memory>
#include <string>
#include <vector>

#include "processing/discharge_data.h"
#include "processing/dis_file_reader.h"

namespace rm {

class SummaryList {
public:
    using Record = std::shared_ptr<CDischargeData>;

    // Takes the record (null is ignored) and sorts the list.
    void Add(Record record);
    // Stable sort by the start time of day.
    void Sort();

    int Size() const { return static_cast<int>(records_.size()); }
    const std::vector<Record>& Records() const { return records_; }
    // By list index; null out of range.
    Record Get(int index) const;
    // The n-th record with `Active` set, from 0; null out of range.
    Record GetByRow(int row) const;
    // Records that get a row: `Active` set and a file name.
    int RowCount() const;

    // The removal rule of refilling: drops records that are active but have no file name.
    void RemoveNameless();

    // Clears `Active` of the first shown record (in row order) whose file name equals
    // `fileName` byte for byte; false when there is none.
    bool DeleteByName(const std::string& fileName);
    // "&Delete Record (s)": the names of the selected rows are read first, then each deleted
    // by name, so two records of one name go first-first.
    void DeleteRows(const std::vector<int>& rows);
    // "&Delete &All Records": clears `Active` on every record; nothing is destroyed.
    void DeleteAll();

private:
    std::vector<Record> records_;
};

// True when a record gets a row of the list.
bool IsShown(const CDischargeData& record);
// Seconds since midnight of the record's start: the sort key.
int StartTimeOfDay(const CDischargeData& record);

// Reads the record of a .dis file ("KVR Discharge files (.dis)|*.dis|") into the list, which is
// sorted afterwards; on failure the list is unchanged.
DisReadResult AddDisFileToSummary(SummaryList& list, const std::string& path);

}  // namespace rm
