#include "LedgerEditing.h"

#include <cmath>

#include "LedgerError.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

/// The rules on a ledger copy; no store, no files.
class LedgerEditing : public testing::Test {
protected:
    static Date at(int hour, int minute = 0) { return StoreWorld::clockTime(hour, minute); }

    Project resolve(const Uuid& clientID, std::optional<Uuid> projectID = std::nullopt)
    {
        return resolveProject(
            ledger, clientID, projectID, [this] { return StoreWorld::uuid(++lastUuid); });
    }
    void setProjectsEnabled(const Uuid& clientID, bool enabled)
    {
        ledger.clients.modify(clientID, [&](Client& client) { client.projectsEnabled = enabled; });
    }
    void addProject(unsigned number, const Uuid& clientID, const std::string& name)
    {
        ledger.projects.append(Project{StoreWorld::uuid(number), clientID, name, 500, true, false});
    }
    void addHiddenProject(unsigned number, const Uuid& clientID)
    {
        ledger.projects.append(
            Project{StoreWorld::uuid(number), clientID, "Client sessions", 70, true, true});
    }
    const TimeEntry& meeting() const { return *ledger.entries.find(StoreWorld::meeting); }
    void update(const EntryChange& change, Date now = at(12))
    {
        updateEntry(ledger, StoreWorld::meeting, change, now);
    }
    /// The change that says what the meeting is already.
    static EntryChange unchanged()
    {
        return EntryChange{"Meeting", at(8), 3600.0, std::nullopt, std::nullopt, std::nullopt};
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
    const std::string sameClient = "Choose a project from the same client with projects enabled.";
    const std::string future = "Saved time cannot extend into the future.";
};

TEST_F(LedgerEditing, ANameIsTrimmedOfEveryKindOfBlank)
{
    EXPECT_EQ(validatedName("\t\u00a0 Acme \u2028\u0085\r\n"), "Acme");
}

TEST_F(LedgerEditing, ANameOfBlanksIsRefused)
{
    for (const char* name : {"", " ", "\n\t", "\u3000\u2029"}) {
        expectRefused([&] { (void)validatedName(name); }, "Enter a name.");
    }
}

TEST_F(LedgerEditing, CharactersThatOnlyLookLikeBlanksMakeAName)
{
    EXPECT_EQ(validatedName("\u200b"), "\u200b");
    EXPECT_EQ(validatedName("\ufeff"), "\ufeff");
    EXPECT_EQ(validatedName("\x1f"), "\x1f");
}

TEST_F(LedgerEditing, TheUnassignedProjectIsFoundInAnyCaseAndWithBlanksAround)
{
    addProject(30, StoreWorld::acme, " unassigned ");
    EXPECT_EQ(unassignedProject(ledger, StoreWorld::acme)->id, StoreWorld::uuid(30));
    EXPECT_EQ(resolve(StoreWorld::acme).id, StoreWorld::uuid(30));
}

TEST_F(LedgerEditing, TheFirstOfSeveralUnassignedProjectsCounts)
{
    addProject(30, StoreWorld::acme, "UNASSIGNED");
    addProject(31, StoreWorld::acme, "Unassigned");
    EXPECT_EQ(unassignedProject(ledger, StoreWorld::acme)->id, StoreWorld::uuid(30));
}

TEST_F(LedgerEditing, NeitherAHiddenNorAnotherClientsProjectIsTheUnassignedOne)
{
    addProject(30, StoreWorld::solo, "Unassigned");
    ledger.projects.append(
        Project{StoreWorld::uuid(31), StoreWorld::acme, "Unassigned", 0, true, true});
    EXPECT_EQ(unassignedProject(ledger, StoreWorld::acme), nullptr);
}

TEST_F(LedgerEditing, WithoutAProjectTheUnassignedOneIsMadeUnpriced)
{
    const Project made = resolve(StoreWorld::acme);
    EXPECT_EQ(
        made, (Project{StoreWorld::uuid(501), StoreWorld::acme, "Unassigned", 0, false, false}));
    EXPECT_EQ(ledger.projects.back(), made);
    EXPECT_EQ(resolve(StoreWorld::acme).id, made.id);
    EXPECT_EQ(ledger.projects.size(), 3u);
}

TEST_F(LedgerEditing, AClientWithoutProjectsGetsOneHiddenProjectAtItsRate)
{
    const Project made = resolve(StoreWorld::solo);
    EXPECT_EQ(made,
        (Project{StoreWorld::uuid(501), StoreWorld::solo, "Client sessions", 8'000, true, true}));
    EXPECT_EQ(resolve(StoreWorld::solo).id, made.id);
    EXPECT_EQ(ledger.projects.size(), 3u);
}

TEST_F(LedgerEditing, AnUnknownClientIsRefused)
{
    expectRefused([&] { resolve(StoreWorld::uuid(99)); }, "Client not found.");
    expectRefused([&] { resolve(StoreWorld::uuid(99), StoreWorld::website); }, "Client not found.");
}

TEST_F(LedgerEditing, AClientWithProjectsTakesOnlyItsOwnNamedOnes)
{
    addHiddenProject(30, StoreWorld::acme);
    addProject(31, StoreWorld::solo, "Other");
    const std::string message = "Choose a project for this client.";
    expectRefused([&] { resolve(StoreWorld::acme, StoreWorld::uuid(30)); }, message);
    expectRefused([&] { resolve(StoreWorld::acme, StoreWorld::uuid(31)); }, message);
    expectRefused([&] { resolve(StoreWorld::acme, StoreWorld::uuid(99)); }, message);
    EXPECT_EQ(resolve(StoreWorld::acme, StoreWorld::design).name, "Design");
}

TEST_F(LedgerEditing, AClientWithoutProjectsTakesAnyOfItsOwnTheHiddenOneToo)
{
    addHiddenProject(30, StoreWorld::acme);
    setProjectsEnabled(StoreWorld::acme, false);
    EXPECT_EQ(resolve(StoreWorld::acme, StoreWorld::uuid(30)).id, StoreWorld::uuid(30));
    EXPECT_EQ(resolve(StoreWorld::acme, StoreWorld::website).id, StoreWorld::website);
    expectRefused([&] { resolve(StoreWorld::solo, StoreWorld::website); },
        "Project does not belong to this client.");
}

TEST_F(LedgerEditing, TheRateIsTheClientsWhileItHasNoProjects)
{
    addHiddenProject(30, StoreWorld::solo);
    const Rate rate = effectiveRate(ledger, ledger.projects.back());
    EXPECT_EQ(rate.hourlyRateCents, 8'000);
    setProjectsEnabled(StoreWorld::solo, true);
    EXPECT_EQ(effectiveRate(ledger, ledger.projects.back()).hourlyRateCents, 70);
}

TEST_F(LedgerEditing, TheRateOfAProjectWithoutClientIsItsOwn)
{
    addProject(30, StoreWorld::uuid(99), "Orphan");
    EXPECT_EQ(effectiveRate(ledger, ledger.projects.back()).hourlyRateCents, 500);
}

TEST_F(LedgerEditing, AMoveStaysAmongTheNamedProjectsOfOneClient)
{
    addHiddenProject(30, StoreWorld::acme);
    addProject(31, StoreWorld::solo, "Other");
    const auto move = [&](const Uuid& to, const Uuid& from) { checkProjectMove(ledger, to, from); };
    EXPECT_NO_THROW(move(StoreWorld::design, StoreWorld::website));
    EXPECT_NO_THROW(move(StoreWorld::design, StoreWorld::uuid(30)));
    expectRefused(
        [&] { move(StoreWorld::uuid(99), StoreWorld::website); }, "Project no longer exists.");
    expectRefused([&] { move(StoreWorld::design, StoreWorld::uuid(99)); }, sameClient);
    expectRefused([&] { move(StoreWorld::uuid(30), StoreWorld::website); }, sameClient);
    expectRefused([&] { move(StoreWorld::uuid(31), StoreWorld::website); }, sameClient);
    setProjectsEnabled(StoreWorld::acme, false);
    expectRefused([&] { move(StoreWorld::design, StoreWorld::website); }, sameClient);
    ledger.clients.remove(StoreWorld::acme);
    expectRefused([&] { move(StoreWorld::design, StoreWorld::website); }, sameClient);
}

TEST_F(LedgerEditing, OnlyLengthsFromZeroToTheLongestSessionAreAccepted)
{
    const std::string message = "A session must contain between 0 and 744 hours (31 days) of work.";
    for (const double seconds : {-1.0, 2'678'401.0, std::nan(""), double{INFINITY}}) {
        expectRefused([&] { requireAcceptableDuration(seconds); }, message);
    }
    EXPECT_NO_THROW(requireAcceptableDuration(0.0));
    EXPECT_NO_THROW(requireAcceptableDuration(-0.0));
    EXPECT_NO_THROW(requireAcceptableDuration(2'678'400.0));
}

TEST_F(LedgerEditing, TheSameLengthWithAnotherStartMovesBothSpans)
{
    EntryChange change = unchanged();
    change.start = at(7);
    update(change);
    EXPECT_EQ(
        meeting().spans, (std::vector{TimeSpan{at(7), at(7, 30)}, TimeSpan{at(8), at(8, 30)}}));
}

TEST_F(LedgerEditing, EachEndIsMovedByTheDifferenceOfTheStarts)
{
    const Date from{816'393'600.1};
    ledger.entries.modify(StoreWorld::meeting, [&](TimeEntry& entry) {
        entry.spans = {{from, from + 0.7}, {from + 0.9, from + 1.3}};
    });
    const TimeEntry before = meeting();
    EntryChange change = unchanged();
    change.start = Date{816'390'000.3};
    change.duration = before.duration();
    update(change);
    const double shift = change.start - from;
    for (std::size_t index = 0; index < before.spans.size(); ++index) {
        EXPECT_EQ(meeting().spans[index].start, before.spans[index].start + shift);
        EXPECT_EQ(meeting().spans[index].end, before.spans[index].end + shift);
    }
}

TEST_F(LedgerEditing, TheSameStartAndLengthLeaveTheIntervalsAlone)
{
    const TimeEntry before = meeting();
    update(unchanged());
    EXPECT_EQ(meeting(), before);
}

TEST_F(LedgerEditing, AnotherLengthLeavesOneSpanAndNoRecordedDuration)
{
    ledger.entries.modify(
        StoreWorld::meeting, [](TimeEntry& entry) { entry.recordedDuration = 1800.0; });
    EntryChange change = unchanged();
    change.duration = 3601.0;
    update(change);
    EXPECT_EQ(meeting().spans, (std::vector{TimeSpan{at(8), at(8) + 3601.0}}));
    EXPECT_FALSE(meeting().recordedDuration.has_value());
}

TEST_F(LedgerEditing, TheLengthIsComparedWithTheRecordedOneWhereThereIsOne)
{
    ledger.entries.modify(
        StoreWorld::meeting, [](TimeEntry& entry) { entry.recordedDuration = 1800.0; });
    EntryChange change = unchanged();
    change.duration = 1800.0;
    update(change);
    EXPECT_EQ(meeting().recordedDuration, 1800.0);
    EXPECT_EQ(meeting().spans.size(), 2u);
    update(unchanged()); // The sum of the spans is another length.
    EXPECT_FALSE(meeting().recordedDuration.has_value());
    EXPECT_EQ(meeting().spans.size(), 1u);
}

TEST_F(LedgerEditing, AnEntryMayBeLengthenedToThisInstantAndNotBeyond)
{
    EntryChange change = unchanged();
    change.duration = 4 * 3600.0;
    update(change);
    EXPECT_EQ(meeting().endedAt(), at(12));
    change.duration += 1.0;
    expectRefused([&] { update(change); }, future);
}

TEST_F(LedgerEditing, AnEntryThatLiesInTheFutureCannotEvenBeRenamed)
{
    EntryChange change = unchanged();
    change.title = "Renamed";
    expectRefused([&] { update(change, at(9)); }, future);
}

TEST_F(LedgerEditing, TheTitleIsStoredAsItIs)
{
    EntryChange change = unchanged();
    change.title = "  Meeting \n";
    update(change);
    EXPECT_EQ(meeting().title, "  Meeting \n");
}

TEST_F(LedgerEditing, WhatAnEditDoesNotNameStays)
{
    ledger.entries.modify(StoreWorld::meeting, [](TimeEntry& entry) {
        entry.isBillable = false;
        entry.rateIsKnown = false;
    });
    update(unchanged());
    EXPECT_FALSE(meeting().isBillable);
    EXPECT_FALSE(meeting().rateIsKnown);
    EXPECT_EQ(meeting().hourlyRateCents, 12'000);
}

TEST_F(LedgerEditing, ARateGivenToAnEntryIsKnown)
{
    ledger.entries.modify(StoreWorld::meeting, [](TimeEntry& entry) { entry.rateIsKnown = false; });
    EntryChange change = unchanged();
    change.rateCents = 0;
    change.isBillable = false;
    update(change);
    EXPECT_TRUE(meeting().rateIsKnown);
    EXPECT_EQ(meeting().hourlyRateCents, 0);
    EXPECT_FALSE(meeting().isBillable);
}

TEST_F(LedgerEditing, MovingAnEntryKeepsItsRate)
{
    EntryChange change = unchanged();
    change.projectID = StoreWorld::design;
    update(change);
    EXPECT_EQ(meeting().projectID, StoreWorld::design);
    EXPECT_EQ(meeting().hourlyRateCents, 12'000);
}

TEST_F(LedgerEditing, AnEntrysOwnProjectSkipsTheMoveCheck)
{
    setProjectsEnabled(StoreWorld::acme, false);
    EntryChange change = unchanged();
    change.projectID = StoreWorld::website;
    EXPECT_NO_THROW(update(change));
    change.projectID = StoreWorld::design;
    expectRefused([&] { update(change); }, sameClient);
}

TEST_F(LedgerEditing, AnUnknownEntryIsToldBeforeABadMove)
{
    EntryChange change = unchanged();
    change.projectID = StoreWorld::uuid(99);
    expectRefused(
        [&] { updateEntry(ledger, StoreWorld::uuid(98), change, at(12)); }, "Entry not found.");
}

TEST_F(LedgerEditing, ABadMoveIsToldBeforeTheFuture)
{
    EntryChange change = unchanged();
    change.projectID = StoreWorld::uuid(99);
    expectRefused([&] { update(change, at(7)); }, "Project no longer exists.");
}

} // namespace
} // namespace KestryCore
