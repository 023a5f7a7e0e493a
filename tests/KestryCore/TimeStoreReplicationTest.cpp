#include "LedgerValidation.h"
#include "Refusal.h"
#include "ReplicationWorld.h"

namespace KestryCore {
namespace {

/// A store whose ledger is connected, and records of another device.
class TimeStoreReplication : public testing::Test, public ReplicationWorld {
protected:
    TimeStoreReplication() { open(connected(sampleLedger())); }

    void fetch(const std::vector<SyncRecord>& records)
    {
        store().applyRemoteSync(records, {}, "cursor");
    }
    /// Acme is renamed here and elsewhere.
    void collide()
    {
        rename("Ours");
        fetch({remote(renamedAcme("Theirs"))});
    }
    /// The ledger and the file hold the same.
    void expectSaved() { EXPECT_EQ(readPrimary(), ledger()); }
};

// Connecting

TEST_F(TimeStoreReplication, BeginningConnectsAndSavesTheLedgerWithAllItsRecordsToDeliver)
{
    open(runningLedger());
    store().beginSync("account", "Desk", production);
    EXPECT_EQ(state().outbox.size(), 6U);
    EXPECT_EQ(store().pendingSyncRecords().size(), 6U);
    EXPECT_EQ(state().environment, production);
    expectSaved();
    EXPECT_FALSE(readBackup().replication);
}

TEST_F(TimeStoreReplication, BeginningAgainTurnsItOnAndFillsTheOutboxNoMore)
{
    store().setSyncEnabled(false);
    store().beginSync("account", "Desk", development);
    EXPECT_TRUE(state().enabled);
    EXPECT_TRUE(state().outbox.empty());
    expectSaved();
}

TEST_F(TimeStoreReplication, ARefusalToBeginIsForTheCallerAlone)
{
    store().setSyncEnabled(false);
    expectRefusedQuietly([&] { store().beginSync("another", "Desk", development); },
        "This ledger belongs to another iCloud account. Switch back before syncing; your local "
        "data has been preserved.");
    expectRefusedQuietly([&] { store().beginSync("account", " \n", development); },
        "Sync needs an account and device name.");
    EXPECT_FALSE(state().enabled);
}

TEST_F(TimeStoreReplication, AFailedSaveWhileBeginningIsForTheCallerAlone)
{
    open(sampleLedger());
    corruptPrimary();
    try {
        store().beginSync("account", "Desk", development);
        ADD_FAILURE() << "was not refused";
    } catch (const LedgerError& refusal) {
        EXPECT_EQ(
            std::string(refusal.what()).substr(0, 37), "The ledger on disk could not be read.");
    }
    EXPECT_EQ(errorMessage(), "");
    EXPECT_FALSE(ledger().replication);
}

TEST_F(TimeStoreReplication, ALedgerOfAnotherEnvironmentIsRefusedToTheCallerAlone)
{
    expectRefusedQuietly([&] { store().validateSyncEnvironment(production); },
        "iCloud sync is paused because this ledger uses the Development environment. Your "
        "sessions and sync history are preserved. Use the previous Kestry build to sync, or "
        "contact support to migrate to Production.");
    store().validateSyncEnvironment(development);
}

TEST_F(TimeStoreReplication, TurningOffIsSavedAndLeavesTheRest)
{
    rename("Ours");
    LedgerSyncState expected = state();
    expected.enabled = false;
    store().setSyncEnabled(false);
    EXPECT_EQ(state(), expected);
    EXPECT_TRUE(store().pendingSyncRecords().empty());
    expectSaved();
}

TEST_F(TimeStoreReplication, TurningOffWhatWasNeverConnectedIsRefusedAndShown)
{
    open(sampleLedger());
    expectRefused([&] { store().setSyncEnabled(false); },
        "Connect your iCloud account before enabling sync.");
}

TEST_F(TimeStoreReplication, EditsMadeWhileOffGoOutWhenItIsOnAgain)
{
    store().setSyncEnabled(false);
    rename("Ours");
    EXPECT_TRUE(store().pendingSyncRecords().empty());
    store().beginSync("account", "Desk", development);
    ASSERT_EQ(store().pendingSyncRecords().size(), 1U);
    EXPECT_EQ(store().pendingSyncRecords().front(), state().outbox.at(clientKey(acme)));
}

// Delivering

TEST_F(TimeStoreReplication, AnAcknowledgementIsPublishedAndReachesTheDiskWithTheNextSave)
{
    rename("Ours");
    const auto filesBefore = files.contents();
    store().acknowledgeDelivery(store().pendingSyncRecords().front(), "etag");
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(state().systemFields.at(clientKey(acme)), "etag");
    EXPECT_EQ(files.contents(), filesBefore);
    addClient();
    expectSaved();
    EXPECT_EQ(readPrimary().replication->systemFields.at(clientKey(acme)), "etag");
}

TEST_F(TimeStoreReplication, AnInvalidAcknowledgementIsRefusedAndShown)
{
    SyncRecord broken = remote(renamedAcme("Ours"));
    broken.deviceID.clear();
    expectRefused(
        [&] { store().acknowledgeDelivery(broken, "etag"); }, "Invalid sync record identity.");
    open(sampleLedger());
    expectRefused([&] { store().acknowledgeDelivery(remote(renamedAcme("Ours")), "etag"); },
        "Sync is not connected.");
}

TEST_F(TimeStoreReplication, WhenAnAcknowledgementIsRefusedThoseBeforeItArePublished)
{
    rename("Ours");
    const SyncRecord sound = store().pendingSyncRecords().front();
    SyncRecord broken = sound;
    broken.deviceID.clear();
    EXPECT_EQ(refusalOf([&] {
        store().acknowledgeDeliveries({{&sound, "etag"}, {&broken, "other"}});
    }),
        "Invalid sync record identity.");
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(state().systemFields.at(clientKey(acme)), "etag");
}

TEST_F(TimeStoreReplication, ALostAcknowledgementIsMadeUpForByTheEcho)
{
    rename("Ours");
    const SyncRecord delivered = store().pendingSyncRecords().front();
    store().acknowledgeDelivery(delivered, "etag");
    open();
    EXPECT_EQ(store().pendingSyncRecords(), std::vector{delivered});
    fetch({delivered});
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(state().baseRevisions.at(clientKey(acme)), delivered.revision);
}

// Fetching

TEST_F(TimeStoreReplication, AFetchIsSavedWithItsCursorAndMakesNothingToDeliver)
{
    store().applyRemoteSync({remote(renamedAcme("Theirs"))}, {{clientKey(acme), "etag"}}, "cursor");
    EXPECT_EQ(ledger().clients.front().name, "Theirs");
    EXPECT_EQ(state().changeToken, "cursor");
    EXPECT_TRUE(state().outbox.empty());
    expectSaved();
    EXPECT_EQ(readBackup(), connected(sampleLedger()));
}

TEST_F(TimeStoreReplication, AnEmptyFetchIsSavedForItsCursor)
{
    fetch({});
    EXPECT_EQ(readPrimary().replication->changeToken, "cursor");
    store().applyRemoteSync({}, {}, std::nullopt);
    EXPECT_EQ(readPrimary().replication->changeToken, std::nullopt);
}

TEST_F(TimeStoreReplication, AFetchThatIsRefusedMovesNothing)
{
    SyncRecord broken = remote(renamedAcme("Theirs"));
    broken.payload = "{}";
    expectRefused(
        [&] {
            fetch({remote(Sample::client()), broken});
        },
        "The data is malformed: the document has no \"id\".");
    open(sampleLedger());
    expectRefused([&] { fetch({}); }, "Sync is not connected.");
}

TEST_F(TimeStoreReplication, AFetchThatWouldMakeTheLedgerInvalidIsRefused)
{
    TimeEntry imported = sampleLedger().entries.front();
    imported.sourceID = "import-7";
    LedgerData ledger = connected(sampleLedger());
    ledger.entries = {imported};
    open(ledger);
    imported.id = uuid(77);
    expectRefused([&] { fetch({Sample::record(Sample::synced(imported))}); },
        "Duplicate or empty imported source identifiers.");
}

TEST_F(TimeStoreReplication, AFetchThatCannotBeSavedIsRefused)
{
    corruptPrimary();
    expectRefused([&] { fetch({remote(renamedAcme("Theirs"))}); },
        "The ledger on disk could not be read. It has been preserved. Restore the last backup in "
        "Settings if available.");
    expectRefused([&] { fetch({}); },
        "Saving is disabled to protect your unreadable ledger. Restore the data file before "
        "continuing.");
}

TEST_F(TimeStoreReplication, WhatWaitsSurvivesARestart)
{
    SyncRecord waiting = Sample::record(Sample::project());
    fetch({waiting});
    open();
    EXPECT_EQ(state().staged.at(waiting.recordID), waiting);
    fetch({remote(Sample::client())});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(ledger().projects.back(), Sample::project());
}

TEST_F(TimeStoreReplication, ARecordTooLargeToReplicateCannotBeSavedOnceConnected)
{
    const std::string name(4'194'304, 'x');
    expectRefused([&] { rename(name); }, "Missing or oversized sync record payload.");
    LedgerData unconnected = sampleLedger();
    unconnected.clients.modify(acme, [&](Client& client) { client.name = name; });
    EXPECT_EQ(refusalOf([&] { validate(unconnected); }), accepted);
}

TEST_F(TimeStoreReplication, AChangeOfNothingIsSavedAndMakesNoRevision)
{
    open(connected(pausedLedger()));
    const LedgerSyncState before = state();
    store().renameActiveSession(writing, "Writing");
    EXPECT_EQ(state(), before);
    EXPECT_EQ(readBackup(), ledger());
}

TEST_F(TimeStoreReplication, EachCheckpointIsARevisionOfTheSession)
{
    open(connected(pausedLedger()));
    store().resume(now);
    const std::string key = recordID(SyncRecordKind::session, writing);
    const std::string before = state().outbox.at(key).revision;
    now.seconds += 15;
    store().checkpoint(now);
    EXPECT_NE(state().outbox.at(key).revision, before);
}

// Deciding

TEST_F(TimeStoreReplication, ACollisionIsSavedAndSurvivesARestart)
{
    collide();
    open();
    ASSERT_EQ(state().conflicts.size(), 1U);
    EXPECT_EQ(state().conflicts.front().remote, remote(renamedAcme("Theirs")));
    EXPECT_EQ(ledger().clients.front().name, "Ours");
    EXPECT_TRUE(store().pendingSyncRecords().empty());
}

TEST_F(TimeStoreReplication, KeepingTheLocalVersionIsSaved)
{
    collide();
    store().resolveSyncConflict(clientKey(acme), ConflictChoice::keepLocal);
    EXPECT_EQ(store().pendingSyncRecords().size(), 1U);
    EXPECT_EQ(state().baseRevisions.at(clientKey(acme)), uuid(0xEE).text());
    expectSaved();
}

TEST_F(TimeStoreReplication, UsingTheCloudsVersionIsSaved)
{
    collide();
    store().resolveSyncConflict(clientKey(acme), ConflictChoice::useCloud);
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(ledger().clients.front().name, "Ours");
    expectSaved();
}

TEST_F(TimeStoreReplication, DecidingTwiceIsRefusedAndShown)
{
    collide();
    store().resolveSyncConflict(clientKey(acme), ConflictChoice::keepLocal);
    expectRefused([&] { store().resolveSyncConflict(clientKey(acme), ConflictChoice::keepLocal); },
        "This sync conflict no longer exists.");
}

TEST_F(TimeStoreReplication, ADecisionThatCannotBeSavedLeavesTheConflict)
{
    collide();
    corruptPrimary();
    expectRefused([&] { store().resolveSyncConflict(clientKey(acme), ConflictChoice::useCloud); },
        "The ledger on disk could not be read. It has been preserved. Restore the last backup in "
        "Settings if available.");
    EXPECT_EQ(state().conflicts.size(), 1U);
}

// Restoring

TEST_F(TimeStoreReplication, RestoringABackupRemovesNothingOfTheCurrentLedger)
{
    rename("Ours");
    const Uuid added = addClient("New");
    corruptPrimary();
    expectRefused([&] { addClient("Refused"); },
        "The ledger on disk could not be read. It has been preserved. Restore the last backup in "
        "Settings if available.");
    store().restoreBackup();
    EXPECT_NE(ledger().clients.find(added), nullptr);
    EXPECT_EQ(ledger().projects.size(), 2U);
    EXPECT_EQ(ledger().entries.size(), 1U);
    EXPECT_EQ(state().outbox.size(), 6U);
    expectSaved();
}

} // namespace
} // namespace KestryCore
