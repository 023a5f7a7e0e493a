#include "LedgerGenerator.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "LedgerCoding.h"
#include "LedgerValidation.h"

namespace KestryCore {
namespace {

TEST(LedgerGenerator, DrawsLedgersThatAreValid)
{
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        EXPECT_NO_THROW(validate(generateLedger({.sessions = 500, .seed = seed}))) << seed;
    }
}

TEST(LedgerGenerator, DrawsTheSameLedgerFromTheSameSeed)
{
    const LedgerShape shape{.sessions = 50, .seed = 7};
    EXPECT_EQ(encodeLedger(generateLedger(shape)), encodeLedger(generateLedger(shape)));
    EXPECT_NE(generateLedger(shape), generateLedger({.sessions = 50, .seed = 8}));
}

TEST(LedgerGenerator, DrawsAsManyRecordsAsItIsAskedFor)
{
    const LedgerData ledger =
        generateLedger({.sessions = 300, .clients = 5, .projects = 9, .seed = 1});
    EXPECT_EQ(ledger.clients.size(), 5U);
    EXPECT_EQ(ledger.projects.size(), 9U);
    EXPECT_EQ(ledger.entries.size(), 300U);
}

TEST(LedgerGenerator, GivesASessionOneToThreeIntervals)
{
    const LedgerData ledger = generateLedger({.sessions = 300});
    std::array<std::size_t, 4> sessionsByIntervals{};
    for (const TimeEntry& entry : ledger.entries) {
        ++sessionsByIntervals.at(entry.spans.size());
    }
    EXPECT_EQ(sessionsByIntervals[0], 0U);
    EXPECT_GT(sessionsByIntervals[1], 0U);
    EXPECT_GT(sessionsByIntervals[2], 0U);
    EXPECT_GT(sessionsByIntervals[3], 0U);
}

} // namespace
} // namespace KestryCore
