#include "RestoreCheck.h"

#include "VersionBook.h"

namespace KestryCore {

namespace {

template <class Record>
void requireKept(const RecordList<Record>& before, const RecordList<Record>& after)
{
    for (const Record& record : before) {
        require(after.find(record.id) != nullptr, "a restore has dropped " + record.id.text());
    }
}

void requireRecordsKept(const LedgerData& before, const LedgerData& after)
{
    requireKept(before.clients, after.clients);
    requireKept(before.projects, after.projects);
    requireKept(before.entries, after.entries);
}

/// The backup may have the session as one that was saved already.
void requireSessionKept(const LedgerData& before, const LedgerData& after)
{
    const bool isKept = !before.active || (after.active && after.active->id == before.active->id)
        || after.entries.find(before.active->id) != nullptr;
    require(isKept, "a restore has dropped the session in progress");
}

} // namespace

void requireNothingDropped(
    const LedgerData& before, const LedgerData& backup, const LedgerData& restored)
{
    requireRecordsKept(backup, restored);
    requireRecordsKept(before, restored);
    requireSessionKept(before, restored);
}

} // namespace KestryCore
