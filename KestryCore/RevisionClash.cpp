#include "RevisionClash.h"

namespace KestryCore {

namespace {

bool isClash(const SyncRecord& local, const SyncRecord& remote)
{
    return local.revision == remote.revision
        && (local.isDeleted != remote.isDeleted || local.payload != remote.payload);
}

} // namespace

bool separateRevisions(
    LedgerData& ledger, const std::vector<SyncRecord>& remote, const UuidSource& newUuid)
{
    if (!ledger.replication) {
        return false;
    }
    bool isFound = false;
    for (const SyncRecord& version : remote) {
        const auto& outbox = ledger.replication->outbox;
        const auto waiting = outbox.find(version.recordID);
        if (waiting != outbox.end() && isClash(waiting->second, version)) {
            ledger.replication.edit().outbox[version.recordID].revision = newUuid().text();
            isFound = true;
        }
    }
    return isFound;
}

} // namespace KestryCore
