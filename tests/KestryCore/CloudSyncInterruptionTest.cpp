#include <functional>

#include "CloudFixture.h"

namespace KestryCore {
namespace {

/// A cycle with every kind of record, in which something happens at each of its waits in turn.
class CloudSyncInterruption : public CloudFixture {
protected:
    static constexpr unsigned theirs = 0xE0;

    /// Two pages of every kind of record, deletions and a timer among them, and a delivery of every
    /// kind, of which one record was changed on the server.
    void prepare()
    {
        controller.reset();
        cloud.changes.clear();
        LedgerData ledger = runningLedger();
        open(ledger);
        store().beginSync("account", "Desk", development);
        control();
        bring(firstPage(), "c1", true);
        bring({stored(Sample::record(Sample::synced(Sample::runningSession())))}, "c2");
        cloud.onSave = [](ScriptedCloud::Results& results) {
            for (CloudRecordResult& result : results) {
                if (result.id.name == clientKey(acme)) {
                    result.result = CloudError::changed(
                        "Changed.", stored(remote(renamedAcme("Theirs"), theirs)));
                }
            }
        };
    }
    [[nodiscard]] static std::vector<CloudRecord> firstPage()
    {
        SyncRecord deletion = Sample::deletion(recordID(SyncRecordKind::session, uuid(77)));
        return {stored(Sample::record(Sample::client())), stored(Sample::record(Sample::project())),
            stored(Sample::record(Sample::synced(Sample::entry()))), stored(deletion)};
    }
    /// How many waits a cycle has that nothing disturbs.
    int waits()
    {
        prepare();
        sync();
        int count = 0;
        for (; !cloud.waiting().empty(); ++count) {
            answer();
        }
        return count;
    }
    /// In as many cycles as a cycle has waits, something happens at each in turn.
    void atEachWait(const std::function<void()>& happening)
    {
        const int all = waits();
        ASSERT_EQ(failure(), "");
        ASSERT_EQ(all, 14);
        for (int wait = 0; wait < all; ++wait) {
            prepare();
            sync();
            for (int answered = 0; answered < wait; ++answered) {
                answer();
            }
            const testing::ScopedTrace trace(
                __FILE__, __LINE__, "at wait " + std::to_string(wait) + ": " + cloud.waiting());
            happening();
        }
    }
    /// At each wait something happens, all answers come, and nothing was applied since.
    void disturbEachWait(const std::function<void()>& happening)
    {
        atEachWait([&] {
            happening();
            const LedgerData before = ledger();
            const auto filesBefore = files.contents();
            answerAll();
            EXPECT_TRUE(ledger() == before) << "the ledger changed";
            EXPECT_TRUE(files.contents() == filesBefore) << "the files changed";
            EXPECT_EQ(cloud.frames, 0);
        });
    }
    void expectSilentEnd()
    {
        EXPECT_FALSE(isSyncing());
        EXPECT_EQ(failure(), "");
        EXPECT_EQ(*controller->fields().lastSync, std::nullopt);
    }
};

TEST_F(CloudSyncInterruption, TheUndisturbedCycleAppliesAndDeliversEveryKind)
{
    prepare();
    syncWhole();
    expectSuccess();
    EXPECT_EQ(state().conflicts.size(), 1U);
    EXPECT_EQ(state().outbox.size(), 1U);
    EXPECT_EQ(state().remoteSessions.size(), 1U);
    EXPECT_EQ(state().tombstones.size(), 1U);
    EXPECT_EQ(cursor(), "c2");
    EXPECT_NE(ledger().entries.find(Sample::sessionID()), nullptr);
}

TEST_F(CloudSyncInterruption, NothingIsAppliedAfterStopping)
{
    disturbEachWait([this] { controller->stop(); });
    expectSilentEnd();
    EXPECT_EQ(status(), "Syncing");
}

TEST_F(CloudSyncInterruption, NothingIsAppliedAfterTurningOff)
{
    disturbEachWait([this] { controller->disable(); });
    expectSilentEnd();
    EXPECT_EQ(status(), "iCloud sync is off");
}

TEST_F(CloudSyncInterruption, ACycleThatWasTurnedOffAsksNothingMore)
{
    sync();
    answerUntil("changes");
    controller->disable();
    answer();
    EXPECT_EQ(cloud.waiting(), "");
    EXPECT_FALSE(isSyncing());
}

TEST_F(CloudSyncInterruption, NothingIsAppliedAfterTurningOffAndOnAgain)
{
    disturbEachWait([this] {
        controller->disable();
        store().beginSync("account", "Desk", development);
    });
    expectSilentEnd();
}

TEST_F(CloudSyncInterruption, NothingIsAppliedWhenSomebodyElseTurnsTheLedgerOff)
{
    disturbEachWait([this] { store().setSyncEnabled(false); });
    expectSilentEnd();
}

TEST_F(CloudSyncInterruption, NothingIsAppliedAfterTheAccountHasChanged)
{
    disturbEachWait([this] {
        controller->start();
        changeAccount();
        scheduler.turn();
    });
    expectSilentEnd();
    EXPECT_EQ(status(), "iCloud account changed. Enable sync to verify your original account.");
}

TEST_F(CloudSyncInterruption, NothingIsAppliedAfterTheControllerHasGone)
{
    disturbEachWait([this] {
        controller.reset();
        EXPECT_EQ(cloud.frames, 0);
    });
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(CloudSyncInterruption, NothingIsAppliedFromAnAnswerThatComesAsTheControllerGoes)
{
    disturbEachWait([this] {
        cloud.answer();
        controller.reset();
        scheduler.turn();
    });
}

TEST_F(CloudSyncInterruption, AFailureAtAnyWaitIsShownAndLosesNothing)
{
    atEachWait([this] {
        const LedgerData before = ledger();
        cloud.failures.emplace(cloud.waiting(), CloudError("The server went away."));
        answerAll();
        expectFailure("The server went away.");
        EXPECT_TRUE(ledger() == before) << "the ledger changed";
        syncWhole();
        expectSuccess();
    });
}

TEST_F(CloudSyncInterruption, AnEditAtAnyWaitIsNeverLost)
{
    atEachWait([this] {
        store().updateClient(solo, {.name = "Alone", .rateCents = 1, .rateIsKnown = true});
        const std::string revision = state().outbox.at(clientKey(solo)).revision;
        answerAll();
        expectSuccess();
        syncWhole();
        expectSuccess();
        EXPECT_EQ(state().baseRevisions.at(clientKey(solo)), revision);
        EXPECT_FALSE(state().outbox.contains(clientKey(solo)));
        EXPECT_EQ(ledger().clients.find(solo)->name, "Alone");
    });
}

} // namespace
} // namespace KestryCore
