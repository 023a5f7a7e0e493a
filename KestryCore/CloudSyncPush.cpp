#include <map>
#include <string_view>
#include <utility>

#include "CloudArchive.h"
#include "CloudSyncRun.h"
#include "SyncCloudRecord.h"
#include "SyncDeliveryError.h"

namespace KestryCore {

namespace {

constexpr std::size_t largestBatch = 100;

using ResultsByName = std::map<std::string_view, const CloudRecordResult*>;

/// The first result of each record.
ResultsByName byName(const std::vector<CloudRecordResult>& results)
{
    ResultsByName named;
    for (const CloudRecordResult& result : results) {
        if (result.id.zone == workspaceZone()) {
            named.emplace(result.id.name, &result);
        }
    }
    return named;
}

} // namespace

Task<void> CloudSyncRun::push()
{
    pending_.emplace(*parts_.store.data());
    while (!pending_->isEmpty()) {
        Task<void> check = checkAccount();
        co_await check;
        const Batch batch = pending_->take(largestBatch);
        std::vector<CloudRecord> records = cloudRecords(batch);
        Task<std::vector<CloudRecordResult>> saving =
            parts_.container.privateDatabase().save(std::move(records));
        const std::vector<CloudRecordResult> results = co_await saving;
        Task<void> checkAgain = checkAccount();
        co_await checkAgain;
        keepWitness();
        takeResults(batch, results);
        Task<void> discarding = discardOverruled();
        co_await discarding;
    }
}

std::vector<CloudRecord> CloudSyncRun::cloudRecords(const Batch& batch) const
{
    const auto& systemFields = parts_.store.data()->replication->systemFields;
    std::vector<CloudRecord> records;
    for (const SyncRecord* const record : batch) {
        records.push_back(cloudRecordFor(*record, systemFields));
    }
    return records;
}

/// What the store knows of itself goes to the disk with what it has acknowledged.
void CloudSyncRun::keepWitness()
{
    const std::optional<CloudCursor> cursor = savedCursor();
    if (!cursor) {
        return;
    }
    const CloudCursor witnessed = parts_.container.privateDatabase().witnessed(*cursor);
    if (witnessed != *cursor) {
        parts_.store.keepChangeToken(archiveCursor(workspaceZone(), witnessed));
        parts_.hasUnsaved = true;
    }
}

void CloudSyncRun::takeResults(const Batch& batch, const std::vector<CloudRecordResult>& results)
{
    std::exception_ptr lastFailure;
    std::vector<AcknowledgedRecord> taken;
    const ResultsByName named = byName(results);
    for (const SyncRecord* const record : batch) {
        const auto found = named.find(record->recordID);
        if (found == named.end()) {
            lastFailure = std::make_exception_ptr(SyncDeliveryError(
                "iCloud did not acknowledge every record. Unsaved changes will retry."));
            continue;
        }
        if (const auto* const saved = std::get_if<CloudRecord>(&found->second->result)) {
            taken.push_back({record, archiveSystemFields(*saved)});
            continue;
        }
        const auto& failure = std::get<CloudError>(found->second->result);
        const bool isChanged = failure.code() == CloudErrorCode::serverRecordChanged;
        if (isChanged && failure.serverRecord() != nullptr) {
            acknowledge(std::exchange(taken, {}));
            FetchedRecords server;
            server.add(syncRecordFrom(*failure.serverRecord()),
                archiveSystemFields(*failure.serverRecord()));
            applyToStore(server, changeToken());
            if (failure.overruled() != nullptr) {
                parts_.overruled.push_back(*failure.overruled());
            }
        } else {
            lastFailure = std::make_exception_ptr(failure);
        }
    }
    acknowledge(taken);
    if (lastFailure) {
        std::rethrow_exception(lastFailure);
    }
}

void CloudSyncRun::acknowledge(const std::vector<AcknowledgedRecord>& taken)
{
    if (!taken.empty()) {
        parts_.hasUnsaved = true;
        parts_.store.acknowledgeDeliveries(taken);
    }
}

} // namespace KestryCore
