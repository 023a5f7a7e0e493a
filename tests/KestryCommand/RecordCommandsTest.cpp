#include "CommandFixture.h"

#include <fstream>

namespace Kestry {
namespace {

using KestryCore::CalendarDay;
using KestryCore::WallTime;
using testing::HasSubstr;

class RecordCommands : public CommandFixture { };

TEST_F(RecordCommands, CountsBackFromTheMomentThatIsGiven)
{
    done({"client", "add", "Aster"});
    done({"add", "aster", "--start", "-1h", "--duration", "30m", "--at", "2026-03-13T12:00Z"});
    EXPECT_EQ(ledger().entries.front().startedAt(),
        dateInUtc(WallTime{CalendarDay{2026, 3, 13}, 11, 0, 0.0}));
}

TEST_F(RecordCommands, TellsTheIdentifierOfWhatWasMade)
{
    const std::string answer = done({"client", "add", "Aster", "--json"});
    EXPECT_EQ(answer, "{\"ok\":true,\"id\":\"" + ledger().clients.front().id.text() + "\"}\n");
}

TEST_F(RecordCommands, AClientWithARateBillsUnlessItIsToHaveProjects)
{
    done({"client", "add", "Aster", "--rate", "150"});
    EXPECT_FALSE(ledger().clients.back().projectsEnabled);
    done({"start", "aster", "--title", "Sketches"});
    pass(3600);
    done({"stop"});
    EXPECT_EQ(ledger().entries.front().hourlyRateCents, 15000);
    EXPECT_TRUE(ledger().entries.front().rateIsKnown);
    done({"client", "add", "Birch", "--rate", "95", "--projects"});
    EXPECT_TRUE(ledger().clients.back().projectsEnabled);
    done({"client", "add", "Cedar"});
    EXPECT_TRUE(ledger().clients.back().projectsEnabled);
    done({"client", "add", "Dune", "--no-projects"});
    EXPECT_FALSE(ledger().clients.back().projectsEnabled);
}

TEST_F(RecordCommands, ChangesOfAClientOnlyWhatIsGiven)
{
    done({"client", "add", "Aster", "--rate", "150", "--color", "B7A5FF", "--projects"});
    done({"client", "edit", "aster", "--name", "Aster Studio"});
    done({"client", "edit", "aster", "--no-projects"});
    const KestryCore::Client client = ledger().clients.front();
    EXPECT_EQ(client.name, "Aster Studio");
    EXPECT_EQ(client.hourlyRateCents, 15000);
    EXPECT_EQ(client.colorHex, "B7A5FF");
    EXPECT_FALSE(client.projectsEnabled);
    done({"client", "edit", "aster", "--no-rate"});
    EXPECT_FALSE(ledger().clients.front().rateIsKnown);
    EXPECT_EQ(ledger().clients.front().hourlyRateCents, 0);
}

TEST_F(RecordCommands, RefusesALogoThatIsNone)
{
    done({"client", "add", "Aster"});
    std::ofstream(root_ / "logo.png") << "no image";
    EXPECT_EQ(refused({"client", "edit", "aster", "--logo", (root_ / "logo.png").string()}),
        "Client logos must be valid PNG images up to 256 pixels and 256 KB.");
    EXPECT_EQ(refused({"client", "edit", "aster", "--logo", (root_ / "none.png").string()}),
        "none.png could not be read: No such file or directory.");
}

TEST_F(RecordCommands, EditsATitleWithoutTouchingThePausesOfASession)
{
    addClientAndStart();
    pass(100.7);
    done({"pause"});
    pass(33.3);
    done({"resume"});
    pass(200.1);
    done({"stop"});
    const auto before = ledger().entries.front();
    ASSERT_EQ(before.spans.size(), 2U);
    done({"edit", "sketches", "--title", "Second sketches"});
    EXPECT_EQ(ledger().entries.front().spans, before.spans);
    EXPECT_EQ(ledger().entries.front().title, "Second sketches");
}

TEST_F(RecordCommands, MovesASessionWithItsPausesToAnotherStart)
{
    addClientAndStart();
    pass(600);
    done({"pause"});
    pass(600);
    done({"resume"});
    pass(600);
    done({"stop"});
    done({"edit", "sketches", "--start", "08:00"});
    const auto entry = ledger().entries.front();
    ASSERT_EQ(entry.spans.size(), 2U);
    EXPECT_EQ(entry.startedAt(), dateInUtc(WallTime{CalendarDay{2026, 3, 14}, 8, 0, 0.0}));
    EXPECT_EQ(entry.duration(), 1200.0);
}

TEST_F(RecordCommands, MakesOneIntervalOfASessionOfAnotherLength)
{
    addClientAndStart();
    pass(600);
    done({"pause"});
    pass(600);
    done({"resume"});
    pass(600);
    done({"stop"});
    done({"edit", "sketches", "--duration", "10m", "--no-billable"});
    EXPECT_EQ(ledger().entries.front().spans.size(), 1U);
    EXPECT_EQ(ledger().entries.front().duration(), 600.0);
    EXPECT_FALSE(ledger().entries.front().isBillable);
}

TEST_F(RecordCommands, RefusesSavedTimeInTheFuture)
{
    done({"client", "add", "Aster"});
    EXPECT_EQ(refused({"add", "aster", "--start", "-10m", "--duration", "11m"}),
        "Saved time cannot extend into the future.");
    EXPECT_EQ(refused({"add", "aster", "--start", "-10m", "--duration", "745h"}),
        "A session must contain between 0 and 744 hours (31 days) of work.");
    EXPECT_TRUE(ledger().entries.empty());
}

TEST_F(RecordCommands, PutsAMissingIntervalBack)
{
    addClientAndStart();
    pass(600);
    done({"stop"});
    done({"gap", "sketches", "--start", "08:00", "--end", "08:30"});
    EXPECT_EQ(ledger().entries.front().duration(), 2400.0);
    EXPECT_EQ(refused({"gap", "sketches", "--start", "08:15", "--end", "08:45"}),
        "The missing interval overlaps time already tracked.");
    EXPECT_EQ(refused({"gap", "sketches", "--start", "08:45", "--end", "08:45"}),
        "The missing interval must be a valid past time range.");
}

TEST_F(RecordCommands, DeletesASessionWhenToldNotToAsk)
{
    addClientAndStart();
    pass(60);
    done({"stop"});
    done({"delete", "sketches", "--yes"});
    EXPECT_TRUE(ledger().entries.empty());
}

TEST_F(RecordCommands, LetsNoNameActOnTheTerminal)
{
    done({"client", "add", "A\x1B[2J\nB"});
    EXPECT_THAT(done({"client", "list"}), HasSubstr("A\\x1B[2J\\nB"));
    EXPECT_EQ(ledger().clients.front().name, "A\x1B[2J\nB");
}

} // namespace
} // namespace Kestry
