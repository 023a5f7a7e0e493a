#include "ProjectRow.h"

#include "SessionListFixture.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;

class ProjectRowTest : public SessionListFixture {
protected:
    [[nodiscard]] std::vector<ProjectRow> rows() const
    {
        return projectRows(*store.data(), aster, KestryCore::MoneyText("en_US"));
    }
};

TEST_F(ProjectRowTest, AProjectWithoutSavedSessionsSaysSo)
{
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(rows().front().name, "Website");
    EXPECT_EQ(rows().front().count, "0 saved sessions");
    EXPECT_EQ(rows().front().rate, "$100.00 / hr");
}

TEST_F(ProjectRowTest, TheCountIsInThePluralAlsoForOne)
{
    save("Design");
    EXPECT_EQ(rows().front().count, "1 saved sessions");
    save("Review", 2.0);
    EXPECT_EQ(rows().front().count, "2 saved sessions");
}

TEST_F(ProjectRowTest, TheSessionInProgressIsNotCounted)
{
    start("Design");
    EXPECT_EQ(rows().front().count, "0 saved sessions");
}

TEST_F(ProjectRowTest, AnUnknownRateIsNotSet)
{
    store.addProject(aster, {"Poster", 0, false});
    EXPECT_EQ(rows().back().rate, "Rate not set");
}

TEST_F(ProjectRowTest, AKnownRateOfZeroIsARate)
{
    store.addProject(aster, {"Poster", 0, true});
    EXPECT_EQ(rows().back().rate, "$0.00 / hr");
}

TEST_F(ProjectRowTest, ProjectsOfOthersAndTheHiddenOneHaveNoRow)
{
    const Uuid birch = addClient(store, "Birch", Projects::disabled);
    store.start(birch, std::nullopt, "", world.now());
    store.stop(world.now());
    EXPECT_EQ(rows().size(), 1U);
    EXPECT_TRUE(projectRows(*store.data(), birch, KestryCore::MoneyText("en_US")).empty());
}

TEST_F(ProjectRowTest, ARowSaysAllOfItInOneLine)
{
    save("Design");
    EXPECT_EQ(rows().front().spoken, "Website, 1 saved sessions, $100.00 / hr");
}

} // namespace
} // namespace Kestry
