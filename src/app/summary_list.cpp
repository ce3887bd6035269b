#include "app/summary_list.h"

#include <algorithm>

namespace rm {

bool IsShown(const CDischargeData& record) { return record.Active != 0 && !record.fileName.empty(); }

int StartTimeOfDay(const CDischargeData& record) {
    const ProfileHeader& t = record.startTime;
    return t.hour * 3600 + t.minute * 60 + t.second;
}

void SummaryList::Add(Record record) {
    if (!record) return;
    records_.push_back(std::move(record));
    Sort();
}

void SummaryList::Sort() {
    std::stable_sort(records_.begin(), records_.end(), [](const Record& a, const Record& b) {
        return StartTimeOfDay(*a) < StartTimeOfDay(*b);
    });
}

SummaryList::Record SummaryList::Get(int index) const {
    if (index < 0 || index >= Size()) return nullptr;
    return records_[static_cast<size_t>(index)];
}

SummaryList::Record SummaryList::GetByRow(int row) const {
    if (row < 0) return nullptr;
    int n = 0;
    for (const Record& r : records_) {
        if (r->Active == 0) continue;
        if (n == row) return r;
        ++n;
    }
    return nullptr;
}

int SummaryList::RowCount() const {
    return static_cast<int>(std::count_if(records_.begin(), records_.end(), [](const Record& r) { return IsShown(*r); }));
}

void SummaryList::RemoveNameless() {
    records_.erase(std::remove_if(records_.begin(), records_.end(),
                                  [](const Record& r) { return r->Active != 0 && r->fileName.empty(); }),
                   records_.end());
}

bool SummaryList::DeleteByName(const std::string& fileName) {
    for (const Record& r : records_) {
        if (IsShown(*r) && r->fileName == fileName) {
            r->Active = 0;
            return true;
        }
    }
    return false;
}

void SummaryList::DeleteRows(const std::vector<int>& rows) {
    std::vector<std::string> names;
    for (const int row : rows) {
        const Record r = GetByRow(row);
        if (r) names.push_back(r->fileName);
    }
    for (const std::string& name : names) DeleteByName(name);
}

DisReadResult AddDisFileToSummary(SummaryList& list, const std::string& path) {
    auto record = std::make_shared<CDischargeData>();
    const DisReadResult result = ReadDisFile(path, *record);
    if (result.ok) list.Add(record);
    return result;
}

void SummaryList::DeleteAll() {
    for (const Record& r : records_) r->Active = 0;
}

}  // namespace rm
