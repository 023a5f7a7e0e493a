#include "SessionDeletion.h"

#include <gtest/gtest.h>

#include "SessionListFixture.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;

class SessionDeletionTest : public SessionListFixture { };

TEST_F(SessionDeletionTest, ASessionIsDeletedOnceThatIsConfirmed)
{
    save("New", 10);
    const Uuid id = save("Old", 20);
    deletion.ask(id);
    EXPECT_TRUE(deletion.isAsking());
    EXPECT_EQ(store.data()->entries.size(), 2U);
    deletion.confirm();
    world.scheduler.turn();
    EXPECT_FALSE(deletion.isAsking());
    ASSERT_EQ(store.data()->entries.size(), 1U);
    EXPECT_EQ(store.data()->entries.front().title, "New");
}

TEST_F(SessionDeletionTest, ACancelledDeletionDeletesNothing)
{
    const Uuid id = save("Design");
    deletion.ask(id);
    deletion.cancel();
    deletion.confirm();
    EXPECT_FALSE(deletion.isAsking());
    EXPECT_EQ(store.data()->entries.size(), 1U);
}

TEST_F(SessionDeletionTest, TheQuestionGoesWithASessionThatWasDeletedElsewhere)
{
    const Uuid id = save("Design");
    deletion.ask(id);
    store.deleteEntry(id);
    world.scheduler.turn();
    EXPECT_FALSE(deletion.isAsking());
}

TEST_F(SessionDeletionTest, ASessionThatHasGoneIsNotAskedAbout)
{
    const Uuid id = save("Design");
    store.deleteEntry(id);
    deletion.ask(id);
    EXPECT_FALSE(deletion.isAsking());
}

TEST_F(SessionDeletionTest, OtherChangesOfTheLedgerLeaveTheQuestion)
{
    deletion.ask(save("Design"));
    save("Review");
    EXPECT_TRUE(deletion.isAsking());
}

TEST_F(SessionDeletionTest, ADeletionThatFailsIsToldAndChangesNothing)
{
    const Uuid id = save("Design");
    world.damageLedger();
    deletion.ask(id);
    deletion.confirm();
    world.scheduler.turn();
    EXPECT_TRUE(store.errorMessage()->has_value());
    EXPECT_EQ(store.data()->entries.size(), 1U);
}

} // namespace
} // namespace Kestry
