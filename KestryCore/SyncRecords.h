#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "Ledger.h"
#include "SyncState.h"

namespace KestryCore {

/// The largest payload of a replicated record, in bytes.
inline constexpr std::size_t maximumPayloadBytes = 4'194'304;

enum class SyncRecordKind { client, project, session };

/// The kind of thing that a `recordID` names.
struct SyncRecordIdentity {
    SyncRecordKind kind = SyncRecordKind::client;
    Uuid id;
};

/// The `recordID` of a thing: "Client:" and its UUID in upper case, for example.
[[nodiscard]] std::string recordID(SyncRecordKind kind, const Uuid& id);

/// The canonical bytes of every client, project, saved session and the active session, by
/// `recordID`. The active session has the key of the session that is saved from it; if both exist,
/// the active one is returned. Throws LedgerError when a record cannot be encoded.
[[nodiscard]] std::map<std::string, std::string> recordPayloads(
    const LedgerData& ledger, const std::string& ownerDeviceID, const std::string& ownerName);

/// The kind and UUID of a record. Throws "Invalid sync record identity." when its `recordID` is not
/// in canonical form, its revision is not a UUID, or its device is empty.
[[nodiscard]] SyncRecordIdentity parseRecordIdentity(const SyncRecord& record);

/// Checks one record by itself: identity, deletion, size, and its payload by the rules of the
/// ledger; its parents are assumed to exist.
void validateRecord(const SyncRecord& record);

/// Checks a whole replication state. The cursor, system fields, base revisions, environment and the
/// enabled flag are not checked. What was found sound and has not changed is skipped.
void validateReplicationState(const LedgerSyncState& state);

} // namespace KestryCore
