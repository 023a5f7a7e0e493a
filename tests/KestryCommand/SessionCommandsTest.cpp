#include "CommandFixture.h"

namespace Kestry {
namespace {

class SessionCommands : public CommandFixture { };

TEST_F(SessionCommands, GoesTheWholeRoadOfASession)
{
    addClientAndStart();
    pass(600);
    EXPECT_EQ(done({"pause"}), "Paused at 00:10:00.\n");
    pass(300);
    EXPECT_EQ(done({"resume"}), "Resumed at 00:10:00.\n");
    pass(1200);
    EXPECT_EQ(done({"stop"}), "Saved 00:30:00: Aster Studio, Website.\n");
    ASSERT_EQ(ledger().entries.size(), 1U);
    EXPECT_EQ(ledger().entries.front().duration(), 1800.0);
    EXPECT_EQ(ledger().entries.front().title, "Sketches");
}

TEST_F(SessionCommands, MovesTheCheckpointOfARunningSession)
{
    addClientAndStart();
    pass(90);
    done({"checkpoint"});
    EXPECT_EQ(ledger().active->checkpointAt, now_);
    done({"pause"});
    EXPECT_EQ(done({"checkpoint", "--json"}), "{\"ok\":true,\"id\":null}\n");
}

TEST_F(SessionCommands, WorksAtAnotherMomentThanNow)
{
    addClientAndStart();
    pass(7200);
    done({"stop", "--at", "09:30"});
    EXPECT_EQ(ledger().entries.front().duration(), 1800.0);
}

TEST_F(SessionCommands, RefusesInTheLedgersOwnWordsAndChangesNothing)
{
    addClientAndStart();
    const std::string before = fileContent(ledgerPath());
    EXPECT_EQ(refused({"start", "aster"}), "Stop the current session first.");
    EXPECT_EQ(refused({"stop", "--at", "08:59"}), "The stop time is before the last checkpoint.");
    EXPECT_EQ(refused({"client", "add", " "}), "Enter a name.");
    EXPECT_EQ(refused({"start", "00000000-0000-0000-0000-000000000001"}),
        "Stop the current session first.");
    EXPECT_EQ(fileContent(ledgerPath()), before);
}

TEST_F(SessionCommands, SaysWithoutASessionThatThereIsNone)
{
    EXPECT_EQ(refused({"rename", "x"}), "This session is no longer active.");
    EXPECT_EQ(refused({"move", "x"}), "This session is no longer active.");
    EXPECT_EQ(refused({"resume"}), "No session to resume.");
}

TEST_F(SessionCommands, RenamesAndMovesTheSessionInProgress)
{
    addClientAndStart();
    done({"project", "add", "aster", "Strategy"});
    done({"rename", "  Second sketches "});
    EXPECT_EQ(ledger().active->title, "Second sketches");
    done({"move", "strat"});
    EXPECT_EQ(ledger().active->projectID, ledger().projects.back().id);
    EXPECT_EQ(ledger().active->title, "Second sketches");
    EXPECT_EQ(ledger().active->hourlyRateCents, 15000);
}

TEST_F(SessionCommands, RefusesAMoveToAnotherClient)
{
    addClientAndStart();
    done({"client", "add", "Northstar"});
    done({"project", "add", "north", "Strategy"});
    EXPECT_EQ(refused({"move", "strategy"}),
        "Choose a project from the same client with projects enabled.");
}

} // namespace
} // namespace Kestry
