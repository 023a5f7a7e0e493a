#pragma once

#include <string>

#include "SyncFixture.h"

namespace KestryCore {

/// A connected ledger to which versions of other devices come.
class RemoteChangesFixture : public SyncFixture {
protected:
    static inline const std::string clientKey =
        recordID(SyncRecordKind::client, Sample::clientID());
    static inline const std::string projectKey =
        recordID(SyncRecordKind::project, Sample::projectID());
    static inline const std::string entryKey =
        recordID(SyncRecordKind::session, Sample::sessionID());
    static inline const std::string activeKey =
        recordID(SyncRecordKind::session, Sample::sessionID(9));

    static SyncedSession ofLaptop(SyncedSession session)
    {
        session.ownerDeviceID = "device-b";
        session.ownerName = "laptop";
        return session;
    }
    static Client renamed(Client client, const std::string& name = "Lighthouse")
    {
        client.name = name;
        return client;
    }
    void dropEverything()
    {
        ledger = LedgerData{};
        ledger.replication = Sample::state();
    }
    void dropActive() { ledger.active.reset(); }
    /// Applies one version; tells whether the record is finished with.
    bool apply(const SyncRecord& record)
    {
        LedgerSyncState known = *ledger.replication;
        const bool isDone = applyRemoteRecord(record, ledger, known, newUuid());
        ledger.replication = known;
        return isDone;
    }
    /// Applies a version that changes nothing at all.
    void expectIgnored(const SyncRecord& record)
    {
        const LedgerData before = ledger;
        EXPECT_TRUE(apply(record));
        EXPECT_EQ(ledger, before);
    }
};

} // namespace KestryCore
