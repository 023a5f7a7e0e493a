#include "SyncStates.h"

#include "LedgerCoding.h"
#include "SyncConnection.h"
#include "SyncRecords.h"

namespace KestryCore {

LedgerSyncState connectedState()
{
    LedgerSyncState state;
    state.deviceID = Uuid::random().text();
    state.deviceName = "Desk";
    state.accountID = "account";
    state.changeToken = "cursor";
    return state;
}

LedgerSyncState inStep(const LedgerData& ledger)
{
    LedgerSyncState state = connectedState();
    const auto note = [&](SyncRecordKind kind, const auto& records) {
        for (const auto& record : records) {
            const std::string id = recordID(kind, record.id);
            state.systemFields[id] = "{\"_rev\":\"1-" + record.id.text() + "\"}";
            state.baseRevisions[id] = Uuid::random().text();
        }
    };
    note(SyncRecordKind::client, ledger.clients);
    note(SyncRecordKind::project, ledger.projects);
    note(SyncRecordKind::session, ledger.entries);
    return state;
}

LedgerSyncState allWaiting(const LedgerData& ledger)
{
    LedgerData connected = ledger;
    connected.replication = {};
    beginSync(connected, "account", "Desk", CloudSyncEnvironment::development, Uuid::random);
    return *connected.replication;
}

SyncRecord remoteVersion(const TimeEntry& entry)
{
    SyncedSession session;
    session.ownerDeviceID = Uuid{}.text();
    session.ownerName = "Laptop";
    session.entry = entry;
    SyncRecord record;
    record.recordID = recordID(SyncRecordKind::session, entry.id);
    record.revision = Uuid::random().text();
    record.deviceID = session.ownerDeviceID;
    record.payload = canonicalJson(session);
    return record;
}

} // namespace KestryCore
