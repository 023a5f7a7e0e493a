// What a store promises of versions that it had accepted and put behind others, as a store of
// several machines can. A store that cannot tells of none.

#include "CloudContract.h"

namespace KestryCore {
namespace {

using Versions = std::vector<CloudRecord>;

std::string text(const CloudRecord& record)
{
    return std::get<std::string>(record.fields.at("text"));
}

/// What a store has to tell of.
Versions overruledIf(bool isOverruled, const CloudRecord& version)
{
    return isOverruled ? Versions{version} : Versions();
}

TEST_P(CloudContract, AnOverruledVersionIsToldBesideTheOneThatStandsBeforeIt)
{
    makeZone();
    const CloudRecord base = saved(one(), record("a"));
    const CloudCursor cursor = read(two()).cursor;
    const CloudRecord mine = saved(one(), changed(base, "mine"));
    const bool isOverruled = store().overrule(base, changed(base, "rival"));
    for (const auto& since : {std::optional(cursor), std::optional<CloudCursor>()}) {
        const Reading reading = read(two(), since);
        EXPECT_EQ(text(reading.records.at("a")), isOverruled ? "rival" : "mine");
        EXPECT_EQ(reading.overruled, overruledIf(isOverruled, mine));
    }
}

TEST_P(CloudContract, AnOverruledVersionIsToldAgainUntilItIsDiscarded)
{
    makeZone();
    const CloudRecord base = saved(one(), record("a"));
    const CloudRecord mine = saved(one(), changed(base, "mine"));
    const bool isOverruled = store().overrule(base, changed(base, "rival"));
    (void)read(one());
    restart();
    EXPECT_EQ(read(one()).overruled, overruledIf(isOverruled, mine));
    run(one().discard(overruledIf(isOverruled, mine)));
    EXPECT_TRUE(read(one()).overruled.empty());
    EXPECT_TRUE(read(two()).overruled.empty());
}

TEST_P(CloudContract, DiscardingLeavesWhatIsShownAndMayBeRepeated)
{
    makeZone();
    const CloudRecord base = saved(one(), record("a"));
    const CloudRecord mine = saved(one(), changed(base, "mine"));
    const bool isOverruled = store().overrule(base, changed(base, "rival"));
    for (int time = 0; time < 2; ++time) { // as after an answer that was lost
        run(one().discard(overruledIf(isOverruled, mine)));
        EXPECT_EQ(text(read(two()).records.at("a")), isOverruled ? "rival" : "mine");
    }
}

TEST_P(CloudContract, WhatStandsBeforeAnotherVersionCanBeChanged)
{
    makeZone();
    const CloudRecord base = saved(one(), record("a"));
    (void)saved(one(), changed(base, "mine"));
    (void)store().overrule(base, changed(base, "rival"));
    const CloudRecord shown = read(two()).records.at("a");
    const CloudRecord next = saved(two(), changed(shown, "next"));
    EXPECT_EQ(stored("a"), next);
}

TEST_P(CloudContract, AWitnessedCursorIsBehindTheSameChanges)
{
    makeZone();
    const CloudCursor cursor = read(one()).cursor;
    const CloudRecord a = saved(one(), record("a"));
    const CloudCursor witnessed = one().witnessed(cursor);
    restart();
    EXPECT_EQ(read(one(), witnessed).records, (std::map<std::string, CloudRecord>{{"a", a}}));
}

} // namespace
} // namespace KestryCore
