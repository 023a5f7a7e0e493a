#include <set>
#include <utility>

#include "CloudArchive.h"
#include "CloudSyncRun.h"
#include "RemoteChanges.h"
#include "Reply.h"
#include "SyncCloudRecord.h"
#include "SyncDeliveryError.h"

namespace KestryCore {

namespace {

constexpr std::size_t recordsInTurn = 1'000;

/// This program deletes by saving a deletion, so a removed record is somebody else's doing.
void requireNoDeletions(const CloudChanges& changes)
{
    if (!changes.deletions.empty()) {
        throw SyncDeliveryError(
            "Records were removed outside Kestry. Sync stopped to protect local "
            "data; restore those cloud records before retrying.");
    }
}

} // namespace

Task<void> CloudSyncRun::pull()
{
    Task<void> discarding = discardOverruled(); // what the last run could not
    co_await discarding;
    std::optional<CloudCursor> cursor = savedCursor();
    std::set<std::string> passed; // the cursors of all answers so far
    bool hasRestarted = false;
    bool moreComing = true;
    while (moreComing) {
        std::optional<CloudChanges> changes;
        Task<CloudChanges> asking =
            parts_.container.privateDatabase().changes(workspaceZone(), cursor);
        try {
            CloudChanges answer = co_await asking;
            changes = std::move(answer);
        } catch (const CloudError& failure) {
            if (failure.code() != CloudErrorCode::changeTokenExpired || hasRestarted) {
                throw;
            }
        }
        if (!changes) {
            // Everything arrives again, and what is known is recognised by its revision.
            requireCurrent();
            hasRestarted = true;
            cursor.reset();
            passed.clear();
            continue;
        }
        Task<void> check = checkAccount();
        co_await check;
        requireNoDeletions(*changes);
        Task<void> takingBack = takeBackOverruled(*changes);
        co_await takingBack;
        cursor = changes->cursor;
        moreComing = changes->moreComing;
        Task<void> applying = apply(*std::move(changes));
        co_await applying;
        if (moreComing && !passed.insert(cursor->bytes).second) {
            throw SyncDeliveryError("iCloud sends the same changes again and again. What has "
                                    "arrived is saved, and your local changes will retry.");
        }
    }
}

std::optional<std::string> CloudSyncRun::changeToken() const
{
    const auto& state = parts_.store.data()->replication;
    return state ? state->changeToken : std::nullopt;
}

std::optional<CloudCursor> CloudSyncRun::savedCursor() const
{
    const auto token = changeToken();
    if (!token) {
        return std::nullopt;
    }
    auto cursor = cursorFromArchive(workspaceZone(), *token);
    if (!cursor) {
        throw SyncDeliveryError(
            "The saved iCloud cursor could not be read. Local changes are preserved.");
    }
    return cursor;
}

/// Versions of this device that the cloud accepted and then put behind another's are undelivered
/// again. That is saved before the cloud lets go of them, and both before the other version is
/// applied, which then finds a conflict. Those of other devices are for them to take back.
Task<void> CloudSyncRun::takeBackOverruled(const CloudChanges& changes)
{
    for (const CloudRecord& record : changes.overruled) {
        const auto writer = record.fields.find("writer");
        const CloudValue own = parts_.store.data()->replication->deviceID;
        const bool isOwn = writer != record.fields.end() && writer->second == own;
        if (isOwn && parts_.store.takeBackVersion(syncRecordFrom(record))) {
            parts_.overruled.push_back(record);
        }
    }
    Task<void> discarding = discardOverruled();
    co_await discarding;
}

/// Lets the cloud forget what is saved here. What it does not answer to is tried again in the next
/// cycle: once the person has decided on such a version, it must not come back.
Task<void> CloudSyncRun::discardOverruled()
{
    if (parts_.overruled.empty()) {
        co_return;
    }
    Task<void> discarding = parts_.container.privateDatabase().discard(parts_.overruled);
    co_await discarding;
    parts_.overruled.clear();
    Task<void> check = checkAccount();
    co_await check;
}

/// All of it is applied in one call to the store. What comes before that takes turns, so that
/// nobody waits for a long fetch.
Task<void> CloudSyncRun::apply(CloudChanges changes)
{
    FetchedRecords fetched;
    for (const CloudRecordResult& modification : changes.modifications) {
        if (const auto* const failure = std::get_if<CloudError>(&modification.result)) {
            throw CloudError(*failure);
        }
        const auto& record = std::get<CloudRecord>(modification.result);
        fetched.add(syncRecordFrom(record), archiveSystemFields(record));
        if (fetched.size() % recordsInTurn == 0) {
            Delay turn(parts_.scheduler, 0);
            co_await turn;
            requireCurrent();
        }
    }
    const std::string cursor = archiveCursor(workspaceZone(), changes.cursor);
    if (!bringsNothing(changes, cursor)) {
        applyToStore(fetched, cursor);
    }
}

bool CloudSyncRun::bringsNothing(const CloudChanges& changes, const std::string& cursor) const
{
    if (!changes.modifications.empty() || cursor != changeToken() || parts_.hasUnsaved) {
        return false;
    }
    // What waits for other records may have become possible by a change here.
    LedgerData ledger = *parts_.store.data();
    LedgerSyncState state = *ledger.replication;
    drainStaged(ledger, state, parts_.newUuid);
    return state.staged == parts_.store.data()->replication->staged;
}

void CloudSyncRun::applyToStore(
    const FetchedRecords& fetched, const std::optional<std::string>& changeToken)
{
    parts_.store.separateRevisions(fetched);
    parts_.store.applyRemoteSync(fetched, changeToken);
    parts_.hasUnsaved = false;
}

} // namespace KestryCore
