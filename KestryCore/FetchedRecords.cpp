#include "FetchedRecords.h"

#include <utility>

#include "LedgerError.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

bool isValid(const SyncRecord& record)
{
    try {
        validateRecord(record);
        return true;
    } catch (const LedgerError&) {
        return false;
    }
}

} // namespace

FetchedRecords::FetchedRecords(
    const std::vector<SyncRecord>& records, const std::map<std::string, std::string>& systemFields)
    : systemFields_(systemFields)
{
    for (const SyncRecord& record : records) {
        items_.push_back({record, false});
    }
}

void FetchedRecords::add(SyncRecord record, std::string systemFields)
{
    const bool isSound = isValid(record);
    systemFields_[record.recordID] = std::move(systemFields);
    items_.push_back({std::move(record), isSound});
}

} // namespace KestryCore
