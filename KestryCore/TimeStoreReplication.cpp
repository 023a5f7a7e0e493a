#include "OutboxDelivery.h"
#include "OverruledVersions.h"
#include "RemoteChanges.h"
#include "RevisionClash.h"
#include "SyncConnection.h"
#include "TimeStore.h"

namespace KestryCore {

void TimeStore::changeReplication(const Change& change)
{
    LedgerData working = *data_;
    change(working);
    commit(std::move(working));
}

void TimeStore::validateSyncEnvironment(CloudSyncEnvironment environment) const
{
    KestryCore::validateSyncEnvironment(*data_, environment);
}

void TimeStore::beginSync(
    const std::string& accountID, const std::string& deviceName, CloudSyncEnvironment environment)
{
    changeReplication([&](LedgerData& working) {
        KestryCore::beginSync(working, accountID, deviceName, environment, platform_.newUuid);
    });
}

SyncBeginning TimeStore::prepareSync(const std::string& accountID, const std::string& deviceName,
    CloudSyncEnvironment environment) const
{
    return SyncBeginning(*data_, accountID, deviceName, environment, platform_.newUuid);
}

void TimeStore::beginSync(const SyncBeginning& beginning)
{
    changeReplication(
        [&](LedgerData& working) { KestryCore::beginSync(working, beginning, platform_.newUuid); });
}

void TimeStore::setSyncEnabled(bool isEnabled)
{
    carryOut([&] {
        changeReplication(
            [&](LedgerData& working) { KestryCore::setSyncEnabled(working, isEnabled); });
    });
}

std::vector<SyncRecord> TimeStore::pendingSyncRecords(std::size_t most) const
{
    return KestryCore::pendingSyncRecords(*data_, most);
}

void TimeStore::acknowledgeDelivery(const SyncRecord& record, const std::string& systemFields)
{
    acknowledgeDeliveries({{&record, systemFields}});
}

void TimeStore::acknowledgeDeliveries(const std::vector<AcknowledgedRecord>& deliveries)
{
    carryOut([&] {
        LedgerData working = *data_;
        std::size_t done = 0;
        const auto publish = [&] {
            if (done > 0) {
                data_.assign(std::move(working));
            }
        };
        try {
            for (const AcknowledgedRecord& delivery : deliveries) {
                KestryCore::acknowledgeDelivery(working, *delivery.record, delivery.systemFields);
                ++done;
            }
        } catch (const LedgerError&) {
            publish();
            throw;
        }
        publish();
    });
}

void TimeStore::keepChangeToken(const std::string& changeToken)
{
    LedgerData working = *data_;
    if (working.replication) {
        working.replication.edit().changeToken = changeToken;
        data_.assign(std::move(working));
    }
}

bool TimeStore::takeBackVersion(const SyncRecord& version)
{
    bool isTaken = false;
    carryOut([&] {
        LedgerData working = *data_;
        isTaken = takeBack(working, version, platform_.newUuid);
        if (isTaken && working != *data_) {
            commit(std::move(working));
        }
    });
    return isTaken;
}

void TimeStore::separateRevisions(const FetchedRecords& fetched)
{
    carryOut([&] {
        LedgerData working = *data_;
        if (KestryCore::separateRevisions(working, fetched, platform_.newUuid)) {
            commit(std::move(working));
        }
    });
}

void TimeStore::deliverAllAgain()
{
    carryOut([&] {
        changeReplication(
            [&](LedgerData& working) { KestryCore::deliverAllAgain(working, platform_.newUuid); });
    });
}

void TimeStore::applyRemoteSync(const std::vector<SyncRecord>& records,
    const std::map<std::string, std::string>& systemFields,
    const std::optional<std::string>& changeToken)
{
    applyRemoteSync(FetchedRecords(records, systemFields), changeToken);
}

void TimeStore::applyRemoteSync(
    const FetchedRecords& fetched, const std::optional<std::string>& changeToken)
{
    carryOut([&] {
        changeReplication([&](LedgerData& working) {
            KestryCore::applyRemoteSync(working, fetched, changeToken, platform_.newUuid);
        });
    });
}

void TimeStore::resolveSyncConflict(const std::string& recordID, ConflictChoice choice)
{
    carryOut([&] {
        changeReplication([&](LedgerData& working) {
            KestryCore::resolveSyncConflict(working, recordID, choice, platform_.newUuid);
        });
    });
}

} // namespace KestryCore
