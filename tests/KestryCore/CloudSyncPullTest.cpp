#include "CloudFixture.h"

namespace KestryCore {
namespace {

const char* const removed =
    "Records were removed outside Kestry. Sync stopped to protect local data; restore those cloud "
    "records before retrying.";

class CloudSyncPull : public CloudFixture {
protected:
    using Cursors = std::vector<std::optional<std::string>>;

    [[nodiscard]] std::string nameOfAcme() const { return ledger().clients.find(acme)->name; }
    void expire()
    {
        cloud.changes.emplace_back(
            CloudError("The cursor has expired.", CloudErrorCode::changeTokenExpired));
    }
    [[nodiscard]] int savesIn(const std::function<void()>& action)
    {
        const int before = files.callCount();
        action();
        return files.callCount() - before;
    }
    /// Acme and many others, and the wait is before all of it is looked at.
    void fetchMany()
    {
        std::vector<CloudRecord> many{theirs()};
        for (unsigned number = 0; number < 1'500; ++number) {
            Client client = renamedAcme("One of many");
            client.id = uuid(0x1000 + number);
            many.push_back(stored(remote(client)));
        }
        bring(many, "c1");
        sync();
        answerUntil("changes");
        answer();
        answerUntil("name");
    }
    static CloudRecord theirs(const std::string& name = "Theirs", unsigned revision = 0xEE)
    {
        return stored(remote(renamedAcme(name), revision), "v" + std::to_string(revision));
    }
};

TEST_F(CloudSyncPull, WhatHasChangedIsAppliedAndSavedWithItsCursorAndMetadata)
{
    bring({theirs()}, "c1");
    syncWhole();
    EXPECT_EQ(nameOfAcme(), "Theirs");
    EXPECT_EQ(cursor(), "c1");
    EXPECT_EQ(state().systemFields.at(clientKey(acme)), archiveSystemFields(theirs()));
    EXPECT_EQ(state().baseRevisions.at(clientKey(acme)), uuid(0xEE).text());
    EXPECT_EQ(readPrimary(), ledger());
    expectSuccess();
}

TEST_F(CloudSyncPull, GoesOnWhileMoreIsComingPageByPage)
{
    bring({theirs("One", 1)}, "c1", true);
    bring({theirs("Two", 2)}, "c2", true);
    bring({theirs("Three", 3)}, "c3");
    sync();
    answerUntil("changes");
    answer();
    answerUntil("changes");
    EXPECT_EQ(nameOfAcme(), "One");
    EXPECT_EQ(readPrimary().replication->changeToken, archiveCursor(workspaceZone(), {"c1"}));
    answerAll();
    EXPECT_EQ(cloud.cursors, (Cursors{std::nullopt, "c1", "c2"}));
    EXPECT_EQ(nameOfAcme(), "Three");
    EXPECT_EQ(cursor(), "c3");
}

TEST_F(CloudSyncPull, ALongFetchTakesTurnsAndMeetsWhatIsChangedMeanwhile)
{
    fetchMany();
    const std::size_t before = ledger().clients.size();
    cloud.answer();
    scheduler.post([&] {
        EXPECT_TRUE(isSyncing());
        EXPECT_EQ(ledger().clients.size(), before) << "All is applied at once.";
        rename("Ours");
    });
    scheduler.turn();
    answerAll();
    EXPECT_EQ(ledger().clients.size(), before + 1'500);
    EXPECT_EQ(nameOfAcme(), "Ours");
    EXPECT_EQ(state().conflicts.size(), 1U);
    EXPECT_EQ(cursor(), "c1");
}

TEST_F(CloudSyncPull, NothingOfALongFetchIsAppliedWhenItIsTurnedOffMeanwhile)
{
    fetchMany();
    cloud.answer();
    scheduler.post([&] { controller->disable(); });
    scheduler.turn();
    answerAll();
    EXPECT_EQ(ledger().clients.size(), sampleLedger().clients.size());
    EXPECT_EQ(cursor(), "none");
    EXPECT_FALSE(isSyncing());
}

TEST_F(CloudSyncPull, AFeedThatComesBackToACursorIsAFailureAndNoEndlessLoop)
{
    for (int answer = 0; answer < 3; ++answer) {
        bring({theirs("One", 1)}, "c1", true);
        bring({theirs("Two", 2)}, "c2", true);
    }
    syncWhole();
    expectFailure("iCloud sends the same changes again and again. What has arrived is saved, and "
                  "your local changes will retry.");
    EXPECT_EQ(cloud.cursors.size(), 3U);
    EXPECT_EQ(cloud.times("save"), 0);
    EXPECT_EQ(readPrimary().replication->changeToken, archiveCursor(workspaceZone(), {"c1"}));
}

TEST_F(CloudSyncPull, AnAnswerThatEndsTheFeedMayLeaveTheCursorWhereItWas)
{
    bring({theirs("One", 1)}, "c1", true);
    bring({theirs("Two", 2)}, "c1");
    syncWhole();
    expectSuccess();
    EXPECT_EQ(nameOfAcme(), "Two");
}

TEST_F(CloudSyncPull, TheNextCycleGoesOnFromTheSavedCursor)
{
    bring({}, "c1");
    syncWhole();
    syncWhole();
    EXPECT_EQ(cloud.cursors, (Cursors{std::nullopt, "c1"}));
}

TEST_F(CloudSyncPull, ACursorThatCannotBeReadIsAFailure)
{
    LedgerData spoilt = ledger();
    spoilt.replication.edit().changeToken = "garbage";
    control(spoilt);
    syncWhole();
    expectFailure("The saved iCloud cursor could not be read. Local changes are preserved.");
    EXPECT_EQ(state().changeToken, "garbage");
    EXPECT_EQ(cloud.times("changes"), 0);
}

TEST_F(CloudSyncPull, AnyDeletionOfARecordStopsItHoweverGoodTheRestIs)
{
    bring({}, "c1");
    syncWhole();
    CloudChanges changes = ScriptedCloud::page({theirs()}, "c2");
    changes.deletions.push_back({clientKey(solo), workspaceZone()});
    cloud.changes.emplace_back(changes);
    syncWhole();
    expectFailure(removed);
    EXPECT_EQ(nameOfAcme(), "Acme");
    EXPECT_EQ(cursor(), "c1");
    EXPECT_TRUE(controller->isEnabled());
}

TEST_F(CloudSyncPull, ADeletionOnALaterPageKeepsThePagesBefore)
{
    bring({theirs()}, "c1", true);
    CloudChanges changes = ScriptedCloud::page({}, "c2");
    changes.deletions.push_back({clientKey(solo), workspaceZone()});
    cloud.changes.emplace_back(changes);
    syncWhole();
    expectFailure(removed);
    EXPECT_EQ(nameOfAcme(), "Theirs");
    EXPECT_EQ(cursor(), "c1");
}

TEST_F(CloudSyncPull, ARecordThatFailsEndsItWithItsWords)
{
    CloudChanges changes = ScriptedCloud::page({theirs()}, "c1");
    changes.modifications.push_back(ScriptedCloud::failed({clientKey(solo), workspaceZone()},
        CloudError("One record cannot be read.").retryingAfter(7)));
    cloud.changes.emplace_back(changes);
    syncWhole();
    expectFailure("One record cannot be read. Retry in 7 seconds.");
    EXPECT_EQ(nameOfAcme(), "Acme");
    EXPECT_EQ(cursor(), "none");
}

TEST_F(CloudSyncPull, ARecordOfANewerProgramStopsItWithoutMovingTheCursor)
{
    CloudRecord newer = theirs();
    newer.fields["schema"] = 2.0;
    bring({newer}, "c1");
    syncWhole();
    expectFailure(
        "iCloud contains an unsupported record. Update Kestry before retrying; local data "
        "is safe.");
    EXPECT_EQ(cursor(), "none");
}

TEST_F(CloudSyncPull, AnIncompleteRecordStopsItWithoutMovingTheCursor)
{
    CloudRecord incomplete = theirs();
    incomplete.fields.erase("payload");
    bring({incomplete}, "c1");
    syncWhole();
    expectFailure("An iCloud record is incomplete. Sync stopped without advancing its cursor.");
    EXPECT_EQ(cursor(), "none");
}

TEST_F(CloudSyncPull, WhatTheStoreRefusesIsShownByBoth)
{
    CloudRecord deletion = theirs();
    deletion.fields["deleted"] = 1.0;
    bring({deletion}, "c1");
    syncWhole();
    expectFailure("Deleted sync records cannot contain live data.");
    EXPECT_EQ(errorMessage(), "Deleted sync records cannot contain live data.");
    EXPECT_EQ(cursor(), "none");
}

TEST_F(CloudSyncPull, APageThatCannotBeSavedIsFetchedAgain)
{
    bring({theirs()}, "c1");
    corruptPrimary();
    syncWhole();
    EXPECT_EQ(status(), "Sync needs attention");
    EXPECT_EQ(failure(), errorMessage());
    EXPECT_EQ(cursor(), "none");
    EXPECT_EQ(nameOfAcme(), "Acme");
}

// An expired cursor

TEST_F(CloudSyncPull, AnExpiredCursorBeginsAnewOnce)
{
    bring({theirs()}, "c1");
    syncWhole();
    expire();
    bring({theirs()}, "c2");
    syncWhole();
    EXPECT_EQ(cloud.cursors, (Cursors{std::nullopt, "c1", std::nullopt}));
    EXPECT_EQ(cursor(), "c2");
    EXPECT_TRUE(state().conflicts.empty());
    expectSuccess();
}

TEST_F(CloudSyncPull, ASecondExpiryIsReported)
{
    bring({}, "c1");
    syncWhole();
    expire();
    expire();
    syncWhole();
    expectFailure("The cursor has expired.");
    EXPECT_EQ(cursor(), "c1");
    syncWhole();
    expectSuccess();
}

TEST_F(CloudSyncPull, ASecondExpiryIsReportedAlsoOnALaterPage)
{
    bring({}, "c1");
    syncWhole();
    expire();
    bring({theirs()}, "c2", true);
    expire();
    syncWhole();
    expectFailure("The cursor has expired.");
    EXPECT_EQ(cursor(), "c2");
}

TEST_F(CloudSyncPull, OtherFailuresBeginNothingAnew)
{
    cloud.changes.emplace_back(CloudError("The server is tired."));
    syncWhole();
    expectFailure("The server is tired.");
    EXPECT_EQ(cloud.times("changes"), 1);
}

// What an idle poll costs

TEST_F(CloudSyncPull, AnAnswerThatBringsNothingSavesNothing)
{
    bring({}, "c1");
    syncWhole();
    const auto filesBefore = files.contents();
    EXPECT_EQ(savesIn([this] { syncWhole(); }), 0);
    EXPECT_EQ(files.contents(), filesBefore);
    expectSuccess();
}

TEST_F(CloudSyncPull, ACursorThatMovedIsSaved)
{
    bring({}, "c1");
    syncWhole();
    bring({}, "c2");
    EXPECT_GT(savesIn([this] { syncWhole(); }), 0);
    EXPECT_EQ(readPrimary().replication->changeToken, archiveCursor(workspaceZone(), {"c2"}));
}

TEST_F(CloudSyncPull, AnAcknowledgementIsSavedByTheNextCycleAndNotTwice)
{
    rename("Ours");
    bring({}, "c1");
    syncWhole();
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(readPrimary().replication->outbox.size(), 1U);
    syncWhole();
    EXPECT_TRUE(readPrimary().replication->outbox.empty());
    EXPECT_EQ(savesIn([this] { syncWhole(); }), 0);
}

TEST_F(CloudSyncPull, WhatWaitsIsTriedOnEveryFetchAndSavedWhenItGoes)
{
    const Uuid added = addClient("Beta");
    const Uuid project = store().addProject(added, {"Beta site", 1, true});
    syncWhole();
    bring({stored(remote(*ledger().clients.find(added)))}, "c1");
    syncWhole();
    SyncRecord deletion = remote(*ledger().clients.find(added), 0xEF);
    deletion.payload.reset();
    deletion.isDeleted = true;
    bring({stored(deletion)}, "c2");
    syncWhole();
    ASSERT_EQ(state().staged.size(), 1U);
    EXPECT_EQ(status(), "Awaiting related records (1)");
    EXPECT_EQ(savesIn([this] { syncWhole(); }), 0);
    SyncRecord projectDeletion = deletion;
    projectDeletion.recordID = recordID(SyncRecordKind::project, project);
    projectDeletion.revision = uuid(0xF0).text();
    bring({stored(projectDeletion)}, "c2");
    syncWhole();
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(ledger().clients.find(added), nullptr);
}

} // namespace
} // namespace KestryCore
