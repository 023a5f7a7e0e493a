#include "RevisionClash.h"

#include <utility>

#include "LedgerCoding.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

/// Whoever uploads a session names itself as its owner.
bool areOneSession(const std::string& local, const std::string& remote)
{
    const auto mine = decodeRecord<SyncedSession>(local);
    auto theirs = decodeRecord<SyncedSession>(remote);
    theirs.ownerDeviceID = mine.ownerDeviceID;
    theirs.ownerName = mine.ownerName;
    return mine == theirs;
}

/// Two valid payloads of a record. Another program may write the same in other words.
bool sayTheSame(SyncRecordKind kind, const std::string& local, const std::string& remote)
{
    switch (kind) {
    case SyncRecordKind::client:
        return decodeRecord<Client>(local) == decodeRecord<Client>(remote);
    case SyncRecordKind::project:
        return decodeRecord<Project>(local) == decodeRecord<Project>(remote);
    case SyncRecordKind::session:
        return areOneSession(local, remote);
    }
    return false;
}

bool haveOneContent(const SyncRecord& local, const SyncRecord& remote)
{
    if (local.isDeleted || remote.isDeleted || local.payload == remote.payload) {
        return local.isDeleted == remote.isDeleted;
    }
    return sayTheSame(parseRecordIdentity(local).kind, *local.payload, *remote.payload);
}

/// As the base of the waiting version, the cloud's would be taken for the one that it was made of.
void giveOwnRevision(LedgerSyncState& state, const SyncRecord& clashing, std::string revision)
{
    const std::string& key = clashing.recordID;
    SyncRecord& waiting = state.outbox[key];
    waiting.revision = std::move(revision);
    if (waiting.isDeleted) {
        state.tombstones[key] = waiting;
    }
    const auto base = state.baseRevisions.find(key);
    if (base != state.baseRevisions.end() && base->second == clashing.revision) {
        state.baseRevisions.erase(key);
    }
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
            giveOwnRevision(ledger.replication.edit(), version, newUuid().text());
            isFound = true;
        }
    }
    return isFound;
}

} // namespace KestryCore
