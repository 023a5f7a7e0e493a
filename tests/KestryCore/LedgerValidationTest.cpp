#include "LedgerValidation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "LogoImages.h"
#include "Refusal.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

using namespace Sample;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr const char* unordered =
    "Time intervals must be ordered, with dates between 1970 and 2200.";
constexpr const char* overlapping = "Time intervals overlap or are out of order.";
constexpr const char* tooLong = "A session must contain between 0 and 744 hours (31 days) of work.";
constexpr const char* badSources = "Duplicate or empty imported source identifiers.";

/// A sound ledger of one record each and a running session, changed by verbs and then judged.
class LedgerValidation : public testing::Test {
protected:
    template <class Change>
    void changeClient(Change change)
    {
        ledger.clients.modify(clientID(), change);
    }
    template <class Change>
    void changeProject(Change change)
    {
        ledger.projects.modify(projectID(), change);
    }
    template <class Change>
    void changeEntry(Change change)
    {
        ledger.entries.modify(sessionID(), change);
    }
    void setEntrySpans(std::vector<TimeSpan> spans)
    {
        changeEntry([&](TimeEntry& entry) { entry.spans = spans; });
    }
    void setRecordedDuration(double seconds)
    {
        changeEntry([&](TimeEntry& entry) { entry.recordedDuration = seconds; });
    }
    void appendEntry(std::optional<std::string> sourceID)
    {
        TimeEntry another = entry(static_cast<unsigned>(ledger.entries.size()) + 1);
        another.sourceID = std::move(sourceID);
        ledger.entries.append(another);
    }
    [[nodiscard]] std::string verdict() const
    {
        return refusalOf([&] { validate(ledger); });
    }

    LedgerData ledger = runningLedger();
    ActiveSession& active = *ledger.active;
};

std::string verdictOn(const std::vector<TimeSpan>& spans)
{
    return refusalOf([&] { validateIntervals(spans); });
}

// Identifiers

TEST_F(LedgerValidation, AnEmptyLedgerIsSound)
{
    ledger = LedgerData{};
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, IdentifiersMustDifferWithinEachList)
{
    constexpr const char* message = "Duplicate identifiers in ledger.";
    ledger.clients.append(client());
    EXPECT_EQ(verdict(), message);
    ledger = runningLedger();
    ledger.projects.append(project());
    EXPECT_EQ(verdict(), message);
    ledger = runningLedger();
    ledger.entries.append(entry());
    EXPECT_EQ(verdict(), message);
}

TEST_F(LedgerValidation, AnIdentifierMayServeInSeveralLists)
{
    changeClient([](Client& client) { client.id = id(1); });
    ledger.projects = {project()};
    ledger.projects.modify(projectID(), [](Project& project) {
        project.id = id(1);
        project.clientID = id(1);
    });
    changeEntry([](TimeEntry& entry) { entry.id = entry.projectID = id(1); });
    active.projectID = id(1);
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, EntriesMustNotShareASourceIdentifier)
{
    appendEntry("import-7");
    EXPECT_EQ(verdict(), accepted);
    appendEntry("import-7");
    EXPECT_EQ(verdict(), badSources);
}

TEST_F(LedgerValidation, AnEntryAndTheActiveSessionMustNotShareASourceIdentifier)
{
    appendEntry("import-7");
    active.sourceID = "import-7";
    EXPECT_EQ(verdict(), badSources);
}

TEST_F(LedgerValidation, AnEmptySourceIdentifierIsRefusedEvenOnce)
{
    active.sourceID = "";
    EXPECT_EQ(verdict(), badSources);
    active.sourceID.reset();
    appendEntry("");
    EXPECT_EQ(verdict(), badSources);
}

TEST_F(LedgerValidation, SourceIdentifiersAreComparedAsTheyStand)
{
    appendEntry(" ");
    appendEntry("a");
    appendEntry("A");
    appendEntry("a ");
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, AbsentSourceIdentifiersAreNoDuplicates)
{
    appendEntry(std::nullopt);
    appendEntry(std::nullopt);
    EXPECT_EQ(verdict(), accepted);
}

// Clients and projects

TEST_F(LedgerValidation, AClientOfBlanksAloneHasNoName)
{
    for (const char* name : {"", " \n\t", "\u3000\u2028\u0085"}) {
        changeClient([&](Client& client) { client.name = name; });
        EXPECT_EQ(verdict(), "Enter a name.");
    }
}

TEST_F(LedgerValidation, ANameWithBlanksAroundItPassesAndStaysSo)
{
    changeClient([](Client& client) { client.name = "  Harbour \n"; });
    EXPECT_EQ(verdict(), accepted);
    EXPECT_EQ(ledger.clients.front().name, "  Harbour \n");
}

TEST_F(LedgerValidation, AZeroWidthSpaceIsAName)
{
    changeClient([](Client& client) { client.name = "\u200B"; });
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, AClientRateMayBeZeroButNotNegative)
{
    changeClient([](Client& client) { client.hourlyRateCents = 0; });
    EXPECT_EQ(verdict(), accepted);
    changeClient([](Client& client) { client.hourlyRateCents = -1; });
    EXPECT_EQ(verdict(), "Hourly rates cannot be negative.");
}

TEST_F(LedgerValidation, ALogoMustFollowTheRuleForLogos)
{
    changeClient([](Client& client) { client.logoData = LogoImages::png(); });
    EXPECT_EQ(verdict(), accepted);
    changeClient([](Client& client) { client.logoData = ""; });
    EXPECT_EQ(verdict(), "Client logos must be valid PNG images up to 256 pixels and 256 KB.");
}

TEST_F(LedgerValidation, AProjectOfBlanksAloneHasNoName)
{
    changeProject([](Project& project) { project.name = "\u00A0"; });
    EXPECT_EQ(verdict(), "Enter a name.");
}

TEST_F(LedgerValidation, AnUnknownClientAndALedgerWithoutClientsGiveTheSameMessage)
{
    changeProject([](Project& project) { project.clientID = clientID(2); });
    EXPECT_EQ(verdict(), "Invalid project client or hourly rate.");
    ledger = runningLedger();
    ledger.clients.remove(clientID());
    EXPECT_EQ(verdict(), "Invalid project client or hourly rate.");
}

TEST_F(LedgerValidation, AProjectRateMayBeZeroButNotNegative)
{
    changeProject([](Project& project) { project.hourlyRateCents = 0; });
    EXPECT_EQ(verdict(), accepted);
    changeProject([](Project& project) { project.hourlyRateCents = -1; });
    EXPECT_EQ(verdict(), "Invalid project client or hourly rate.");
}

// Entries

TEST_F(LedgerValidation, AnEntryNeedsAKnownProjectARateAndIntervals)
{
    const char* message = "Invalid entry project, rate, or intervals.";
    changeEntry([](TimeEntry& entry) { entry.projectID = projectID(2); });
    EXPECT_EQ(verdict(), message);
    ledger = runningLedger();
    changeEntry([](TimeEntry& entry) { entry.hourlyRateCents = -1; });
    EXPECT_EQ(verdict(), message);
    ledger = runningLedger();
    setEntrySpans({});
    EXPECT_EQ(verdict(), message);
}

TEST_F(LedgerValidation, AnEntryOfExactly744HoursIsSoundAndOneSecondMoreIsNot)
{
    setEntrySpans({span(noon, noon + 2'678'400)});
    EXPECT_EQ(verdict(), accepted);
    setEntrySpans({span(noon, noon + 2'678'401)});
    EXPECT_EQ(verdict(), tooLong);
}

TEST_F(LedgerValidation, ARecordedDurationPast744HoursIsTooLong)
{
    setEntrySpans({span(noon, noon + 2'678'400)});
    setRecordedDuration(2'678'400);
    EXPECT_EQ(verdict(), accepted);
    setRecordedDuration(2'678'401);
    EXPECT_EQ(verdict(), tooLong);
}

TEST_F(LedgerValidation, TheIntervalsAloneAreHeldToTheLimitToo)
{
    setEntrySpans({span(noon, noon + 800 * hour)});
    setRecordedDuration(10);
    EXPECT_EQ(verdict(), tooLong);
}

TEST_F(LedgerValidation, ARecordedDurationIsNeitherNegativeNorNotANumber)
{
    for (const double seconds : {-0.5, nan, HUGE_VAL, -HUGE_VAL}) {
        setRecordedDuration(seconds);
        EXPECT_EQ(verdict(), tooLong) << seconds;
    }
}

TEST_F(LedgerValidation, ARecordedDurationOfNegativeZeroPasses)
{
    setRecordedDuration(-0.0);
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, ARecordedDurationMayBeShorterThanItsIntervals)
{
    setRecordedDuration(1);
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, ARecordedDurationMayExceedItsIntervalsByAMicrosecondAtMost)
{
    setRecordedDuration(hour + 0.0000005);
    EXPECT_EQ(verdict(), accepted);
    setRecordedDuration(hour + 0.000002);
    EXPECT_EQ(verdict(), "Recorded duration cannot exceed its work intervals.");
}

TEST_F(LedgerValidation, SessionsMayOverlapOneAnother)
{
    appendEntry(std::nullopt);
    active.spans = ledger.entries.front().spans;
    EXPECT_EQ(verdict(), accepted);
}

// Intervals

TEST_F(LedgerValidation, IntervalsMayTouchAndBeEmpty)
{
    EXPECT_EQ(verdictOn({}), accepted);
    EXPECT_EQ(verdictOn({span(10, 10), span(10, 20), span(20, 20), span(20, 21)}), accepted);
}

TEST_F(LedgerValidation, IntervalsReachFrom1970To2200)
{
    EXPECT_EQ(verdictOn({{earliestDate, earliestDate}, {latestDate, latestDate}}), accepted);
    EXPECT_EQ(verdictOn({{earliestDate + -1, Date{0}}}), unordered);
    EXPECT_EQ(verdictOn({{Date{0}, latestDate + 1}}), unordered);
}

TEST_F(LedgerValidation, AnIntervalMustNotEndBeforeItBegins)
{
    EXPECT_EQ(verdictOn({span(10, 9.999)}), unordered);
}

TEST_F(LedgerValidation, AnIntervalMustHaveFiniteEnds)
{
    for (const double seconds : {nan, HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(verdictOn({span(seconds, 10)}), unordered);
        EXPECT_EQ(verdictOn({span(0, seconds)}), unordered);
    }
}

TEST_F(LedgerValidation, IntervalsMustBeInOrderWithoutOverlap)
{
    EXPECT_EQ(verdictOn({span(0, 10), span(9, 20)}), overlapping);
    EXPECT_EQ(verdictOn({span(10, 20), span(0, 5)}), overlapping);
    EXPECT_EQ(verdictOn({span(10, 20), span(10, 10)}), overlapping);
}

TEST_F(LedgerValidation, AnIntervalIsCheckedByItselfBeforeItsOrder)
{
    EXPECT_EQ(verdictOn({span(10, 20), span(5, 4)}), unordered);
    EXPECT_EQ(verdictOn({span(10, 20), span(5, 6), span(5, 4)}), overlapping);
}

// The active session

TEST_F(LedgerValidation, TheActiveSessionNeedsAKnownProjectARateAndACheckpointInRange)
{
    const char* message = "Invalid active session.";
    active.projectID = projectID(2);
    EXPECT_EQ(verdict(), message);
    active = runningSession();
    active.hourlyRateCents = -1;
    EXPECT_EQ(verdict(), message);
    for (const Date date : {earliestDate + -1, latestDate + 1, Date{nan}}) {
        active = runningSession();
        active.checkpointAt = date;
        EXPECT_EQ(verdict(), message);
    }
}

TEST_F(LedgerValidation, TheActiveSessionMustNotHaveTheIdentifierOfASavedOne)
{
    active.id = sessionID();
    EXPECT_EQ(verdict(), "Invalid active session.");
}

TEST_F(LedgerValidation, TheIntervalsOfTheActiveSessionAreChecked)
{
    active.spans = {span(noon, noon - 1)};
    EXPECT_EQ(verdict(), unordered);
    active.spans = {span(noon, noon + 10), span(noon + 9, noon + 20)};
    EXPECT_EQ(verdict(), overlapping);
}

TEST_F(LedgerValidation, APausedSessionWithoutIntervalsIsSound)
{
    active = pausedSession();
    active.spans = {};
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, ARunningSessionCheckpointedAtItsStartIsSound)
{
    active.checkpointAt = *active.runningSince;
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, ARunningSessionMayReach744HoursByItsCheckpointAndNoMore)
{
    active.spans = {};
    active.checkpointAt = *active.runningSince + 2'678'400;
    EXPECT_EQ(verdict(), accepted);
    active.checkpointAt = active.checkpointAt + 1;
    EXPECT_EQ(verdict(), tooLong);
}

TEST_F(LedgerValidation, AStartLongBefore1970IsTooLongBeforeItIsOutOfRange)
{
    active.spans = {};
    active.runningSince = earliestDate + -1e9;
    EXPECT_EQ(verdict(), tooLong);
}

TEST_F(LedgerValidation, AStartJustBefore1970IsOutOfRange)
{
    active.spans = {};
    active.runningSince = earliestDate + -1;
    active.checkpointAt = earliestDate;
    EXPECT_EQ(verdict(), "Invalid running session checkpoint.");
}

TEST_F(LedgerValidation, TheCheckpointMustNotLieBeforeTheLastInterval)
{
    active = pausedSession();
    active.checkpointAt = active.spans.back().end + -0.001;
    EXPECT_EQ(verdict(), "Invalid session checkpoint.");
}

TEST_F(LedgerValidation, TheCheckpointMustNotLieBeforeTheStartOfTheOpenInterval)
{
    active.checkpointAt = *active.runningSince + -0.001;
    EXPECT_EQ(verdict(), "Invalid running session checkpoint.");
}

TEST_F(LedgerValidation, TheOpenIntervalMayTouchTheLastOneButNotOverlapIt)
{
    active.runningSince = active.spans.back().end;
    EXPECT_EQ(verdict(), accepted);
    active.runningSince = active.spans.back().end + -0.001;
    EXPECT_EQ(verdict(), "Running interval overlaps saved time.");
}

// What is not looked at

TEST_F(LedgerValidation, ColoursTitlesHighRatesAndTheFutureAreNotLookedAt)
{
    changeClient([](Client& client) {
        client.colorHex = "no colour";
        client.hourlyRateCents = std::numeric_limits<Cents>::max();
    });
    changeEntry([](TimeEntry& entry) { entry.title = ""; });
    setEntrySpans({span(6e9, 6e9 + 60)});
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, SeveralDefaultProjectsOfAClientWithProjectsAreNotLookedAt)
{
    for (const unsigned number : {2U, 3U}) {
        Project another = project(number);
        another.isClientDefault = true;
        ledger.projects.append(another);
    }
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, NothingIsChanged)
{
    changeClient([](Client& client) { client.hourlyRateCents = -1; });
    const LedgerData before = ledger;
    EXPECT_NE(verdict(), accepted);
    EXPECT_EQ(ledger, before);
}

// What is remembered of sound records

TEST_F(LedgerValidation, ASoundEntryIsRefusedOnceItsProjectIsGone)
{
    ASSERT_EQ(verdict(), accepted);
    ledger.active.reset();
    ledger.projects.remove(projectID());
    EXPECT_EQ(verdict(), "Invalid entry project, rate, or intervals.");
}

TEST_F(LedgerValidation, ASoundProjectIsRefusedOnceItsClientIsGone)
{
    ASSERT_EQ(verdict(), accepted);
    ledger.clients.remove(clientID());
    EXPECT_EQ(verdict(), "Invalid project client or hourly rate.");
}

TEST_F(LedgerValidation, ASoundRecordIsCheckedAgainOnceItWasChanged)
{
    ASSERT_EQ(verdict(), accepted);
    setRecordedDuration(-1);
    EXPECT_EQ(verdict(), tooLong);
    EXPECT_EQ(verdict(), tooLong);
}

} // namespace
} // namespace KestryCore
