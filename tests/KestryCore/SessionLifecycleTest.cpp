#include "SessionLifecycle.h"

#include <cmath>

#include "LedgerValidation.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

/// The rules on a ledger copy; no store, no files.
class SessionLifecycle : public testing::Test {
protected:
    static Date at(int hour, int minute = 0) { return StoreWorld::clockTime(hour, minute); }

    Uuid start(const SessionStart& start)
    {
        return startSession(ledger, start, [this] { return StoreWorld::uuid(++lastUuid); });
    }
    Uuid startOnWebsite(Date date, const std::string& title = "Writing")
    {
        return start({StoreWorld::acme, StoreWorld::website, title, date});
    }
    ActiveSession& active() { return *ledger.active; }
    TimeEntry meeting() const { return *ledger.entries.find(StoreWorld::meeting); }
    void changeMeeting(const std::function<void(TimeEntry&)>& change)
    {
        ledger.entries.modify(StoreWorld::meeting, change);
    }
    void restore(const Uuid& id, Date from, Date to)
    {
        restoreGap(ledger, {id, from, to});
        validate(ledger);
    }
    void expectRefused(const std::function<void()>& action, const std::string& message)
    {
        try {
            action();
            ADD_FAILURE() << "was not refused: " << message;
        } catch (const LedgerError& refusal) {
            EXPECT_EQ(refusal.what(), message);
        }
    }

    LedgerData ledger = StoreWorld::sampleLedger();
    unsigned lastUuid = 500;
    const std::string overlap = "The missing interval overlaps time already tracked.";
};

TEST_F(SessionLifecycle, AStartedSessionRunsFromItsDateWithTheRateFrozen)
{
    const Uuid id = startOnWebsite(at(11));
    ActiveSession expected;
    expected.id = id;
    expected.projectID = StoreWorld::website;
    expected.title = "Writing";
    expected.hourlyRateCents = 12'000;
    expected.runningSince = at(11);
    expected.checkpointAt = at(11);
    EXPECT_EQ(ledger.active, expected);
}

TEST_F(SessionLifecycle, StartTrimsTheTitle)
{
    startOnWebsite(at(11), " \t Writing it \r\n");
    EXPECT_EQ(active().title, "Writing it");
}

TEST_F(SessionLifecycle, StartTakesAnEmptyOrBlankTitleAsEmpty)
{
    startOnWebsite(at(11), "");
    EXPECT_EQ(active().title, "");
    stopSession(ledger, at(12));
    startOnWebsite(at(13), "  \n ");
    EXPECT_EQ(active().title, "");
}

TEST_F(SessionLifecycle, StartIsRefusedWhileASessionRunsOrIsPaused)
{
    for (const LedgerData& busy : {StoreWorld::runningLedger(), StoreWorld::pausedLedger()}) {
        ledger = busy;
        expectRefused([&] { startOnWebsite(at(11)); }, "Stop the current session first.");
    }
}

TEST_F(SessionLifecycle, ASessionInProgressIsToldBeforeAnUnknownClient)
{
    ledger = StoreWorld::pausedLedger();
    expectRefused(
        [&] {
            start({StoreWorld::uuid(99), std::nullopt, "", at(11)});
        },
        "Stop the current session first.");
}

TEST_F(SessionLifecycle, PauseClosesTheIntervalAndMovesTheCheckpoint)
{
    startOnWebsite(at(11));
    pauseSession(ledger, at(11, 20));
    EXPECT_EQ(active().spans, (std::vector{TimeSpan{at(11), at(11, 20)}}));
    EXPECT_TRUE(active().isPaused());
    EXPECT_EQ(active().checkpointAt, at(11, 20));
}

TEST_F(SessionLifecycle, ATwoSecondSessionIsKeptAsTwoSeconds)
{
    const Date from{816'400'000.25};
    const Uuid id = startOnWebsite(from);
    stopSession(ledger, from + 2.0);
    EXPECT_EQ(ledger.entries.find(id)->spans, (std::vector{TimeSpan{from, from + 2.0}}));
}

TEST_F(SessionLifecycle, PauseIsRefusedWithoutARunningSessionWhateverTheDate)
{
    expectRefused([&] { pauseSession(ledger, at(11)); }, "No running session to pause.");
    ledger = StoreWorld::pausedLedger();
    expectRefused([&] { pauseSession(ledger, at(1)); }, "No running session to pause.");
}

TEST_F(SessionLifecycle, AnEarlierDateIsRefusedInThreeDifferentWords)
{
    ledger = StoreWorld::runningLedger();
    expectRefused([&] { pauseSession(ledger, at(11, 29)); },
        "The clock moved backwards. Choose a later time.");
    expectRefused(
        [&] { stopSession(ledger, at(11, 29)); }, "The stop time is before the last checkpoint.");
    ledger = StoreWorld::pausedLedger();
    expectRefused(
        [&] { resumeSession(ledger, at(10, 29)); }, "Session cannot resume at this time.");
}

TEST_F(SessionLifecycle, PauseResumeStopAndCheckpointTakeADateEqualToTheCheckpoint)
{
    const Uuid id = startOnWebsite(at(11));
    checkpointSession(ledger, at(11));
    pauseSession(ledger, at(11));
    resumeSession(ledger, at(11));
    stopSession(ledger, at(11));
    EXPECT_EQ(ledger.entries.find(id)->spans,
        (std::vector{TimeSpan{at(11), at(11)}, TimeSpan{at(11), at(11)}}));
    EXPECT_NO_THROW(validate(ledger));
}

TEST_F(SessionLifecycle, ResumeIsRefusedWhileRunning)
{
    ledger = StoreWorld::runningLedger();
    expectRefused([&] { resumeSession(ledger, at(12)); }, "Session cannot resume at this time.");
}

TEST_F(SessionLifecycle, ResumeOpensANewIntervalAndThePauseCountsForNothing)
{
    const Uuid id = startOnWebsite(at(9));
    pauseSession(ledger, at(10));
    resumeSession(ledger, at(10, 30));
    EXPECT_EQ(active().runningSince, at(10, 30));
    EXPECT_EQ(active().checkpointAt, at(10, 30));
    stopSession(ledger, at(11));
    const TimeEntry* saved = ledger.entries.find(id);
    EXPECT_EQ(saved->spans, (std::vector{TimeSpan{at(9), at(10)}, TimeSpan{at(10, 30), at(11)}}));
    EXPECT_EQ(saved->duration(), 5400.0);
}

TEST_F(SessionLifecycle, AStoppedSessionKeepsItsIdentifierAndEverythingFrozen)
{
    ledger = StoreWorld::runningLedger();
    active().isBillable = false;
    active().rateIsKnown = false;
    active().sourceID = "import-1";
    EXPECT_EQ(stopSession(ledger, at(12)), StoreWorld::writing);
    TimeEntry expected;
    expected.id = StoreWorld::writing;
    expected.projectID = StoreWorld::website;
    expected.title = "Writing";
    expected.hourlyRateCents = 12'000;
    expected.spans = {{at(11), at(12)}};
    expected.isBillable = false;
    expected.rateIsKnown = false;
    expected.sourceID = "import-1";
    EXPECT_EQ(ledger.entries.back(), expected);
    EXPECT_FALSE(ledger.active.has_value());
}

TEST_F(SessionLifecycle, StoppingAPausedSessionUsesTheDateOnlyForTheCheck)
{
    ledger = StoreWorld::pausedLedger();
    expectRefused(
        [&] { stopSession(ledger, at(10)); }, "The stop time is before the last checkpoint.");
    stopSession(ledger, at(23));
    EXPECT_EQ(ledger.entries.back().endedAt(), at(10, 30));
}

TEST_F(SessionLifecycle, StoppingASessionWithoutIntervalsMakesNoEntry)
{
    ledger = StoreWorld::pausedLedger();
    active().spans.clear();
    stopSession(ledger, at(12));
    EXPECT_FALSE(ledger.active.has_value());
    EXPECT_EQ(ledger.entries.size(), 1u);
}

TEST_F(SessionLifecycle, StopIsRefusedWithoutASession)
{
    expectRefused([&] { stopSession(ledger, at(12)); }, "No session to stop.");
}

TEST_F(SessionLifecycle, ACheckpointCannotMoveBackwards)
{
    ledger = StoreWorld::runningLedger();
    expectRefused(
        [&] { checkpointSession(ledger, at(11, 29)); }, "Checkpoint cannot move backwards.");
}

TEST_F(SessionLifecycle, ACheckpointMovesNothingButItself)
{
    ledger = StoreWorld::runningLedger();
    ActiveSession expected = active();
    expected.checkpointAt = at(11, 45);
    checkpointSession(ledger, at(11, 45));
    EXPECT_EQ(active(), expected);
}

TEST_F(SessionLifecycle, PastTheLongestSessionItCanNoLongerBeCarriedForward)
{
    ledger = StoreWorld::runningLedger();
    const Date limit = at(11) + maximumSessionDuration;
    checkpointSession(ledger, limit);
    EXPECT_NO_THROW(validate(ledger));
    const std::string message = "A session must contain between 0 and 744 hours (31 days) of work.";
    for (const auto& carry : {checkpointSession, pauseSession}) {
        LedgerData working = ledger;
        carry(working, limit + 1.0);
        expectRefused([&] { validate(working); }, message);
    }
    stopSession(ledger, limit + 1.0);
    expectRefused([&] { validate(ledger); }, message);
}

TEST_F(SessionLifecycle, UpdatingGuardsAgainstASessionThatHasEnded)
{
    const std::string message = "This session is no longer active.";
    expectRefused([&] { updateSession(ledger, StoreWorld::writing, "", std::nullopt); }, message);
    ledger = StoreWorld::runningLedger();
    expectRefused([&] { updateSession(ledger, StoreWorld::meeting, "", std::nullopt); }, message);
}

TEST_F(SessionLifecycle, UpdatingTrimsTheTitleAndLeavesTheTimerAlone)
{
    ledger = StoreWorld::runningLedger();
    ActiveSession expected = active();
    expected.title = "Reading";
    updateSession(ledger, StoreWorld::writing, "\n Reading ", std::nullopt);
    EXPECT_EQ(active(), expected);
}

TEST_F(SessionLifecycle, MovingToAnotherProjectKeepsTheFrozenRate)
{
    ledger = StoreWorld::runningLedger();
    updateSession(ledger, StoreWorld::writing, "Writing", StoreWorld::design);
    EXPECT_EQ(active().projectID, StoreWorld::design);
    EXPECT_EQ(active().hourlyRateCents, 12'000);
}

TEST_F(SessionLifecycle, TheSessionsOwnProjectSkipsTheMoveCheck)
{
    ledger = StoreWorld::runningLedger();
    ledger.clients.modify(StoreWorld::acme, [](Client& client) { client.projectsEnabled = false; });
    updateSession(ledger, StoreWorld::writing, "Same", StoreWorld::website);
    EXPECT_EQ(active().title, "Same");
    expectRefused([&] { updateSession(ledger, StoreWorld::writing, "", StoreWorld::design); },
        "Choose a project from the same client with projects enabled.");
}

TEST_F(SessionLifecycle, ASessionCannotMoveToAProjectOfAnotherClient)
{
    ledger = StoreWorld::runningLedger();
    ledger.projects.append(
        Project{StoreWorld::uuid(30), StoreWorld::solo, "Other", 1, true, false});
    expectRefused([&] { updateSession(ledger, StoreWorld::writing, "", StoreWorld::uuid(30)); },
        "Choose a project from the same client with projects enabled.");
    expectRefused([&] { updateSession(ledger, StoreWorld::writing, "", StoreWorld::uuid(31)); },
        "Project no longer exists.");
}

TEST_F(SessionLifecycle, AMissingIntervalMustBeAValidPastRange)
{
    const auto check = [&](Date from, Date to) {
        requirePastInterval({StoreWorld::meeting, from, to}, at(12));
    };
    const std::string message = "The missing interval must be a valid past time range.";
    const Date notANumber{std::nan("")};
    const Date endless{INFINITY};
    expectRefused([&] { check(at(11), at(11)); }, message);
    expectRefused([&] { check(at(11), at(10)); }, message);
    expectRefused([&] { check(at(11), at(12) + 0.001); }, message);
    expectRefused([&] { check(earliestDate + -0.001, at(11)); }, message);
    expectRefused([&] { check(notANumber, at(11)); }, message);
    expectRefused([&] { check(at(11), notANumber); }, message);
    expectRefused([&] { check(Date{-INFINITY}, at(11)); }, message);
    expectRefused([&] { check(at(11), endless); }, message);
    EXPECT_NO_THROW(check(earliestDate, at(12)));
}

TEST_F(SessionLifecycle, AGapOfAnUnknownSessionIsRefused)
{
    expectRefused([&] { restore(StoreWorld::uuid(99), at(10), at(11)); }, "Session not found.");
}

TEST_F(SessionLifecycle, AGapIsSortedIntoTheSpans)
{
    restore(StoreWorld::meeting, at(8, 30), at(9));
    EXPECT_EQ(meeting().spans,
        (std::vector{
            TimeSpan{at(8), at(8, 30)}, TimeSpan{at(8, 30), at(9)}, TimeSpan{at(9), at(9, 30)}}));
    EXPECT_EQ(meeting().duration(), 5400.0);
}

TEST_F(SessionLifecycle, ARecordedDurationGrowsByTheGap)
{
    changeMeeting([](TimeEntry& entry) { entry.recordedDuration = 3600.0; });
    restore(StoreWorld::meeting, at(7), at(7, 30));
    EXPECT_EQ(meeting().recordedDuration, 5400.0);
    EXPECT_EQ(meeting().spans.front(), (TimeSpan{at(7), at(7, 30)}));
}

TEST_F(SessionLifecycle, ARecordedDurationShorterThanTheSpansGrowsByTheGapToo)
{
    changeMeeting([](TimeEntry& entry) { entry.recordedDuration = 60.0; });
    restore(StoreWorld::meeting, at(10), at(10, 30));
    EXPECT_EQ(meeting().recordedDuration, 1860.0);
}

TEST_F(SessionLifecycle, RepeatingAGapOfAnEntryChangesNothing)
{
    changeMeeting([](TimeEntry& entry) { entry.recordedDuration = 3600.0; });
    const LedgerData before = ledger;
    restore(StoreWorld::meeting, at(9), at(9, 30));
    EXPECT_TRUE(ledger == before);
}

TEST_F(SessionLifecycle, ASecondGapThatOnlyOverlapsIsRefused)
{
    for (const auto& [from, to] : {std::pair{at(7), at(8, 1)}, {at(8, 29), at(8, 45)},
             {at(8), at(8, 15)}, {at(7), at(11)}, {at(8, 10), at(8, 20)}}) {
        expectRefused([&] { restore(StoreWorld::meeting, from, to); }, overlap);
    }
}

TEST_F(SessionLifecycle, AnEmptySpanInsideTheGapOverlapsOneAtItsEdgeDoesNot)
{
    changeMeeting([](TimeEntry& entry) {
        entry.spans = {{at(10), at(10)}, {at(10, 30), at(10, 30)}};
    });
    expectRefused([&] { restore(StoreWorld::meeting, at(10, 15), at(10, 45)); }, overlap);
    restore(StoreWorld::meeting, at(10), at(10, 30));
    EXPECT_EQ(meeting().spans,
        (std::vector{TimeSpan{at(10), at(10)}, TimeSpan{at(10), at(10, 30)},
            TimeSpan{at(10, 30), at(10, 30)}}));
}

TEST_F(SessionLifecycle, AGapInARunningSessionMayTouchItsOpenInterval)
{
    ledger = StoreWorld::runningLedger();
    restore(StoreWorld::writing, at(10, 30), at(11));
    EXPECT_EQ(active().spans, (std::vector{TimeSpan{at(10, 30), at(11)}}));
    EXPECT_EQ(active().checkpointAt, at(11, 30));
    expectRefused([&] { restore(StoreWorld::writing, at(11), at(11, 1)); }, overlap);
}

TEST_F(SessionLifecycle, AGapAfterTheCheckpointOfAPausedSessionMovesIt)
{
    ledger = StoreWorld::pausedLedger();
    restore(StoreWorld::writing, at(11), at(11, 30));
    EXPECT_EQ(active().checkpointAt, at(11, 30));
    expectRefused(
        [&] { resumeSession(ledger, at(11, 29)); }, "Session cannot resume at this time.");
}

TEST_F(SessionLifecycle, AGapBeforeTheCheckpointLeavesIt)
{
    ledger = StoreWorld::pausedLedger();
    restore(StoreWorld::writing, at(9), at(9, 30));
    EXPECT_EQ(active().checkpointAt, at(10, 30));
    EXPECT_EQ(active().spans.front(), (TimeSpan{at(9), at(9, 30)}));
}

TEST_F(SessionLifecycle, RepeatingAGapOfTheActiveSessionStillRaisesTheCheckpoint)
{
    ledger = StoreWorld::pausedLedger();
    active().checkpointAt = at(10, 20); // Behind its span: only the repeat is under test.
    restoreGap(ledger, {StoreWorld::writing, at(10), at(10, 30)});
    EXPECT_EQ(active().checkpointAt, at(10, 30));
    EXPECT_EQ(active().spans.size(), 1u);
}

TEST_F(SessionLifecycle, RecoveryChangesOnlyARunningSession)
{
    EXPECT_FALSE(recoverSession(ledger));
    ledger = StoreWorld::pausedLedger();
    EXPECT_FALSE(recoverSession(ledger));
    EXPECT_TRUE(ledger == StoreWorld::pausedLedger());
}

} // namespace
} // namespace KestryCore
