#include "SessionTitleSuggestions.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <set>

#include "ArbitraryTitle.h"
#include "SampleLedger.h"
#include "Text.h"
#include "TitleFolding.h"

namespace KestryCore::SessionTitleSuggestions {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int four = 4;

TimeEntry session(std::string title, double ended)
{
    TimeEntry entry = Sample::entry();
    entry.title = std::move(title);
    entry.spans = {Sample::span(ended - Sample::hour, ended)};
    return entry;
}

/// Sessions with these titles, each ended later than those before it.
RecordList<TimeEntry> oneAfterTheOther(const std::vector<std::string>& titles)
{
    RecordList<TimeEntry> entries;
    double ended = Sample::noon;
    for (const std::string& title : titles) {
        entries.append(session(title, ended += Sample::hour));
    }
    return entries;
}

/// The rule as it is told, for all sessions in a row.
std::vector<std::string> plainMatches(
    const std::string& prefix, const RecordList<TimeEntry>& entries, std::size_t limit)
{
    const std::string begin = foldedTitle(trimmed(prefix));
    std::vector<TimeEntry> sorted(entries.begin(), entries.end());
    std::ranges::stable_sort(sorted, [](const TimeEntry& left, const TimeEntry& right) {
        return left.endedAt() > right.endedAt();
    });
    std::set<std::string> seen;
    std::vector<std::string> result;
    for (const TimeEntry& entry : sorted) {
        const std::string folded = foldedTitle(trimmed(entry.title));
        if (!begin.empty() && result.size() < limit && folded != begin && folded.starts_with(begin)
            && seen.insert(folded).second) {
            result.emplace_back(trimmed(entry.title));
        }
    }
    return result;
}

TEST(TitleMatches, AreNoneForAPrefixOfBlanks)
{
    const auto entries = oneAfterTheOther({"Design review", ""});
    EXPECT_THAT(matches("", entries, four), IsEmpty());
    EXPECT_THAT(matches(" \t\n\u3000", entries, four), IsEmpty());
}

TEST(TitleMatches, AreNoneForALimitBelowOne)
{
    const auto entries = oneAfterTheOther({"Design review"});
    EXPECT_THAT(matches("des", entries, 0), IsEmpty());
    EXPECT_THAT(matches("des", entries, -1), IsEmpty());
}

TEST(TitleMatches, ShowTheLatestSpellingOfATitle)
{
    EXPECT_THAT(matches("des", oneAfterTheOther({"Design review", "design REVIEW"}), four),
        ElementsAre("design REVIEW"));
    EXPECT_THAT(matches("des", oneAfterTheOther({"Désign", "  Design  ", "x", "y"}), four),
        ElementsAre("Design"));
}

TEST(TitleMatches, ForgetCaseAndAccents)
{
    EXPECT_THAT(matches("café", oneAfterTheOther({"Cafe menu", "CAFÉ LOGO"}), four),
        ElementsAre("CAFÉ LOGO", "Cafe menu"));
    EXPECT_THAT(matches("STRASS", oneAfterTheOther({"Straße 7"}), four), ElementsAre("Straße 7"));
}

TEST(TitleMatches, LeaveOutATitleThatIsComplete)
{
    EXPECT_THAT(matches("Logo", oneAfterTheOther({"Logo", " LOGÓ "}), four), IsEmpty());
}

TEST(TitleMatches, AreTrimmedAndIgnoreBlanksAroundThePrefix)
{
    EXPECT_THAT(matches("  des ", oneAfterTheOther({"\t Design review \n"}), four),
        ElementsAre("Design review"));
}

TEST(TitleMatches, HaveNoUseForASessionWithoutATitle)
{
    EXPECT_THAT(matches("Catalogue", oneAfterTheOther({"", "   "}), four), IsEmpty());
}

TEST(TitleMatches, AreTheFourThatEndedLast)
{
    EXPECT_THAT(matches("d", oneAfterTheOther({"d1", "d2", "d3", "d4", "d5"}), four),
        ElementsAre("d5", "d4", "d3", "d2"));
}

TEST(TitleMatches, AreRankedByEndWhateverTheStoredOrder)
{
    const RecordList<TimeEntry> entries{
        session("d late", 300.0), session("d early", 100.0), session("d middle", 200.0)};
    EXPECT_THAT(matches("d", entries, four), ElementsAre("d late", "d middle", "d early"));
    EXPECT_THAT(matches("d", entries, 1), ElementsAre("d late"));
}

TEST(TitleMatches, PreferTheLowerPositionAmongEqualEnds)
{
    const RecordList<TimeEntry> entries{
        session("d1", 100.0), session("D1", 100.0), session("d2", 100.0), session("d3", 100.0)};
    EXPECT_THAT(matches("d", entries, 2), ElementsAre("d1", "d2"));
}

TEST(TitleMatches, CountASessionWithoutSpansAsTheOldest)
{
    TimeEntry timeless = Sample::entry();
    timeless.title = "d timeless";
    timeless.spans = {};
    const RecordList<TimeEntry> entries{timeless, session("d old", -1e9)};
    EXPECT_THAT(matches("d", entries, four), ElementsAre("d old", "d timeless"));
}

TEST(TitleMatches, ReachBackThroughThousandsOfSessions)
{
    std::vector<std::string> titles(3000, "Proofs");
    titles[7] = "Design review";
    EXPECT_THAT(matches("des", oneAfterTheOther(titles), four), ElementsAre("Design review"));
}

RC_GTEST_PROP(TitleMatches, AreThoseOfThePlainRule, ())
{
    RecordList<TimeEntry> entries;
    std::string title;
    for (const double ended : *rc::gen::container<std::vector<double>>(
             rc::gen::map(rc::gen::inRange(0, 6), [](int hours) { return hours * 3600.0; }))) {
        title = *arbitraryTitle();
        entries.append(session(title, ended));
    }
    const std::string prefix = *startOf(title);
    const auto limit = *rc::gen::inRange<int>(1, 6);
    RC_ASSERT(matches(prefix, entries, limit)
        == plainMatches(prefix, entries, static_cast<std::size_t>(limit)));
}

TEST(InlineSuffix, IsTheRestOfTheSuggestionInItsOwnSpelling)
{
    EXPECT_EQ(inlineSuffix("des", "Design review"), "ign review");
    EXPECT_EQ(inlineSuffix("DESIGN R", "Design réview"), "éview");
}

TEST(InlineSuffix, IsNoneWhereNothingIsLeft)
{
    EXPECT_EQ(inlineSuffix("Design review", "Design review"), std::nullopt);
    EXPECT_EQ(inlineSuffix("design réview", "Design Review"), std::nullopt);
    EXPECT_EQ(inlineSuffix("Design review!", "Design review"), std::nullopt);
}

TEST(InlineSuffix, IsNoneForBlanks)
{
    EXPECT_EQ(inlineSuffix("", "Design review"), std::nullopt);
    EXPECT_EQ(inlineSuffix("  ", "  Design review"), std::nullopt);
    EXPECT_EQ(inlineSuffix("\u3000\n", "Design review"), std::nullopt);
}

TEST(InlineSuffix, IsNoneForAnotherText)
{
    EXPECT_EQ(inlineSuffix("xyz", "Design review"), std::nullopt);
    EXPECT_EQ(inlineSuffix("review", "Design review"), std::nullopt);
    EXPECT_EQ(inlineSuffix("d", ""), std::nullopt);
}

TEST(InlineSuffix, TakesEveryBlankThatIsTyped)
{
    EXPECT_EQ(inlineSuffix("  des", "Design review"), std::nullopt);
    EXPECT_EQ(inlineSuffix("Design ", "Design review"), "review");
    EXPECT_EQ(inlineSuffix("Design  ", "Design review"), std::nullopt);
    EXPECT_EQ(inlineSuffix("Design ", "Designs"), std::nullopt);
}

TEST(InlineSuffix, LeavesNoAccentBehind)
{
    EXPECT_EQ(inlineSuffix("cafe", "Cafe\u0301 menu"), " menu");
    EXPECT_EQ(inlineSuffix("cafe", "Cafe\u0301"), std::nullopt);
    EXPECT_EQ(inlineSuffix("cafe\u0301", "CAFE menu"), " menu");
    EXPECT_EQ(inlineSuffix("viet", "Việt Nam"), " Nam");
}

TEST(InlineSuffix, FindsItsPlaceWhereFoldingChangesLengths)
{
    EXPECT_EQ(inlineSuffix("strass", "Straße 7"), "e 7");
    EXPECT_EQ(inlineSuffix("straß", "STRASSE 7"), "E 7");
    EXPECT_EQ(inlineSuffix("İ", "ilk"), "lk");
    EXPECT_EQ(inlineSuffix("\u212A", "Kestrel"), "estrel");
}

TEST(InlineSuffix, NeverCutsThroughACharacter)
{
    EXPECT_EQ(inlineSuffix("stras", "Straße 7"), std::nullopt);
    EXPECT_EQ(inlineSuffix("하", "한국"), std::nullopt);
    EXPECT_EQ(inlineSuffix("क", "किताब"), std::nullopt);
    EXPECT_EQ(inlineSuffix("\U0001F469", "\U0001F469\u200D\U0001F52C at work"), std::nullopt);
    EXPECT_EQ(inlineSuffix("a\r", "a\r\nb"), std::nullopt);
}

RC_GTEST_PROP(InlineSuffix, IsAnEndOfTheSuggestionWhoseStartIsWhatWasTyped, ())
{
    const std::string suggestion = *arbitraryTitle();
    const std::string typed = *startOf(suggestion);
    const auto suffix = inlineSuffix(typed, suggestion);
    if (suffix) {
        RC_ASSERT(!suffix->empty() && suggestion.ends_with(*suffix));
        const std::string start = suggestion.substr(0, suggestion.size() - suffix->size());
        RC_ASSERT(foldedTitle(start) == foldedTitle(typed));
    }
}

} // namespace
} // namespace KestryCore::SessionTitleSuggestions
