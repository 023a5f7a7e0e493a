#include "RevisionClash.h"

#include "LedgerCoding.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

/// Two payloads of one session. Whoever uploads it names itself as its owner.
bool areOneSession(const std::string& local, const std::string& remote)
{
    const auto mine = decodeRecord<SyncedSession>(local);
    auto theirs = decodeRecord<SyncedSession>(remote);
    theirs.ownerDeviceID = mine.ownerDeviceID;
    theirs.ownerName = mine.ownerName;
    return mine == theirs;
}

bool haveOneContent(const SyncRecord& local, const SyncRecord& remote)
{
    if (local.isDeleted || remote.isDeleted || local.payload == remote.payload) {
        return local.isDeleted == remote.isDeleted;
    }
    return parseRecordIdentity(local).kind == SyncRecordKind::session
        && areOneSession(*local.payload, *remote.payload);
}

} // namespace

bool separateRevisions(LedgerData& ledger, const FetchedRecords& fetched, const UuidSource& newUuid)
{
    if (!ledger.replication) {
        return false;
    }
    bool isFound = false;
    for (const auto& [version, isSound] : fetched.items()) {
        const auto& outbox = ledger.replication->outbox;
        const auto waiting = outbox.find(version.recordID);
        if (waiting == outbox.end() || waiting->second.revision != version.revision) {
            continue;
        }
        if (!isSound) {
            validateRecord(version);
        }
        if (!haveOneContent(waiting->second, version)) {
            ledger.replication.edit().outbox[version.recordID].revision = newUuid().text();
            isFound = true;
        }
    }
    return isFound;
}

} // namespace KestryCore
