#include "Simulation.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

TEST(Simulation, ASeedGivesOneRun)
{
    const SimulationOutcome first = simulate(11, HistoryPolicy::keep);
    const SimulationOutcome second = simulate(11, HistoryPolicy::keep);
    EXPECT_FALSE(first.history.empty());
    EXPECT_EQ(first.history, second.history);
    EXPECT_NE(first.history, simulate(12, HistoryPolicy::keep).history);
}

TEST(Simulation, TellingARunDoesNotChangeIt)
{
    const SimulationOutcome told = simulate(11, HistoryPolicy::keep);
    const SimulationOutcome untold = simulate(11, HistoryPolicy::drop);
    EXPECT_TRUE(untold.history.empty());
    for (const Event event : {Event::userChange, Event::delivery, Event::answer}) {
        EXPECT_EQ(told.tally.of(event), untold.tally.of(event));
        EXPECT_GT(told.tally.of(event), 0U);
    }
}

TEST(Simulation, AnEventThatNeverHappenedIsNamed)
{
    Tally tally;
    tally.count(Event::deviceDay);
    EXPECT_EQ(tally.missing().size(), static_cast<std::size_t>(Event::count) - 1);
}

} // namespace
} // namespace KestryCore
