#include "SessionSort.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <ranges>

#include "SampleLedger.h"

namespace KestryCore {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Numbered sessions that are alike but for what a test says of them; lists are their numbers.
class SessionSorting : public testing::Test {
protected:
    /// So many hours of work, begun so many hours after noon.
    TimeEntry& add(unsigned number, double start, double hours)
    {
        TimeEntry entry = Sample::entry(number);
        const double begin = Sample::noon + start * Sample::hour;
        entry.spans = {Sample::span(begin, begin + hours * Sample::hour)};
        return entries.emplace_back(entry);
    }
    TimeEntry& addTitled(unsigned number, const std::string& text)
    {
        TimeEntry& entry = add(number, 0, 1);
        entry.title = text;
        return entry;
    }
    std::vector<unsigned> sorted(SessionSortField field, bool ascending)
    {
        std::vector<const TimeEntry*> sessions;
        for (const TimeEntry& entry : entries) {
            sessions.push_back(&entry);
        }
        std::vector<unsigned> numbers;
        for (const TimeEntry* entry :
            SessionSort{field, ascending}.sorted(sessions, title, order)) {
            numbers.push_back(entry->id.bytes.back());
        }
        return numbers;
    }

    std::vector<TimeEntry> entries;
    const SessionTitle title = [](const TimeEntry& entry) -> std::string_view {
        return entry.title;
    };
    const LocalizedOrder order{"en_US"};
};

TEST_F(SessionSorting, BeginsWithTheNewestFirst)
{
    EXPECT_EQ(SessionSort{}.field, SessionSortField::date);
    EXPECT_FALSE(SessionSort{}.ascending);
}

TEST_F(SessionSorting, ItsFieldsAreTitleDateDurationAndValue)
{
    std::vector<std::string_view> names;
    for (const SessionSortField field : allSessionSortFields) {
        names.push_back(sessionSortFieldName(field));
    }
    EXPECT_THAT(names, ElementsAre("title", "date", "duration", "value"));
}

TEST_F(SessionSorting, AFirstClickOnTheDurationPutsTheLongestFirstAndASecondTheShortest)
{
    SessionSort sort;
    sort.select(SessionSortField::duration);
    EXPECT_EQ(sort, (SessionSort{SessionSortField::duration, false}));
    sort.select(SessionSortField::duration);
    EXPECT_EQ(sort, (SessionSort{SessionSortField::duration, true}));
    sort.select(SessionSortField::title);
    EXPECT_EQ(sort, (SessionSort{SessionSortField::title, true}));
}

TEST_F(SessionSorting, AClickOnTheDateTurnsTheDefaultRound)
{
    SessionSort sort;
    sort.select(SessionSortField::date);
    EXPECT_EQ(sort, (SessionSort{SessionSortField::date, true}));
}

TEST_F(SessionSorting, AFirstClickOnDateOrValueFromAnAscendingColumnPutsTheHighestFirst)
{
    for (const auto field : {SessionSortField::date, SessionSortField::value}) {
        SessionSort sort{SessionSortField::title, true};
        sort.select(field);
        EXPECT_EQ(sort, (SessionSort{field, false}));
    }
}

TEST_F(SessionSorting, ASecondClickOnTheTitleSortsZToA)
{
    SessionSort sort;
    sort.select(SessionSortField::title);
    sort.select(SessionSortField::title);
    EXPECT_EQ(sort, (SessionSort{SessionSortField::title, false}));
}

TEST_F(SessionSorting, NoSessionsSortToNone)
{
    for (const SessionSortField field : allSessionSortFields) {
        EXPECT_THAT(sorted(field, true), IsEmpty());
        EXPECT_THAT(sorted(field, false), IsEmpty());
    }
}

TEST_F(SessionSorting, ByDateTheStartDecides)
{
    add(1, 0, 9);
    add(2, 2, 1);
    add(3, -3, 1);
    EXPECT_THAT(sorted(SessionSortField::date, false), ElementsAre(2, 1, 3));
    EXPECT_THAT(sorted(SessionSortField::date, true), ElementsAre(3, 1, 2));
}

TEST_F(SessionSorting, ASessionWithoutSpansIsOlderThanAll)
{
    add(1, 0, 1).spans.clear();
    add(2, -100'000, 1);
    EXPECT_THAT(sorted(SessionSortField::date, true), ElementsAre(1, 2));
}

TEST_F(SessionSorting, SessionsThatBeganTogetherFollowTheirIdentifiersInEitherDirection)
{
    for (const unsigned number : {7U, 3U, 0xA1U, 5U}) {
        add(number, 0, 1);
    }
    EXPECT_THAT(sorted(SessionSortField::date, false), ElementsAre(3, 5, 7, 0xA1));
    EXPECT_THAT(sorted(SessionSortField::date, true), ElementsAre(3, 5, 7, 0xA1));
}

TEST_F(SessionSorting, EqualDurationsGoByLaterStartInEitherDirection)
{
    add(1, 0, 2);
    add(2, 5, 2);
    add(3, 9, 1);
    EXPECT_THAT(sorted(SessionSortField::duration, true), ElementsAre(3, 2, 1));
    EXPECT_THAT(sorted(SessionSortField::duration, false), ElementsAre(2, 1, 3));
}

TEST_F(SessionSorting, ByDurationTheRecordedOneCounts)
{
    add(1, 0, 5).recordedDuration = 60.0;
    add(2, 0, 1);
    EXPECT_THAT(sorted(SessionSortField::duration, false), ElementsAre(2, 1));
}

TEST_F(SessionSorting, ByValueThePricedStandAboveAllOthersInEitherDirection)
{
    add(1, 0, 9).isBillable = false;
    add(2, 1, 1);
    add(3, 2, 8).rateIsKnown = false;
    add(4, 3, 2);
    EXPECT_THAT(sorted(SessionSortField::value, false), ElementsAre(4, 2, 3, 1));
    EXPECT_THAT(sorted(SessionSortField::value, true), ElementsAre(2, 4, 3, 1));
}

TEST_F(SessionSorting, AmongThoseWithoutAPriceTheNewestComesFirstWhateverTheirLength)
{
    add(1, 0, 9).isBillable = false;
    add(2, 2, 1).rateIsKnown = false;
    add(3, 1, 5).isBillable = false;
    EXPECT_THAT(sorted(SessionSortField::value, false), ElementsAre(2, 3, 1));
    EXPECT_THAT(sorted(SessionSortField::value, true), ElementsAre(2, 3, 1));
}

TEST_F(SessionSorting, APricedSessionThatEarnedNothingStandsAboveAnUnpricedOne)
{
    add(1, 9, 1).rateIsKnown = false;
    add(2, 0, 1).hourlyRateCents = 0;
    EXPECT_THAT(sorted(SessionSortField::value, false), ElementsAre(2, 1));
    EXPECT_THAT(sorted(SessionSortField::value, true), ElementsAre(2, 1));
}

TEST_F(SessionSorting, ByTitleNumbersGoByTheirValue)
{
    addTitled(1, "Item 10");
    addTitled(2, "Item 2");
    addTitled(3, "item 1");
    EXPECT_THAT(sorted(SessionSortField::title, true), ElementsAre(3, 2, 1));
    EXPECT_THAT(sorted(SessionSortField::title, false), ElementsAre(1, 2, 3));
}

TEST_F(SessionSorting, TitlesThatTheLanguageHoldsForTheSameGoByLaterStart)
{
    addTitled(1, "Item 2");
    addTitled(2, "Item 02").spans = {Sample::span(Sample::noon + 1, Sample::noon + 2)};
    EXPECT_THAT(sorted(SessionSortField::title, true), ElementsAre(2, 1));
    EXPECT_THAT(sorted(SessionSortField::title, false), ElementsAre(2, 1));
}

/// Sessions of few different starts, lengths, prices and titles, so that much is equal.
std::vector<TimeEntry> anyAlikeEntries()
{
    std::vector<TimeEntry> entries;
    const auto anyBelow = [](int limit) { return *rc::gen::inRange(0, limit); };
    const std::vector<std::string> titles{
        "", "Item 2", "Item 02", "item 2", "Ärger", "Arger", "Zoo", "item 10", "\u65E5\u672C"};
    for (int count = anyBelow(12); count > 0; --count) {
        TimeEntry entry = Sample::entry(static_cast<unsigned>(count));
        entry.id.bytes[0] = static_cast<std::uint8_t>(anyBelow(256));
        entry.title = *rc::gen::elementOf(titles);
        const double start = Sample::noon + anyBelow(3);
        entry.spans = {Sample::span(start, start + anyBelow(3) * Sample::hour)};
        entry.hourlyRateCents = anyBelow(3);
        entry.isBillable = anyBelow(3) != 0;
        entry.rateIsKnown = anyBelow(3) != 0;
        entries.push_back(entry);
    }
    return entries;
}

RC_GTEST_PROP(AnySort, PutsAnyTwoSessionsInOneOrderAndTheWholeListInThat, ())
{
    const LocalizedOrder order(*rc::gen::element<std::string>("en_US", "de_DE", "sv_SE"));
    const SessionTitle title = [](const TimeEntry& entry) -> std::string_view {
        return entry.title;
    };
    const std::vector<TimeEntry> entries = anyAlikeEntries();
    std::vector<const TimeEntry*> sessions;
    for (const TimeEntry& entry : entries) {
        sessions.push_back(&entry);
    }
    for (const SessionSortField field : allSessionSortFields) {
        const SessionSort sort{field, *rc::gen::arbitrary<bool>()};
        const auto list = sort.sorted(sessions, title, order);
        RC_ASSERT(std::ranges::is_permutation(list, sessions));
        for (std::size_t first = 0; first < list.size(); ++first) {
            for (std::size_t second = 0; second < list.size(); ++second) {
                // Total and transitive: each pair alone is in the order of the whole list.
                const auto pair = sort.sorted({list[second], list[first]}, title, order);
                RC_ASSERT((pair.front() == list[first]) == (first <= second));
            }
        }
    }
}

} // namespace
} // namespace KestryCore
