#include "CommandPreparation.h"

#include "CommandFixture.h"

namespace Kestry {
namespace {

class CommandPreparationTest : public CommandFixture { };

TEST_F(CommandPreparationTest, RefusesToDeleteWhereNobodyCanBeAsked)
{
    addClientAndStart();
    pass(60);
    done({"stop"});
    EXPECT_EQ(refused({"delete", "sketches"}),
        "Nothing was deleted. Nobody can be asked here; add --yes to do it all the same.");
    EXPECT_EQ(ledger().entries.size(), 1U);
}

TEST_F(CommandPreparationTest, AsksBeforeItDeletes)
{
    addClientAndStart();
    pass(5400);
    done({"stop"});
    console_.isTerminal = true;
    console_.answers = {"n", "y"};
    EXPECT_EQ(
        refused({"delete", "sketches"}), "Delete \"Sketches\", 1h 30m? [y/N] Nothing was deleted.");
    EXPECT_EQ(ledger().entries.size(), 1U);
    done({"delete", "sketches"});
    EXPECT_TRUE(ledger().entries.empty());
}

TEST_F(CommandPreparationTest, AsksBeforeItUploadsAgain)
{
    EXPECT_EQ(refused({"sync", "upload-again"}),
        "Nothing was uploaded. Nobody can be asked here; add --yes to do it all the same.");
    console_.isTerminal = true;
    console_.answers = {"n"};
    EXPECT_EQ(refused({"sync", "upload-again"}),
        "Upload this device's records again? What the record store has otherwise becomes a "
        "conflict. [y/N] Nothing was uploaded.");
}

TEST_F(CommandPreparationTest, TakesTheEndOfTheInputForANo)
{
    addClientAndStart();
    pass(60);
    done({"stop"});
    console_.isTerminal = true;
    refused({"delete", "sketches"});
    EXPECT_EQ(ledger().entries.size(), 1U);
}

} // namespace
} // namespace Kestry
