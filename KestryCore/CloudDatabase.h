#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "CloudError.h"
#include "CloudRecord.h"
#include "Task.h"

namespace KestryCore {

/// What became of one record in an answer.
struct CloudRecordResult {
    CloudRecordID id;
    std::variant<CloudRecord, CloudError> result;
};

/// One answer about what has changed in a zone.
struct CloudChanges {
    /// Each record that was saved, in its latest version. A store may repeat a record, and the
    /// order means nothing.
    std::vector<CloudRecordResult> modifications;
    /// Records that were removed from the zone. This program removes none.
    std::vector<CloudRecordID> deletions;
    /// Versions that the store had accepted, and that stand behind others now: a store of several
    /// machines can accept two writers at once. They are kept there until `discard`. Each is of a
    /// record that is among the modifications.
    std::vector<CloudRecord> overruled;
    CloudCursor cursor; ///< Behind all that this answer tells.
    bool moreComing = false;
};

/// A store of zones of named records, which detects when a record was changed by somebody else.
///
/// Each operation is a task that ends with the answer or throws a `CloudError`. It does nothing
/// before it is awaited. A task that is destroyed while it waits lets its request go; whether the
/// store carries it out is open then, as after an answer that was lost.
class CloudDatabase {
public:
    CloudDatabase() = default;
    CloudDatabase(const CloudDatabase&) = delete;
    CloudDatabase& operator=(const CloudDatabase&) = delete;
    virtual ~CloudDatabase() = default;

    /// Makes sure that the zone exists; throws `zoneNotFound` when it does not.
    [[nodiscard]] virtual Task<void> fetchZone(CloudZoneID zone) = 0;

    /// Creates the zone. Succeeds when another device has created it meanwhile.
    [[nodiscard]] virtual Task<void> createZone(CloudZoneID zone) = 0;

    /// What has changed since a cursor, or all there is without one. Throws `changeTokenExpired`
    /// when the store cannot go on from the cursor, `storeReplaced` when it is no longer the store
    /// that gave it.
    [[nodiscard]] virtual Task<CloudChanges> changes(
        CloudZoneID zone, std::optional<CloudCursor> since) = 0;

    /// Saves records, each for itself, and only over the server version that it has: with none,
    /// only where the store has no such record. Gives for each record the record as saved, with its
    /// new server version, or its failure: `serverRecordChanged` with the server's record when it
    /// was changed by somebody else. The order of the results means nothing, and some may be
    /// missing.
    [[nodiscard]] virtual Task<std::vector<CloudRecordResult>> save(
        std::vector<CloudRecord> records) = 0;

    /// Removes overruled versions that their writer has taken back. What stands before them stays.
    [[nodiscard]] virtual Task<void> discard(std::vector<CloudRecord> overruled);

    /// The cursor that is to be kept in place of a saved one, together with what this store has
    /// acknowledged: it may know more by which a store is recognised that was restored from a
    /// backup. It is behind the same changes.
    [[nodiscard]] virtual CloudCursor witnessed(CloudCursor saved) const { return saved; }
};

/// A store that overrules nothing has nothing to discard.
inline Task<void> CloudDatabase::discard(std::vector<CloudRecord> /*overruled*/)
{
    co_return;
}

/// An account's share of a cloud store.
class CloudContainer {
public:
    CloudContainer() = default;
    CloudContainer(const CloudContainer&) = delete;
    CloudContainer& operator=(const CloudContainer&) = delete;
    virtual ~CloudContainer() = default;

    /// Whether an account is signed in and can be used. Throws a `CloudError` when the store cannot
    /// tell.
    [[nodiscard]] virtual Task<bool> isAccountAvailable() = 0;

    /// The name of the account's own record, which stays the same for good.
    [[nodiscard]] virtual Task<std::string> userRecordName() = 0;

    /// The account's private records. Exists as long as the container.
    [[nodiscard]] virtual CloudDatabase& privateDatabase() = 0;
};

} // namespace KestryCore
