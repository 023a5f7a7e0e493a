#pragma once

#include <optional>
#include <string>
#include <unordered_set>

#include "Ledger.h"
#include "SessionChanges.h"
#include "SyncRecords.h"
#include "SyncState.h"

namespace KestryCore {

/// A record, and where to remember the client or project that it needs.
struct RemoteVersion {
    const SyncRecord& record;
    std::optional<Uuid>& parent;
};

/// Applies records from the cloud one after another to a copy of a ledger and its state.
///
/// After a fetch in an unlucky order a whole ledger may wait for one project, and every fetch tries
/// all of it again. So trying a record again costs only a few look-ups.
class RemoteApplication {
public:
    RemoteApplication(LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid);

    /// Applies a valid record or records a conflict; returns false when it must wait. Only this
    /// object may change the ledger until `finish`.
    [[nodiscard]] bool apply(const RemoteVersion& version);

    /// Completes the ledger. Must be called at the end.
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

/// Keeps two versions of one record for the user to choose from. An open conflict about the same
/// record is replaced; the new one comes last in the list.
void addConflict(const SyncRecord& local, const SyncRecord& remote, LedgerSyncState& state);

} // namespace KestryCore
