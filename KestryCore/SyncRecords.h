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

/// What a `recordID` names.
struct SyncRecordIdentity {
    SyncRecordKind kind = SyncRecordKind::client;
    Uuid id;
};

/// The record identity of a thing, as in "Client:" and its upper-case UUID.
[[nodiscard]] std::string recordID(SyncRecordKind kind, const Uuid& id);

/// The canonical bytes of every client, project, saved session and the active session, by record
/// identity. The active session shares its key with the session saved from it, and wins over it.
/// Fails when a record cannot be encoded.
[[nodiscard]] std::map<std::string, std::string> recordPayloads(
    const LedgerData& ledger, const std::string& ownerDeviceID, const std::string& ownerName);

/// The kind and UUID of a record. Fails with "Invalid sync record identity." when its `recordID`
/// is not in the one canonical form, its revision is no UUID or its device is empty.
[[nodiscard]] SyncRecordIdentity parseRecordIdentity(const SyncRecord& record);

/// Checks one record by itself: identity, deletion, size, and its payload by the rules of the
/// ledger, as if what it refers to were there.
void validateRecord(const SyncRecord& record);

/// Checks a whole replication state. The cursor, system fields, base revisions, environment and
/// the enabled flag are taken as they stand. What was found sound and has not changed since is not
/// looked at again.
void validateReplicationState(const LedgerSyncState& state);

} // namespace KestryCore
