// A cloud that overrules what it had accepted, and one that was restored or made anew.

#include "CloudFixture.h"

namespace KestryCore {
namespace {

class CloudSyncReplaced : public CloudFixture {
protected:
    CloudSyncReplaced()
    {
        store().beginSync("account", "Desk", development);
        store().deliverAllAgain(); // Everything waits, with the revisions that it has.
        syncWhole();
    }
    /// The version of the client Acme that was delivered last.
    [[nodiscard]] CloudRecord deliveredAcme() const
    {
        for (auto batch = cloud.deliveries.rbegin(); batch != cloud.deliveries.rend(); ++batch) {
            for (const CloudRecord& record : *batch) {
                if (record.id.name == clientKey(acme)) {
                    return record;
                }
            }
        }
        return {};
    }
    /// The next page shows another's version of Acme, with these behind it.
    void overrule(const std::vector<CloudRecord>& versions)
    {
        CloudChanges page =
            ScriptedCloud::page({stored(remote(renamedAcme("Theirs")), "v9")}, "overruled");
        page.overruled = versions;
        cloud.changes.emplace_back(page);
    }
    void replaceStore()
    {
        cloud.changes.emplace_back(
            CloudError("The store was replaced.", CloudErrorCode::storeReplaced));
    }
    [[nodiscard]] bool offersUpload() const { return *controller->fields().offersUpload; }
};

TEST_F(CloudSyncReplaced, AnOverruledVersionOfThisDeviceBecomesAConflict)
{
    const CloudRecord mine = deliveredAcme();
    overrule({mine});
    syncWhole();
    expectSuccess();
    ASSERT_EQ(state().conflicts.size(), 1U);
    EXPECT_EQ(state().conflicts.front().local, syncRecordFrom(mine));
    EXPECT_EQ(cloud.discarded, std::vector<CloudRecord>{mine});
    EXPECT_EQ(ledger().clients.find(acme)->name, sampleLedger().clients.find(acme)->name);
}

TEST_F(CloudSyncReplaced, ItIsSavedBeforeTheCloudLetsGoOfIt)
{
    const CloudRecord mine = deliveredAcme();
    overrule({mine});
    sync();
    answerUntil("discard");
    EXPECT_TRUE(readPrimary().replication->outbox.contains(clientKey(acme)));
    EXPECT_EQ(cursor(), "start");
}

TEST_F(CloudSyncReplaced, AFailureToLetGoOfItLeavesTheCursorAndIsTriedAgain)
{
    const CloudRecord mine = deliveredAcme();
    overrule({mine});
    cloud.failures.emplace("discard", CloudError("No answer."));
    syncWhole();
    expectFailure("No answer.");
    EXPECT_EQ(cursor(), "start");
    overrule({});
    syncWhole();
    expectSuccess();
    EXPECT_EQ(state().conflicts.size(), 1U);
    EXPECT_EQ(cloud.discarded, std::vector<CloudRecord>{mine});
}

/// Acme waits, and the cloud accepts it and shows another's version before it.
class CloudSyncOverruledSave : public CloudSyncReplaced {
protected:
    CloudSyncOverruledSave()
    {
        rename("Mine");
        cloud.onSave = [this](ScriptedCloud::Results& results) {
            for (CloudRecordResult& result : results) {
                if (const auto* const saved = std::get_if<CloudRecord>(&result.result);
                    saved != nullptr && mine.fields.empty() && result.id.name == clientKey(acme)) {
                    mine = *saved;
                    result.result =
                        CloudError::changed("Changed.", stored(remote(renamedAcme("Theirs")), "v9"))
                            .overruling(mine);
                }
            }
        };
    }
    CloudRecord mine;
};

TEST_F(CloudSyncOverruledSave, IsAConflictAndIsLetGoAtOnce)
{
    syncWhole();
    EXPECT_EQ(state().conflicts.size(), 1U);
    EXPECT_EQ(cloud.discarded, std::vector<CloudRecord>{mine});
}

TEST_F(CloudSyncOverruledSave, IsLetGoBeforeTheNextPullThoughItWasDecidedOnMeanwhile)
{
    cloud.failures.emplace("discard", CloudError("No answer."));
    syncWhole();
    ASSERT_TRUE(cloud.discarded.empty());
    store().resolveSyncConflict(clientKey(acme), ConflictChoice::useCloud);
    syncWhole();
    EXPECT_EQ(cloud.discarded, std::vector<CloudRecord>{mine});
    EXPECT_TRUE(state().conflicts.empty());
}

TEST_F(CloudSyncReplaced, AnOverruledVersionOfAnotherDeviceIsLeftToThatOne)
{
    overrule({stored(remote(renamedAcme("Others")), "v8")});
    syncWhole();
    expectSuccess();
    EXPECT_TRUE(state().conflicts.empty());
    EXPECT_TRUE(cloud.discarded.empty());
    EXPECT_EQ(cloud.times("discard"), 0);
}

TEST_F(CloudSyncReplaced, AnOverruledVersionThatMakesNoSenseIsLeftAlone)
{
    CloudRecord strange = deliveredAcme();
    strange.fields.clear();
    overrule({strange});
    syncWhole();
    expectSuccess();
}

TEST_F(CloudSyncReplaced, ForeignDeletionsStopTheCycleBeforeAnythingIsTakenBack)
{
    const LedgerData before = ledger();
    CloudChanges page = ScriptedCloud::page({}, "overruled");
    page.overruled = {deliveredAcme()};
    page.deletions = {page.overruled.front().id};
    cloud.changes.emplace_back(page);
    syncWhole();
    EXPECT_NE(failure().find("Records were removed outside Kestry."), std::string::npos);
    EXPECT_EQ(ledger(), before);
    EXPECT_TRUE(cloud.discarded.empty());
}

TEST_F(CloudSyncReplaced, AVersionThatWasTakenBackBeforeLeavesAcknowledgementsToBeSaved)
{
    const CloudRecord mine = deliveredAcme();
    overrule({mine});
    syncWhole();
    (void)store().addClient({"Birch", 100, "112233", true, std::nullopt, true});
    syncWhole();
    CloudChanges page = ScriptedCloud::page({}, "overruled");
    page.overruled = {mine};
    cloud.changes.emplace_back(page);
    syncWhole();
    expectSuccess();
    EXPECT_EQ(readPrimary(), ledger());
}

TEST_F(CloudSyncReplaced, WhatTheStoreKnowsOfItselfIsKeptWithTheAcknowledgements)
{
    rename("Mine");
    cloud.addedToCursor = " witnessed";
    syncWhole();
    EXPECT_EQ(cursor(), "start witnessed");
    EXPECT_TRUE(state().outbox.empty());
}

TEST_F(CloudSyncReplaced, AReplacedStoreStopsTheCycleAndOffersToUpload)
{
    const LedgerData before = ledger();
    replaceStore();
    syncWhole();
    expectFailure("The store was replaced.");
    EXPECT_TRUE(offersUpload());
    EXPECT_EQ(ledger(), before);
}

TEST_F(CloudSyncReplaced, AMissingWorkspaceOffersToUploadToo)
{
    cloud.hasZone = false;
    syncWhole();
    EXPECT_TRUE(offersUpload());
    controller->uploadAgain();
    scheduler.turn();
    answerAll();
    expectSuccess();
    EXPECT_EQ(cloud.times("create"), 1);
}

TEST_F(CloudSyncReplaced, AnotherFailureTakesTheOfferBack)
{
    replaceStore();
    syncWhole();
    cloud.failures.emplace("zone", CloudError("No answer."));
    syncWhole();
    EXPECT_FALSE(offersUpload());
}

TEST_F(CloudSyncReplaced, NothingIsOfferedOnceItIsOffOrTheAccountIsAnother)
{
    const auto turnOff = [this] { controller->disable(); };
    const auto takeAccount = [this] {
        controller->start();
        changeAccount();
        scheduler.turn();
    };
    for (const std::function<void()>& end : {std::function<void()>(turnOff), {takeAccount}}) {
        replaceStore();
        syncWhole();
        ASSERT_TRUE(offersUpload());
        end();
        EXPECT_FALSE(offersUpload());
        controller->enable();
        scheduler.turn();
        answerAll();
    }
}

TEST_F(CloudSyncReplaced, TurningItOnAgainTakesTheOfferBack)
{
    replaceStore();
    syncWhole();
    ASSERT_TRUE(offersUpload());
    controller->enable();
    scheduler.turn();
    answerUntil("zone");
    EXPECT_FALSE(offersUpload());
    answerAll();
}

TEST_F(CloudSyncReplaced, UploadingAgainReadsFromNothingAndDeliversEverything)
{
    replaceStore();
    syncWhole();
    const std::size_t batches = cloud.deliveries.size();
    bool isDone = false;
    controller->uploadAgain([&] { isDone = true; });
    scheduler.turn();
    answerAll();
    expectSuccess();
    EXPECT_TRUE(isDone);
    EXPECT_FALSE(offersUpload());
    EXPECT_EQ(cloud.cursors.back(), std::nullopt);
    ASSERT_EQ(cloud.deliveries.size(), batches + 1);
    EXPECT_EQ(cloud.deliveries.back().size(), cloud.deliveries.front().size());
    for (const CloudRecord& record : cloud.deliveries.back()) {
        EXPECT_EQ(record.serverVersion, "") << "the store knows none of the versions";
    }
}

TEST_F(CloudSyncReplaced, WhatTheStoreStillHasIsRecognisedAndWhatDiffersIsAConflict)
{
    const CloudRecord mine = deliveredAcme();
    replaceStore();
    syncWhole();
    bring({mine}, "again");
    controller->uploadAgain();
    scheduler.turn();
    answerAll();
    EXPECT_TRUE(state().conflicts.empty());
    replaceStore();
    syncWhole();
    bring({stored(remote(renamedAcme("Older")), "v3")}, "once more");
    controller->uploadAgain();
    scheduler.turn();
    answerAll();
    ASSERT_EQ(state().conflicts.size(), 1U);
    EXPECT_EQ(state().conflicts.front().id, clientKey(acme));
}

// The ledger keeps the words of this device until a newer version comes, whoever has won.
TEST_F(CloudSyncReplaced, WhatWasDecidedForTheCloudMeetsItsVersionAgainAsAConflict)
{
    const CloudRecord theirs = stored(remote(renamedAcme("Theirs")), "v9");
    rename("Mine");
    bring({theirs}, "collision");
    syncWhole();
    store().resolveSyncConflict(clientKey(acme), ConflictChoice::useCloud);
    replaceStore();
    syncWhole();
    bring({theirs}, "again");
    controller->uploadAgain();
    scheduler.turn();
    answerAll();
    ASSERT_EQ(state().conflicts.size(), 1U);
    EXPECT_EQ(state().conflicts.front().local.payload, state().outbox.at(clientKey(acme)).payload);
    EXPECT_EQ(state().conflicts.front().remote, syncRecordFrom(theirs));
    EXPECT_EQ(ledger().clients.find(acme)->name, "Mine");
}

TEST_F(CloudSyncReplaced, OpenConflictsAreDecidedFirstAndTheOfferStays)
{
    rename("Mine");
    bring({stored(remote(renamedAcme("Theirs")), "v9")}, "collision");
    syncWhole();
    replaceStore();
    syncWhole();
    const LedgerData before = ledger();
    controller->uploadAgain();
    scheduler.turn();
    EXPECT_EQ(ledger(), before);
    EXPECT_EQ(controller->fields().errorMessage->value_or(""),
        "Decide on the open sync conflicts first. Then upload this device's records again.");
    EXPECT_TRUE(offersUpload());
}

TEST_F(CloudSyncReplaced, WhatWaitsForOthersIsForgottenWhereTheRecordIsHereAndElseKept)
{
    const std::string unknown = recordID(SyncRecordKind::session, Sample::id(0xD1));
    TimeEntry elsewhere = ledger().entries.front();
    elsewhere.projectID = Sample::id(0xD2);
    TimeEntry other = elsewhere;
    other.id = Sample::id(0xD1);
    bring({stored(Sample::record(Sample::synced(elsewhere)), "v7"),
              stored(Sample::record(Sample::synced(other)), "v8")},
        "without its project");
    syncWhole();
    ASSERT_EQ(state().staged.size(), 2U);
    store().deliverAllAgain();
    ASSERT_EQ(state().staged.size(), 1U);
    EXPECT_TRUE(state().staged.contains(unknown));
}

TEST_F(CloudSyncReplaced, WhatTheOldStoreWasToLetGoDoesNotHoldUpTheNewOne)
{
    overrule({deliveredAcme()});
    cloud.failures.emplace("discard", CloudError("No answer."));
    syncWhole();
    cloud.failures.emplace("discard", CloudError::replaced());
    syncWhole();
    if (!state().conflicts.empty()) {
        store().resolveSyncConflict(clientKey(acme), ConflictChoice::keepLocal);
    }
    cloud.failures.emplace("discard", CloudError::replaced());
    const int before = cloud.times("discard");
    bring({}, "anew");
    controller->uploadAgain();
    scheduler.turn();
    answerAll();
    expectSuccess();
    EXPECT_EQ(cloud.times("discard"), before);
}

TEST_F(CloudSyncReplaced, DeletionsAreDeliveredAgainToo)
{
    const std::string key = recordID(SyncRecordKind::session, meeting);
    store().deleteEntry(meeting);
    syncWhole();
    ASSERT_TRUE(state().outbox.empty());
    store().deliverAllAgain();
    ASSERT_TRUE(state().outbox.contains(key));
    EXPECT_TRUE(state().outbox.at(key).isDeleted);
    EXPECT_TRUE(state().tombstones.contains(key));
}

TEST_F(CloudSyncReplaced, UploadingAgainKeepsWhatWasNotDelivered)
{
    rename("Pending");
    const SyncRecord pending = state().outbox.at(clientKey(acme));
    store().deliverAllAgain();
    EXPECT_EQ(state().outbox.at(clientKey(acme)), pending);
    EXPECT_TRUE(state().baseRevisions.empty());
    EXPECT_TRUE(state().systemFields.empty());
    EXPECT_FALSE(state().changeToken.has_value());
}

TEST_F(CloudSyncReplaced, UploadingAgainDoesNothingWhileOffOrDuringACycle)
{
    sync();
    const LedgerData during = ledger();
    controller->uploadAgain();
    scheduler.turn();
    EXPECT_EQ(ledger(), during);
    answerAll();
    controller->disable();
    const LedgerData off = ledger();
    controller->uploadAgain();
    scheduler.turn();
    EXPECT_EQ(ledger(), off);
}

} // namespace
} // namespace KestryCore
