#include <cmath>

#include "LedgerCoding.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

class TimeStoreSessions : public StoreFixture {
protected:
    const std::string pastRange = "The missing interval must be a valid past time range.";
    const std::string overlap = "The missing interval overlaps time already tracked.";
};

TEST_F(TimeStoreSessions, ASessionIsSavedFromItsFirstInstant)
{
    open(sampleLedger());
    const Uuid id = store().start(acme, design, " Sketch ", clockTime(11));
    EXPECT_EQ(active().id, id);
    EXPECT_EQ(active().title, "Sketch");
    EXPECT_EQ(active().hourlyRateCents, 9'000);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreSessions, EveryStepOfASessionIsSaved)
{
    open(sampleLedger());
    const Uuid id = store().start(acme, website, "Writing", clockTime(9));
    store().checkpoint(clockTime(9, 30));
    EXPECT_EQ(readPrimary().active->checkpointAt, clockTime(9, 30));
    store().pause(clockTime(10));
    EXPECT_TRUE(readPrimary().active->isPaused());
    store().resume(clockTime(10, 30));
    EXPECT_EQ(readPrimary().active->runningSince, clockTime(10, 30));
    EXPECT_EQ(store().stop(clockTime(11)), id);
    EXPECT_EQ(readPrimary().entries.find(id)->duration(), 5400.0);
    EXPECT_EQ(entry(id).earnedCents(), 18'000.0);
}

TEST_F(TimeStoreSessions, StartingOnAProjectFindsItsClient)
{
    open(sampleLedger());
    store().start(design, "Sketch", clockTime(11));
    EXPECT_EQ(active().projectID, design);
}

TEST_F(TimeStoreSessions, StartingOnAProjectThatIsGoneIsRefusedQuietly)
{
    open(sampleLedger());
    expectRefusedQuietly(
        [&] { store().start(uuid(99), "", clockTime(11)); }, "Project no longer exists.");
}

TEST_F(TimeStoreSessions, AProjectThatIsGoneIsToldBeforeASessionInProgress)
{
    open(pausedLedger());
    expectRefusedQuietly(
        [&] { store().start(uuid(99), "", clockTime(11)); }, "Project no longer exists.");
}

TEST_F(TimeStoreSessions, StartingTwiceIsRefused)
{
    open(pausedLedger());
    const std::string message = "Stop the current session first.";
    expectRefused([&] { store().start(acme, website, "", clockTime(11)); }, message);
    expectRefused([&] { store().start(website, "", clockTime(11)); }, message);
    store().resume(clockTime(11));
    expectRefused([&] { store().start(acme, website, "", clockTime(12)); }, message);
}

TEST_F(TimeStoreSessions, StartingForAnUnknownClientIsRefused)
{
    open(sampleLedger());
    expectRefused(
        [&] { store().start(uuid(99), std::nullopt, "", clockTime(11)); }, "Client not found.");
}

TEST_F(TimeStoreSessions, AProjectMadeForAStartThatFailsGoesWithIt)
{
    open(sampleLedger());
    expectRefused([&] { store().start(solo, std::nullopt, "", Date{std::nan("")}); },
        "Invalid active session.");
    EXPECT_EQ(ledger().projects.size(), 2u);
}

TEST_F(TimeStoreSessions, TheFirstSessionOfAClientWithoutProjectsMakesItsProjectTheSecondReusesIt)
{
    open(sampleLedger());
    store().start(solo, std::nullopt, "One", clockTime(9));
    store().stop(clockTime(10));
    store().start(solo, std::nullopt, "Two", clockTime(10));
    EXPECT_EQ(ledger().projects.size(), 3u);
    EXPECT_EQ(ledger().projects.back().name, "Client sessions");
    EXPECT_EQ(active().projectID, ledger().projects.back().id);
}

TEST_F(TimeStoreSessions, ANewRateOfAClientWithoutProjectsReachesNewSessionsOnly)
{
    open(sampleLedger());
    const Uuid first = store().start(solo, std::nullopt, "One", clockTime(9));
    store().stop(clockTime(10));
    store().updateClient(solo, {"Solo", 9'900, "4A90D9", true, ClientLogoChange::unchanged(), {}});
    store().start(solo, std::nullopt, "Two", clockTime(10));
    EXPECT_EQ(active().hourlyRateCents, 9'900);
    EXPECT_EQ(entry(first).hourlyRateCents, 8'000);
    EXPECT_EQ(ledger().projects.back().hourlyRateCents, 8'000);
}

TEST_F(TimeStoreSessions, AClientWithoutProjectsTakesAnyOfItsProjectsAtTheClientsRate)
{
    open(sampleLedger());
    store().updateClient(acme, {"Acme", 11'000, "", false, ClientLogoChange::unchanged(), false});
    const Uuid id = store().addEntry({acme, design, "Call", clockTime(9), 60.0});
    store().start(acme, design, "Sketch", clockTime(10));
    EXPECT_EQ(active().projectID, design);
    EXPECT_EQ(active().hourlyRateCents, 11'000);
    EXPECT_FALSE(active().rateIsKnown);
    EXPECT_EQ(entry(id).hourlyRateCents, 11'000);
}

TEST_F(TimeStoreSessions, ASessionWithoutAProjectEarnsNothingUntilPriced)
{
    open(sampleLedger());
    store().start(acme, std::nullopt, "Odd", clockTime(9));
    const Uuid id = store().stop(clockTime(10));
    EXPECT_EQ(ledger().projects.back().name, "Unassigned");
    EXPECT_FALSE(entry(id).rateIsKnown);
    EXPECT_EQ(entry(id).earnedCents(), 0.0);
}

TEST_F(TimeStoreSessions, PauseIsRefusedLoudly)
{
    open(runningLedger());
    store().resume(clockTime(12)); // Recovery has paused it.
    expectRefused(
        [&] { store().pause(clockTime(11)); }, "The clock moved backwards. Choose a later time.");
    store().pause(clockTime(12));
    expectRefused([&] { store().pause(clockTime(11)); }, "No running session to pause.");
}

TEST_F(TimeStoreSessions, ResumingNothingIsRefusedQuietly)
{
    open(sampleLedger());
    expectRefusedQuietly([&] { store().resume(clockTime(11)); }, "No session to resume.");
}

TEST_F(TimeStoreSessions, ResumingOnAProjectThatIsGoneIsToldBeforeTheStateAndTheDate)
{
    LedgerData running = runningLedger();
    running.active->projectID = uuid(99);
    options.demoLedger = running; // The one way to a ledger that no file may hold.
    open();
    expectRefusedQuietly([&] { store().resume(clockTime(1)); }, "Project no longer exists.");
}

TEST_F(TimeStoreSessions, ResumingARunningSessionOrTooEarlyIsRefusedLoudly)
{
    open(pausedLedger());
    const std::string message = "Session cannot resume at this time.";
    expectRefused([&] { store().resume(clockTime(10)); }, message);
    store().resume(clockTime(10, 30));
    expectRefused([&] { store().resume(clockTime(11)); }, message);
}

TEST_F(TimeStoreSessions, StopIsRefusedLoudly)
{
    open(pausedLedger());
    expectRefused(
        [&] { store().stop(clockTime(10)); }, "The stop time is before the last checkpoint.");
    store().stop(clockTime(11));
    expectRefused([&] { store().stop(clockTime(11)); }, "No session to stop.");
}

TEST_F(TimeStoreSessions, ASessionBeyondTheLimitStaysInProgressAndIsNotSaved)
{
    open(sampleLedger());
    store().start(acme, website, "Endless", clockTime(0));
    const Date late = clockTime(0) + 2'678'401.0;
    const std::string message = "A session must contain between 0 and 744 hours (31 days) of work.";
    expectRefused([&] { store().checkpoint(late); }, message);
    expectRefused([&] { store().pause(late); }, message);
    expectRefused([&] { store().stop(late); }, message);
}

TEST_F(TimeStoreSessions, StoppingWithoutIntervalsDeletesTheSessionFromReplication)
{
    LedgerData paused = connected(pausedLedger());
    paused.active->spans.clear();
    open(paused).stop(clockTime(11));
    const std::string key = "Session:" + writing.text();
    EXPECT_EQ(ledger().entries.size(), 1u);
    EXPECT_TRUE(ledger().replication->outbox.at(key).isDeleted);
    EXPECT_TRUE(ledger().replication->tombstones.contains(key));
}

TEST_F(TimeStoreSessions, AStoppedSessionReplacesTheActiveOneInReplication)
{
    open(connected(pausedLedger())).stop(clockTime(11));
    const SyncRecord& record = ledger().replication->outbox.at("Session:" + writing.text());
    EXPECT_FALSE(record.isDeleted);
    EXPECT_NE(record.payload->find("\"entry\":{"), std::string::npos);
}

TEST_F(TimeStoreSessions, ACheckpointWithNothingRunningDoesNotSave)
{
    open(pausedLedger());
    files.heal();
    store().checkpoint(clockTime(1));
    EXPECT_EQ(files.callCount(), 0);
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(TimeStoreSessions, ACheckpointBackwardsIsRefusedLoudly)
{
    open(pausedLedger()).resume(clockTime(11));
    expectRefused(
        [&] { store().checkpoint(clockTime(10, 59)); }, "Checkpoint cannot move backwards.");
    store().checkpoint(clockTime(11));
    EXPECT_EQ(active().checkpointAt, clockTime(11));
}

TEST_F(TimeStoreSessions, RenamingTrimsAndKeepsTheProject)
{
    open(pausedLedger()).renameActiveSession(writing, "  Reading ");
    EXPECT_EQ(readPrimary().active->title, "Reading");
    EXPECT_EQ(active().projectID, website);
}

TEST_F(TimeStoreSessions, UpdatingASessionThatHasEndedIsRefused)
{
    open(pausedLedger());
    const std::string message = "This session is no longer active.";
    expectRefused([&] { store().renameActiveSession(uuid(99), "Late"); }, message);
    store().stop(clockTime(11));
    expectRefused([&] { store().updateActiveSession(writing, "Late", uuid(99)); }, message);
}

TEST_F(TimeStoreSessions, MovingTheSessionToAStrangeProjectIsRefused)
{
    open(pausedLedger());
    expectRefused(
        [&] { store().updateActiveSession(writing, "", uuid(99)); }, "Project no longer exists.");
    const Uuid other = store().addProject(solo, {"Other", 1, true});
    expectRefused([&] { store().updateActiveSession(writing, "", other); },
        "Choose a project from the same client with projects enabled.");
    store().updateActiveSession(writing, "Sketch", design);
    EXPECT_EQ(readPrimary().active->projectID, design);
}

TEST_F(TimeStoreSessions, AGapOutOfRangeIsRefusedQuietlyAndBeforeAnythingElse)
{
    open(sampleLedger());
    expectRefusedQuietly(
        [&] { store().restoreTrackingGap(uuid(99), clockTime(10), clockTime(10)); }, pastRange);
    expectRefusedQuietly(
        [&] { store().restoreTrackingGap(meeting, clockTime(11), clockTime(12, 1)); }, pastRange);
}

TEST_F(TimeStoreSessions, AGapThatEndsThisInstantIsPast)
{
    open(sampleLedger()).restoreTrackingGap(meeting, clockTime(11), clockTime(12));
    EXPECT_EQ(entry(meeting).duration(), 7200.0);
}

TEST_F(TimeStoreSessions, AGapThatOverlapsOrHasNoSessionIsRefusedLoudly)
{
    open(sampleLedger());
    expectRefused([&] { store().restoreTrackingGap(uuid(99), clockTime(10), clockTime(11)); },
        "Session not found.");
    expectRefused(
        [&] { store().restoreTrackingGap(meeting, clockTime(7), clockTime(9)); }, overlap);
}

TEST_F(TimeStoreSessions, RepeatingAGapOfAnEntryStillSaves)
{
    open(sampleLedger());
    store().restoreTrackingGap(meeting, clockTime(10), clockTime(11));
    const std::string previous = primary();
    store().restoreTrackingGap(meeting, clockTime(10), clockTime(11));
    EXPECT_EQ(primary(), previous);
    EXPECT_EQ(backup(), previous);
}

TEST_F(TimeStoreSessions, AGapThatMakesASessionTooLongIsRefused)
{
    LedgerData longest = sampleLedger();
    longest.entries.modify(meeting, [](TimeEntry& saved) {
        saved.spans = {{clockTime(11) + -2'678'400.0, clockTime(11)}};
    });
    open(longest);
    expectRefused([&] { store().restoreTrackingGap(meeting, clockTime(11), clockTime(11, 30)); },
        "A session must contain between 0 and 744 hours (31 days) of work.");
}

TEST_F(TimeStoreSessions, ElapsedCountsTheOpenIntervalAndIsNothingWithoutASession)
{
    EXPECT_EQ(open(sampleLedger()).elapsed(clockTime(12)), 0.0);
    open(pausedLedger());
    EXPECT_EQ(store().elapsed(clockTime(23)), 1800.0);
    store().resume(clockTime(11));
    EXPECT_EQ(store().elapsed(clockTime(11, 10)), 2400.0);
    EXPECT_EQ(store().elapsed(clockTime(9)), 1800.0);
}

} // namespace
} // namespace KestryCore
