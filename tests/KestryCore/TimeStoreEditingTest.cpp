#include <cmath>

#include "LedgerCoding.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

class TimeStoreEditing : public StoreFixture {
protected:
    static NewEntry newEntry(const Uuid& clientID, const std::optional<Uuid>& projectID)
    {
        return NewEntry{clientID, projectID, " Call ", clockTime(10), 1800.0};
    }
    static EntryChange change(Date start, double duration, const std::string& title = "Meeting")
    {
        return EntryChange{title, start, duration, std::nullopt, std::nullopt, std::nullopt};
    }
    static ClientChange changeOfAcme(const std::string& name, Cents rate)
    {
        return ClientChange{name, rate, "000000", false, ClientLogoChange::unchanged(), {}};
    }

    const std::string tooLong = "A session must contain between 0 and 744 hours (31 days) of work.";
    const std::string future = "Saved time cannot extend into the future.";
};

TEST_F(TimeStoreEditing, AClientIsAddedTrimmedAndWithoutAProject)
{
    open(sampleLedger());
    const Uuid id =
        store().addClient(NewClient{" Beta\n", 700, "ABCDEF", false, std::nullopt, false});
    EXPECT_EQ(*ledger().clients.find(id),
        (Client{id, "Beta", 700, "ABCDEF", false, std::nullopt, false}));
    EXPECT_EQ(ledger().projects.size(), 2u);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreEditing, NamesOfBlanksAreRefusedQuietlyByAllFour)
{
    open(sampleLedger());
    const std::string message = "Enter a name.";
    expectRefusedQuietly([&] { addClient(" \n"); }, message);
    expectRefusedQuietly([&] { store().updateClient(acme, changeOfAcme("", 1)); }, message);
    expectRefusedQuietly([&] { store().addProject(acme, {"\t", 1, true}); }, message);
    expectRefusedQuietly([&] { store().updateProject(website, {" ", 1, true}); }, message);
}

TEST_F(TimeStoreEditing, ABlankNameIsToldBeforeAnUnknownRecord)
{
    open(sampleLedger());
    const std::string message = "Enter a name.";
    expectRefusedQuietly([&] { store().updateClient(uuid(99), changeOfAcme("", 1)); }, message);
    expectRefusedQuietly([&] { store().updateProject(uuid(99), {"", 1, true}); }, message);
    expectRefusedQuietly([&] { store().addProject(uuid(99), {"", 1, true}); }, message);
}

TEST_F(TimeStoreEditing, UnknownRecordsAreRefusedLoudly)
{
    open(sampleLedger());
    expectRefused(
        [&] { store().updateClient(uuid(99), changeOfAcme("Beta", 1)); }, "Client not found.");
    expectRefused(
        [&] {
            store().updateProject(uuid(99), {"Beta", 1, true});
        },
        "Project not found.");
    expectRefused(
        [&] { store().updateEntry(uuid(99), change(clockTime(8), 60.0)); }, "Entry not found.");
}

TEST_F(TimeStoreEditing, NegativeRatesAreRefused)
{
    open(sampleLedger());
    const std::string message = "Hourly rates cannot be negative.";
    expectRefused([&] { addClient("Beta", -1); }, message);
    expectRefused([&] { store().updateClient(acme, changeOfAcme("Acme", -1)); }, message);
    const std::string ofProject = "Invalid project client or hourly rate.";
    expectRefused([&] { store().addProject(acme, {"New", -1, true}); }, ofProject);
    expectRefused([&] { store().updateProject(website, {"Website", -1, true}); }, ofProject);
}

TEST_F(TimeStoreEditing, ABadLogoIsRefused)
{
    open(sampleLedger());
    const std::string message =
        "Client logos must be valid PNG images up to 256 pixels and 256 KB.";
    expectRefused(
        [&] {
            store().addClient(NewClient{"Beta", 1, "", true, "no image", true});
        },
        message);
    ClientChange change = changeOfAcme("Acme", 1);
    change.logo = ClientLogoChange::replace("no image");
    expectRefused([&] { store().updateClient(acme, change); }, message);
}

TEST_F(TimeStoreEditing, AnEditedClientTakesTheValuesAndNothingElseMoves)
{
    open(pausedLedger());
    LedgerData expected = ledger();
    expected.clients.modify(acme, [](Client& client) {
        client.name = "Acme Corp";
        client.hourlyRateCents = 1;
        client.colorHex = "000000";
        client.rateIsKnown = false;
    });
    store().updateClient(acme, changeOfAcme(" Acme Corp ", 1));
    EXPECT_TRUE(ledger() == expected);
}

TEST_F(TimeStoreEditing, SwitchingProjectsOffAndOnAgainLeavesTheNamedProjects)
{
    open(sampleLedger());
    ClientChange change = changeOfAcme("Acme", 12'000);
    change.projectsEnabled = false;
    store().updateClient(acme, change);
    EXPECT_FALSE(ledger().clients.find(acme)->projectsEnabled);
    change.projectsEnabled.reset();
    store().updateClient(acme, change);
    EXPECT_FALSE(ledger().clients.find(acme)->projectsEnabled);
    change.projectsEnabled = true;
    store().updateClient(acme, change);
    EXPECT_TRUE(ledger().clients.find(acme)->projectsEnabled);
    EXPECT_EQ(ledger().projects, sampleLedger().projects);
}

TEST_F(TimeStoreEditing, AProjectIsAddedTrimmedAndNamed)
{
    open(sampleLedger());
    const Uuid id = store().addProject(acme, {" Print ", 300, false});
    EXPECT_EQ(*ledger().projects.find(id), (Project{id, acme, "Print", 300, false, false}));
}

TEST_F(TimeStoreEditing, AProjectOfAnUnknownClientIsRefused)
{
    open(sampleLedger());
    expectRefused(
        [&] {
            store().addProject(uuid(99), {"Print", 1, true});
        },
        "Invalid project client or hourly rate.");
}

TEST_F(TimeStoreEditing, AnEditedProjectLeavesSavedAndActiveSessionsTheirRate)
{
    open(pausedLedger());
    store().updateProject(website, {" Site ", 1, false});
    EXPECT_EQ(store().project(website), (Project{website, acme, "Site", 1, false, false}));
    EXPECT_EQ(entry(meeting).hourlyRateCents, 12'000);
    EXPECT_EQ(active().hourlyRateCents, 12'000);
}

TEST_F(TimeStoreEditing, AnEntryAddedByHandHasOneSpanTheRateAndItsTitleAsItIs)
{
    open(sampleLedger());
    const Uuid id = store().addEntry(newEntry(acme, design));
    TimeEntry expected;
    expected.id = id;
    expected.projectID = design;
    expected.title = " Call ";
    expected.hourlyRateCents = 9'000;
    expected.spans = {{clockTime(10), clockTime(10, 30)}};
    EXPECT_EQ(entry(id), expected);
}

TEST_F(TimeStoreEditing, AnEntryThatIsNotBillableKeepsTheRateAllTheSame)
{
    open(sampleLedger());
    NewEntry added = newEntry(acme, design);
    added.isBillable = false;
    const Uuid id = store().addEntry(added);
    EXPECT_FALSE(entry(id).isBillable);
    EXPECT_EQ(entry(id).hourlyRateCents, 9'000);
    EXPECT_EQ(entry(id).earnedCents(), 0.0);
}

TEST_F(TimeStoreEditing, AnEntryOfNoLengthIsAllowed)
{
    open(sampleLedger());
    NewEntry added = newEntry(acme, design);
    added.duration = 0.0;
    EXPECT_EQ(entry(store().addEntry(added)).duration(), 0.0);
}

TEST_F(TimeStoreEditing, AnEntryAddedToAProjectIgnoresTheClientGiven)
{
    open(sampleLedger());
    const Uuid id = store().addEntry(website, newEntry(solo, design));
    EXPECT_EQ(entry(id).projectID, website);
}

TEST_F(TimeStoreEditing, AnEntryOnAProjectThatIsGoneIsRefusedQuietlyBeforeAnythingElse)
{
    open(sampleLedger());
    NewEntry added = newEntry(acme, std::nullopt);
    added.duration = -1.0;
    expectRefusedQuietly([&] { store().addEntry(uuid(99), added); }, "Project no longer exists.");
}

TEST_F(TimeStoreEditing, BadLengthsAndTheFutureAreRefusedQuietlyInThatOrder)
{
    open(sampleLedger());
    NewEntry added = newEntry(uuid(99), std::nullopt);
    for (const double seconds : {-1.0, 2'678'401.0, std::nan(""), double{INFINITY}}) {
        added.duration = seconds;
        added.start = clockTime(13);
        expectRefusedQuietly([&] { store().addEntry(added); }, tooLong);
    }
    added.duration = 60.0;
    expectRefusedQuietly([&] { store().addEntry(added); }, future);
}

TEST_F(TimeStoreEditing, AnEntryMayEndThisInstantAndNotASecondLater)
{
    open(sampleLedger());
    NewEntry added = newEntry(acme, design);
    added.duration = 7201.0;
    expectRefusedQuietly([&] { store().addEntry(added); }, future);
    added.duration = 7200.0;
    EXPECT_EQ(entry(store().addEntry(added)).endedAt(), now);
}

TEST_F(TimeStoreEditing, ClientAndProjectOfAnEntryAreRefusedLoudly)
{
    open(sampleLedger());
    expectRefused([&] { store().addEntry(newEntry(uuid(99), std::nullopt)); }, "Client not found.");
    expectRefused(
        [&] { store().addEntry(newEntry(acme, uuid(99))); }, "Choose a project for this client.");
    expectRefused([&] { store().addEntry(newEntry(solo, website)); },
        "Project does not belong to this client.");
}

TEST_F(TimeStoreEditing, ADateNoLedgerMayHoldIsRefusedAndTheNewProjectGoesWithIt)
{
    open(sampleLedger());
    NewEntry added = newEntry(solo, std::nullopt);
    const std::string message = "Time intervals must be ordered, with dates between 1970 and 2200.";
    for (const double start : {-978'307'201.0, std::nan("")}) {
        added.start = Date{start};
        expectRefused([&] { store().addEntry(added); }, message);
    }
}

TEST_F(TimeStoreEditing, AnEditedEntryIsSaved)
{
    open(sampleLedger());
    store().updateEntry(meeting, change(clockTime(7), 7200.0, " Long one "));
    EXPECT_EQ(readPrimary().entries.find(meeting)->duration(), 7200.0);
    EXPECT_EQ(entry(meeting).title, " Long one ");
}

TEST_F(TimeStoreEditing, ABadLengthOfAnEditIsRefusedQuietlyBeforeAnUnknownEntry)
{
    open(sampleLedger());
    expectRefusedQuietly(
        [&] { store().updateEntry(uuid(99), change(clockTime(8), -1.0)); }, tooLong);
}

TEST_F(TimeStoreEditing, AnEditIntoTheFutureIsRefusedLoudly)
{
    open(sampleLedger());
    expectRefused([&] { store().updateEntry(meeting, change(clockTime(11), 3601.0)); }, future);
    store().updateEntry(meeting, change(clockTime(10, 30), 3600.0));
    EXPECT_EQ(entry(meeting).endedAt(), now);
}

TEST_F(TimeStoreEditing, DeletingRemovesTheEntryOnly)
{
    open(pausedLedger()).deleteEntry(meeting);
    EXPECT_TRUE(ledger().entries.empty());
    EXPECT_TRUE(readPrimary() == ledger());
    EXPECT_EQ(active().id, writing);
}

TEST_F(TimeStoreEditing, DeletingAnUnknownEntrySucceedsAndSaves)
{
    open(sampleLedger());
    const std::string previous = primary();
    store().deleteEntry(uuid(99));
    EXPECT_EQ(backup(), previous);
    EXPECT_EQ(primary(), previous);
}

TEST_F(TimeStoreEditing, LookUpsFindRecordsOrNone)
{
    open(sampleLedger());
    const Uuid unassigned = store().addProject(acme, {"unassigned", 1, true});
    EXPECT_EQ(store().project(design)->name, "Design");
    EXPECT_FALSE(store().project(uuid(99)).has_value());
    EXPECT_EQ(store().client(*store().project(design))->name, "Acme");
    EXPECT_FALSE(store().client(Project{}).has_value());
    EXPECT_EQ(store().unassignedProject(acme)->id, unassigned);
    EXPECT_FALSE(store().unassignedProject(solo).has_value());
}

} // namespace
} // namespace KestryCore
