#pragma once

#include <string>

#include "SampleLedger.h"
#include "StoreFixture.h"
#include "SyncRecords.h"

namespace KestryCore {

/// A store whose ledger replicates, and versions of its client Acme that others have saved.
class ReplicationWorld : public StoreWorld {
public:
    static constexpr auto development = CloudSyncEnvironment::development;
    static constexpr auto production = CloudSyncEnvironment::production;

    [[nodiscard]] const LedgerSyncState& state() const { return *ledger().replication; }
    [[nodiscard]] static std::string clientKey(const Uuid& id)
    {
        return recordID(SyncRecordKind::client, id);
    }
    /// A version that another device has saved.
    [[nodiscard]] static SyncRecord remote(const Client& client, unsigned revision = 0xEE)
    {
        SyncRecord record = Sample::record(client);
        record.revision = uuid(revision).text();
        record.deviceID = "device-b";
        return record;
    }
    [[nodiscard]] static Client renamedAcme(const std::string& name)
    {
        Client client = *sampleLedger().clients.find(acme);
        client.name = name;
        return client;
    }
    /// The user renames Acme here.
    void rename(const std::string& name)
    {
        store().updateClient(acme, {.name = name, .rateCents = 1, .rateIsKnown = true});
    }
};

} // namespace KestryCore
