#pragma once

#include <optional>
#include <string>
#include <unordered_set>

#include "Ledger.h"
#include "SessionChanges.h"
#include "SyncRecords.h"
#include "SyncState.h"

namespace KestryCore {

/// A record, and where to remember which client or project has to be here for it.
struct RemoteVersion {
    const SyncRecord& record;
    std::optional<Uuid>& parent;
};

/// Applies records of the cloud one after another to a copy of a ledger and of its state.
///
/// A fetch in an unlucky order leaves a whole ledger waiting for one project, and all of it is
/// tried again at every fetch. So trying a record again costs a few look-ups and no more.
class RemoteApplication {
public:
    RemoteApplication(LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid);

    /// Decides on a valid record; false when it has to wait. Nobody else may change the ledger
    /// until `finish`.
    [[nodiscard]] bool apply(const RemoteVersion& version);

    /// The ledger is complete only after this.
    void finish() { sessions_.carryOut(); }

private:
    [[nodiscard]] bool isSettledByRevision(const SyncRecord& record);
    [[nodiscard]] bool collidesWithActive(
        const SyncRecord& record, const SyncRecordIdentity& identity);
    [[nodiscard]] bool applyDeletion(const SyncRecord& record, const SyncRecordIdentity& identity);
    [[nodiscard]] bool applyLive(const RemoteVersion& version, const SyncRecordIdentity& identity);
    void applyClient(const SyncRecord& record);
    [[nodiscard]] bool applyProject(const RemoteVersion& version);
    [[nodiscard]] bool applySession(const RemoteVersion& version, const Uuid& id);
    [[nodiscard]] bool hasProjects(const Uuid& clientID) const;
    [[nodiscard]] bool hasSessions(const Uuid& projectID);
    [[nodiscard]] SyncRecord localVersion(const std::string& key, SyncedSession session) const;
    void noteBase(const SyncRecord& record);

    LedgerData& ledger_;
    LedgerSyncState& state_;
    const UuidSource& newUuid_;
    SessionChanges sessions_;
    std::unordered_set<Uuid> clients_;
    std::unordered_set<Uuid> projects_;
};

/// Keeps two versions of one record for the user to choose from. An open conflict about the record
/// gives way to the new one, which comes last in the list.
void addConflict(const SyncRecord& local, const SyncRecord& remote, LedgerSyncState& state);

} // namespace KestryCore
