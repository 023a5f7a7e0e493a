#include "CloudFixture.h"

#include <algorithm>

namespace KestryCore {
namespace {

const char* const unacknowledged =
    "iCloud did not acknowledge every record. Unsaved changes will retry.";

class CloudSyncPush : public CloudFixture {
protected:
    /// The ledger has this many sessions, and nothing of it was ever delivered.
    void leaveSessions(unsigned number)
    {
        LedgerData ledger = sampleLedger();
        ledger.entries = {};
        for (unsigned index = 0; index < number; ++index) {
            TimeEntry entry = sampleLedger().entries.front();
            entry.id = uuid(5000 + index);
            ledger.entries.append(entry);
        }
        ledger.clients = {*ledger.clients.find(acme)};
        ledger.projects = {*ledger.projects.find(website)};
        control(ledger);
        store().beginSync("account", "Desk", development);
    }
    [[nodiscard]] std::vector<std::size_t> batchSizes() const
    {
        std::vector<std::size_t> sizes;
        for (const auto& batch : cloud.deliveries) {
            sizes.push_back(batch.size());
        }
        return sizes;
    }
    [[nodiscard]] std::vector<std::string> delivered() const
    {
        std::vector<std::string> names;
        for (const auto& batch : cloud.deliveries) {
            for (const CloudRecord& record : batch) {
                names.push_back(record.id.name);
            }
        }
        return names;
    }
    /// The next answer to a save is this about the client Acme.
    void answerAcmeWith(const CloudError& error)
    {
        cloud.onSave = [=](ScriptedCloud::Results& results) {
            for (CloudRecordResult& result : results) {
                if (result.id.name == clientKey(acme)) {
                    result.result = error;
                }
            }
        };
    }
    void answerThatAcmeHasChangedTo(const CloudRecord& server)
    {
        answerAcmeWith(CloudError::changed("The record has changed.", server));
    }
    void renameSolo()
    {
        store().updateClient(solo, {.name = "Alone", .rateCents = 1, .rateIsKnown = true});
    }
};

TEST_F(CloudSyncPush, GoesOutInBatchesOfAHundredSortedByRecord)
{
    leaveSessions(248);
    syncWhole();
    EXPECT_EQ(batchSizes(), (std::vector<std::size_t>{100, 100, 50}));
    const auto names = delivered();
    EXPECT_TRUE(std::ranges::is_sorted(names));
    EXPECT_EQ(names.front(), clientKey(acme));
    EXPECT_TRUE(state().outbox.empty());
    expectSuccess();
}

TEST_F(CloudSyncPush, ExactlyAHundredAreOneBatch)
{
    leaveSessions(98);
    syncWhole();
    EXPECT_EQ(batchSizes(), (std::vector<std::size_t>{100}));
}

TEST_F(CloudSyncPush, NothingWaitingAsksNothing)
{
    syncWhole();
    EXPECT_EQ(cloud.times("save"), 0);
}

TEST_F(CloudSyncPush, ARecordIsSentAsAChangeOfTheVersionThatIsKnown)
{
    const CloudRecord theirs = stored(remote(renamedAcme("Theirs")), "v8");
    bring({theirs}, "c1");
    syncWhole();
    rename("Ours");
    syncWhole();
    ASSERT_EQ(cloud.deliveries.size(), 1U);
    EXPECT_EQ(cloud.deliveries.front().front().serverVersion, "v8");
    rename("Ours again");
    syncWhole();
    EXPECT_EQ(cloud.deliveries.back().front().serverVersion, "saved 1");
}

TEST_F(CloudSyncPush, AnAcknowledgedRecordIsKnownAndPublishedButNotSaved)
{
    rename("Ours");
    const SyncRecord sent = state().outbox.at(clientKey(acme));
    bring({}, "c1");
    sync();
    answerUntil("save");
    const auto filesBefore = files.contents();
    answerAll();
    EXPECT_EQ(state().baseRevisions.at(sent.recordID), sent.revision);
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(files.contents(), filesBefore);
}

TEST_F(CloudSyncPush, TheAcknowledgementsOfABatchArePublishedOnce)
{
    rename("Ours");
    renameSolo();
    sync();
    answerUntil("save");
    int published = 0;
    const Subscription subscription =
        store().data().observe([&](const LedgerData&) { ++published; });
    answerAll();
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(published, 1);
}

TEST_F(CloudSyncPush, ALostAcknowledgementIsMetAgainAsAnEcho)
{
    rename("Ours");
    bring({}, "c1");
    syncWhole();
    const CloudRecord server = [&] {
        CloudRecord record = cloud.deliveries.front().front();
        record.serverVersion = "saved 1";
        return record;
    }();
    controller.reset();
    open(); // The acknowledgement never reached the disk.
    control();
    ASSERT_EQ(state().outbox.size(), 1U);
    answerThatAcmeHasChangedTo(server);
    syncWhole();
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_TRUE(state().conflicts.empty());
    expectSuccess();
}

TEST_F(CloudSyncPush, AnEditDuringTheDeliveryStaysToBeDelivered)
{
    rename("One");
    sync();
    answerUntil("save");
    const std::string sent = state().outbox.at(clientKey(acme)).revision;
    rename("Two");
    answerAll();
    EXPECT_EQ(state().outbox.size(), 1U);
    EXPECT_EQ(state().baseRevisions.at(clientKey(acme)), sent);
    EXPECT_EQ(status(), "Changes pending (1)");
    syncWhole();
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(cloud.deliveries.back().front().serverVersion, "saved 1");
}

TEST_F(CloudSyncPush, TheListIsTakenOnce)
{
    leaveSessions(100);
    sync();
    answerUntil("save");
    answer();
    rename("Ours");
    const Uuid added = addClient("Beta");
    answerAll();
    EXPECT_EQ(delivered().size(), 102U);
    EXPECT_FALSE(std::ranges::count(delivered(), clientKey(added)));
    EXPECT_TRUE(state().outbox.contains(clientKey(added)));
}

// What does not go well

TEST_F(CloudSyncPush, ARecordThatChangedOnTheServerIsAConflictAtOnce)
{
    bring({}, "c1");
    rename("Ours");
    answerThatAcmeHasChangedTo(stored(remote(renamedAcme("Theirs"))));
    syncWhole();
    ASSERT_EQ(state().conflicts.size(), 1U);
    EXPECT_EQ(state().conflicts.front().remote, remote(renamedAcme("Theirs")));
    EXPECT_EQ(cursor(), "c1");
    EXPECT_EQ(readPrimary(), ledger());
    EXPECT_EQ(status(), "Review sync conflicts");
    expectSuccess();
}

TEST_F(CloudSyncPush, TheServersVersionThatOursIsBasedOnIsNoConflict)
{
    bring({stored(remote(renamedAcme("Theirs")), "v1")}, "c1");
    syncWhole();
    rename("Ours");
    answerThatAcmeHasChangedTo(stored(remote(renamedAcme("Theirs")), "v2"));
    syncWhole();
    EXPECT_TRUE(state().conflicts.empty());
    EXPECT_EQ(status(), "Changes pending (1)");
    cloud.onSave = nullptr;
    syncWhole();
    EXPECT_EQ(cloud.deliveries.back().front().serverVersion, "v2");
    EXPECT_EQ(status(), "Up to date");
}

TEST_F(CloudSyncPush, AConflictIsHeldBackAndTheDecisionGoesOutOverTheServersVersion)
{
    rename("Ours");
    answerThatAcmeHasChangedTo(stored(remote(renamedAcme("Theirs")), "v5"));
    syncWhole();
    cloud.onSave = nullptr;
    syncWhole();
    EXPECT_EQ(cloud.deliveries.size(), 1U);
    store().resolveSyncConflict(clientKey(acme), ConflictChoice::keepLocal);
    syncWhole();
    ASSERT_EQ(cloud.deliveries.size(), 2U);
    EXPECT_EQ(cloud.deliveries.back().front().serverVersion, "v5");
    EXPECT_EQ(status(), "Up to date");
}

TEST_F(CloudSyncPush, ARecordWithNoResultIsToldAndWaits)
{
    rename("Ours");
    renameSolo();
    cloud.onSave = [](ScriptedCloud::Results& results) { results.erase(results.begin()); };
    syncWhole();
    expectFailure(unacknowledged);
    EXPECT_EQ(state().outbox.size(), 1U);
    EXPECT_TRUE(state().outbox.contains(clientKey(acme)));
}

TEST_F(CloudSyncPush, AResultOfAnotherZoneIsNone)
{
    rename("Ours");
    cloud.onSave = [](ScriptedCloud::Results& results) { results[0].id.zone.name = "Other"; };
    syncWhole();
    expectFailure(unacknowledged);
}

TEST_F(CloudSyncPush, ResultsAreMatchedByRecordAndNotByPlace)
{
    rename("Ours");
    renameSolo();
    cloud.onSave = [](ScriptedCloud::Results& results) { std::ranges::reverse(results); };
    syncWhole();
    EXPECT_EQ(state().systemFields.at(clientKey(acme)),
        archiveSystemFields(stored(remote(renamedAcme("")), "saved 1")));
    EXPECT_TRUE(state().outbox.empty());
}

TEST_F(CloudSyncPush, ARecordThatFailsWaitsAndTheOthersAreAcknowledged)
{
    rename("Ours");
    renameSolo();
    answerAcmeWith(CloudError("The server has no more room.").retryingAfter(30));
    syncWhole();
    expectFailure("The server has no more room. Retry in 30 seconds.");
    EXPECT_EQ(state().outbox.size(), 1U);
    EXPECT_TRUE(state().baseRevisions.contains(clientKey(solo)));
}

TEST_F(CloudSyncPush, AChangedRecordWithoutTheServersVersionIsAnOrdinaryFailure)
{
    rename("Ours");
    answerAcmeWith(CloudError("Changed.", CloudErrorCode::serverRecordChanged));
    syncWhole();
    expectFailure("Changed.");
    EXPECT_TRUE(state().conflicts.empty());
}

TEST_F(CloudSyncPush, OnlyTheLastFailureIsKept)
{
    rename("Ours");
    renameSolo();
    cloud.onSave = [](ScriptedCloud::Results& results) {
        results[0].result = CloudError("The first.");
        results[1].result = CloudError("The second.");
    };
    syncWhole();
    expectFailure("The second.");
}

TEST_F(CloudSyncPush, NoFurtherBatchIsSentAfterAFailure)
{
    leaveSessions(150);
    answerAcmeWith(CloudError("No."));
    syncWhole();
    expectFailure("No.");
    EXPECT_EQ(batchSizes(), (std::vector<std::size_t>{100}));
    EXPECT_EQ(state().outbox.size(), 53U);
}

TEST_F(CloudSyncPush, ABatchThatFailsAsAWholeLeavesAllWaiting)
{
    rename("Ours");
    cloud.failures.emplace("save", CloudError("The server went away."));
    syncWhole();
    expectFailure("The server went away.");
    EXPECT_EQ(state().outbox.size(), 1U);
}

TEST_F(CloudSyncPush, SpoiltMetadataSendsNothing)
{
    rename("Ours");
    LedgerData spoilt = ledger();
    spoilt.replication.edit().systemFields[clientKey(acme)] = "garbage";
    control(spoilt);
    syncWhole();
    expectFailure("Saved iCloud metadata is invalid. Local changes are preserved.");
    EXPECT_EQ(cloud.times("save"), 0);
    EXPECT_EQ(state().outbox.size(), 1U);
}

TEST_F(CloudSyncPush, AServersRecordThatIsNotUnderstoodEndsTheCycleAtOnce)
{
    rename("Ours");
    renameSolo();
    CloudRecord newer = stored(remote(renamedAcme("Theirs")));
    newer.fields["schema"] = 2.0;
    answerThatAcmeHasChangedTo(newer);
    syncWhole();
    expectFailure(
        "iCloud contains an unsupported record. Update Kestry before retrying; local data "
        "is safe.");
    EXPECT_EQ(state().outbox.size(), 2U);
}

TEST_F(CloudSyncPush, AServersRecordThatCannotBeSavedEndsTheCycleAtOnce)
{
    rename("Ours");
    renameSolo();
    answerThatAcmeHasChangedTo(stored(remote(renamedAcme("Theirs"))));
    sync();
    answerUntil("save");
    corruptPrimary();
    answerAll();
    EXPECT_EQ(status(), "Sync needs attention");
    EXPECT_EQ(failure(), errorMessage());
    EXPECT_NE(failure(), "");
    EXPECT_EQ(state().outbox.size(), 2U);
    EXPECT_TRUE(state().conflicts.empty());
}

TEST_F(CloudSyncPush, ADecisionDuringTheDeliveryMeetsItsResult)
{
    rename("Ours");
    answerThatAcmeHasChangedTo(stored(remote(renamedAcme("Theirs")), "v5"));
    syncWhole();
    cloud.onSave = nullptr;
    store().resolveSyncConflict(clientKey(acme), ConflictChoice::keepLocal);
    sync();
    answerUntil("save");
    rename("Ours again");
    const std::string newest = state().outbox.at(clientKey(acme)).revision;
    answerAll();
    EXPECT_EQ(state().outbox.at(clientKey(acme)).revision, newest);
    EXPECT_TRUE(state().conflicts.empty());
}

} // namespace
} // namespace KestryCore
