#include "SyncConflicts.h"

#include "LedgerCoding.h"
#include "LocalChanges.h"
#include "OutboxDelivery.h"
#include "Refusal.h"
#include "SyncFixture.h"

namespace KestryCore {
namespace {

using namespace Sample;

const std::string clientKey = recordID(SyncRecordKind::client, clientID());
const std::string activeKey = recordID(SyncRecordKind::session, sessionID(9));

constexpr const char* noSuchConflict = "This sync conflict no longer exists.";

/// One open conflict over a client that was renamed both here and elsewhere.
class SyncConflicts : public SyncFixture {
protected:
    SyncConflicts()
    {
        mine = record(renamed("Lighthouse"));
        theirs = remote(renamed("Pier"));
        ledger.clients = {renamed("Lighthouse")};
        collide(mine, theirs);
    }

    [[nodiscard]] static Client renamed(const std::string& name)
    {
        Client client = Sample::client();
        client.name = name;
        return client;
    }
    void collide(const SyncRecord& local, const SyncRecord& remote)
    {
        leavePending(local);
        knowInCloud(SyncFixture::remote(local, 0xBA));
        openConflict(local, remote);
    }
    void resolve(ConflictChoice choice, const std::string& key = clientKey)
    {
        resolveSyncConflict(ledger, key, choice, newUuid());
    }
    void keepLocal(const std::string& key = clientKey) { resolve(ConflictChoice::keepLocal, key); }
    void useCloud(const std::string& key = clientKey) { resolve(ConflictChoice::useCloud, key); }

    SyncRecord mine;
    SyncRecord theirs;
};

TEST_F(SyncConflicts, KeepingTheLocalVersionSendsItOutAgainBasedOnTheRemoteOne)
{
    LedgerData expected = ledger;
    SyncRecord kept = mine;
    kept.revision = id(1).text();
    expected.replication.edit().conflicts = {};
    expected.replication.edit().outbox[clientKey] = kept;
    expected.replication.edit().baseRevisions[clientKey] = theirs.revision;
    keepLocal();
    EXPECT_EQ(ledger, expected);
    EXPECT_EQ(pendingSyncRecords(ledger), std::vector{kept});
}

TEST_F(SyncConflicts, TheVersionKeptIsThisDevicesWhoeverWroteIt)
{
    state().outbox[clientKey].deviceID = "device-c";
    keepLocal();
    EXPECT_EQ(state().outbox.at(clientKey).deviceID, "device-a");
}

TEST_F(SyncConflicts, KeepingSendsTheNewestEditRatherThanTheOneThatCollided)
{
    const LedgerData before = ledger;
    ledger.clients = {renamed("Quay")};
    recordLedgerChange(before, ledger, {}, newUuid());
    SyncRecord former = mine;
    openConflict(former, theirs);
    keepLocal();
    EXPECT_EQ(state().outbox.at(clientKey).payload, canonicalJson(renamed("Quay")));
}

TEST_F(SyncConflicts, KeepingWithNothingPendingSendsTheConflictsLocalVersion)
{
    state().outbox.clear();
    keepLocal();
    EXPECT_EQ(state().outbox.at(clientKey).payload, mine.payload);
    EXPECT_EQ(state().outbox.at(clientKey).revision, id(1).text());
}

TEST_F(SyncConflicts, KeepingADeletionLeavesItInTheOutboxAndATombstone)
{
    const std::string key = recordID(SyncRecordKind::session, sessionID(3));
    collide(deletion(key), remote(synced(entry(3))));
    keepLocal(key);
    const SyncRecord expected{key, id(1).text(), "device-a", std::nullopt, true};
    EXPECT_EQ(state().outbox.at(key), expected);
    EXPECT_EQ(state().tombstones.at(key), expected);
}

TEST_F(SyncConflicts, KeepingALiveVersionAgainstADeletionEndsTheTombstone)
{
    openConflict(mine, remoteDeletion(clientKey));
    state().tombstones[clientKey] = deletion(clientKey);
    keepLocal();
    EXPECT_TRUE(state().tombstones.empty());
    EXPECT_FALSE(state().outbox.at(clientKey).isDeleted);
}

TEST_F(SyncConflicts, KeepingDoesNotTouchTheLedger)
{
    const LedgerData before = ledger;
    keepLocal();
    ledger.replication = before.replication;
    EXPECT_EQ(ledger, before);
}

TEST_F(SyncConflicts, UsingTheCloudsVersionDropsThePendingOneAndCountsTheRemoteAsSeen)
{
    LedgerData expected = ledger;
    expected.replication.edit().conflicts = {};
    expected.replication.edit().outbox.clear();
    expected.replication.edit().baseRevisions[clientKey] = theirs.revision;
    useCloud();
    EXPECT_EQ(ledger, expected) << "the ledger keeps the local version";
    EXPECT_EQ(revisions, 0U);
}

TEST_F(SyncConflicts, AfterUsingTheCloudsVersionTheNextNewerOneIsApplied)
{
    useCloud();
    fetch({theirs});
    EXPECT_EQ(ledger.clients.front().name, "Lighthouse");
    fetch({remote(renamed("Harbour"), 0xFC)});
    EXPECT_EQ(ledger.clients.front().name, "Harbour");
}

TEST_F(SyncConflicts, UsingTheCloudsVersionOfTheSessionThatRunsHereClearsIt)
{
    collide(record(synced(runningSession())), remoteDeletion(activeKey));
    useCloud(activeKey);
    EXPECT_FALSE(ledger.active);
    EXPECT_TRUE(state().tombstones.empty());
    EXPECT_EQ(ledger.entries, connectedLedger().entries);
}

TEST_F(SyncConflicts, UsingTheCloudsVersionOfAnotherRecordLeavesTheTimer)
{
    useCloud();
    EXPECT_EQ(ledger.active, runningSession());
}

TEST_F(SyncConflicts, KeepingTheSessionThatRunsHereLeavesItRunning)
{
    collide(record(synced(runningSession())), remoteDeletion(activeKey));
    keepLocal(activeKey);
    EXPECT_EQ(ledger.active, runningSession());
}

TEST_F(SyncConflicts, UsingTheCloudsVersionEndsTheTombstone)
{
    const std::string key = recordID(SyncRecordKind::session, sessionID(3));
    collide(deletion(key), remote(synced(entry(3))));
    state().tombstones[key] = deletion(key);
    useCloud(key);
    EXPECT_TRUE(state().tombstones.empty());
    EXPECT_EQ(ledger.entries, connectedLedger().entries) << "and nothing is resurrected yet";
}

TEST_F(SyncConflicts, UsingTheCloudsVersionEndsTheRemoteSessionOfTheSameIdentity)
{
    const std::string key = recordID(SyncRecordKind::session, sessionID());
    collide(record(synced(entry())), remote(synced(runningSession())));
    openConflict(record(synced(entry())), remote(synced(entry())));
    state().remoteSessions[key] = synced(runningSession());
    state().remoteSessions[activeKey] = synced(runningSession());
    useCloud(key);
    EXPECT_EQ(keysOf(state().remoteSessions), Keys{activeKey});
}

TEST_F(SyncConflicts, UsingTheCloudsVersionAppliesWhatElseWasWaiting)
{
    state().staged[recordID(SyncRecordKind::project, projectID(2))] = remote(project(2));
    useCloud();
    EXPECT_EQ(ledger.projects.back(), project(2));
    EXPECT_TRUE(state().staged.empty());
}

TEST_F(SyncConflicts, KeepingLeavesWhatElseIsWaiting)
{
    const std::string key = recordID(SyncRecordKind::project, projectID(2));
    state().staged[key] = remote(project(2));
    keepLocal();
    EXPECT_EQ(keysOf(state().staged), Keys{key});
}

TEST_F(SyncConflicts, EitherChoiceDropsAStagedVersionOfTheRecord)
{
    for (const ConflictChoice choice : {ConflictChoice::keepLocal, ConflictChoice::useCloud}) {
        const LedgerData before = ledger;
        state().staged[clientKey] = remote(renamed("Harbour"), 0xFC);
        resolve(choice);
        EXPECT_TRUE(state().staged.empty());
        EXPECT_EQ(ledger.clients.front().name, "Lighthouse");
        ledger = before;
    }
}

TEST_F(SyncConflicts, EitherChoiceEndsTheConflictAndMovesTheBase)
{
    for (const ConflictChoice choice : {ConflictChoice::keepLocal, ConflictChoice::useCloud}) {
        const LedgerData before = ledger;
        openConflict(record(project()), remote(project()));
        resolve(choice);
        EXPECT_EQ(conflictKeys(), Keys{recordID(SyncRecordKind::project, projectID())});
        EXPECT_EQ(state().baseRevisions.at(clientKey), theirs.revision);
        ledger = before;
    }
}

TEST_F(SyncConflicts, ASecondChoiceIsRefused)
{
    for (const ConflictChoice choice : {ConflictChoice::keepLocal, ConflictChoice::useCloud}) {
        const LedgerData before = ledger;
        resolve(choice);
        EXPECT_EQ(refusalOf([&] { resolve(choice); }), noSuchConflict);
        ledger = before;
    }
}

TEST_F(SyncConflicts, ALedgerThatWasNeverConnectedHasNoConflicts)
{
    ledger.replication = {};
    EXPECT_EQ(refusalOf([&] { keepLocal(); }), noSuchConflict);
    EXPECT_EQ(refusalOf([&] { useCloud(); }), noSuchConflict);
}

} // namespace
} // namespace KestryCore
