#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Ledger.h"
#include "RecordList.h"
#include "SharedMap.h"

namespace KestryCore {

/// One version of one replicated thing.
struct SyncRecord {
    std::string recordID; ///< Kind, colon, upper-case UUID, as in "Client:…".
    std::string revision; ///< Random UUID text; revisions are only compared for equality.
    std::string deviceID; ///< The device that wrote this version.
    std::optional<std::string> payload; ///< JSON of the thing; nullopt exactly when deleted.
    bool isDeleted = false;

    friend bool operator==(const SyncRecord&, const SyncRecord&) = default;
};

/// The payload of a session's record: exactly one of `active` and `entry` is set.
struct SyncedSession {
    std::string ownerDeviceID;
    std::string ownerName;
    std::optional<ActiveSession> active; ///< While the session is in progress on its owner.
    std::optional<TimeEntry> entry;      ///< Once the session is saved.

    friend bool operator==(const SyncedSession&, const SyncedSession&) = default;
};

/// Two versions of one record that await the user's choice.
struct SyncConflict {
    std::string id; ///< The `recordID` that both versions share.
    SyncRecord local;
    SyncRecord remote;

    friend bool operator==(const SyncConflict&, const SyncConflict&) = default;
};

/// The cloud environment in which a ledger's records live.
enum class CloudSyncEnvironment { development, production };

/// The word for an environment, in files and for people.
[[nodiscard]] std::string_view environmentName(CloudSyncEnvironment environment);

/// What one device knows about replicating its ledger. It is part of the ledger, saved and
/// validated with it.
struct LedgerSyncState {
    std::string deviceID;
    std::string deviceName;
    std::string accountID;
    CloudSyncEnvironment environment = CloudSyncEnvironment::development;
    bool enabled = true;
    std::optional<std::string> changeToken; ///< The cloud's cursor of the last applied fetch.
    SharedMap<std::string> systemFields;    ///< The cloud's own metadata, opaque bytes.
    SharedMap<std::string> baseRevisions;   ///< What the cloud was last known to have.
    SharedMap<SyncRecord> outbox;           ///< Local versions not acknowledged yet.
    RecordList<SyncConflict> conflicts;     ///< In order of discovery, one for each record at most.
    SharedMap<SyncedSession> remoteSessions; ///< Sessions running elsewhere.
    SharedMap<SyncRecord> staged;            ///< Valid remote versions not yet applied.
    SharedMap<SyncRecord> tombstones;        ///< Deletions, kept for good.

    friend bool operator==(const LedgerSyncState&, const LedgerSyncState&) = default;
};

} // namespace KestryCore
