#include "SessionFilter.h"

#include <gtest/gtest.h>

#include "RecordIndex.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

/// One session on Catalogue for Harbour Books, and a month of ten hours around noon.
class FilteringSessions : public testing::Test {
protected:
    bool matches() const
    {
        return SessionFilter(RecordIndex(ledger), criteria, "en_US").matches(entry);
    }
    bool matchesMonth()
    {
        criteria.month = MonthInterval{Date{begin}, Date{end}};
        return matches();
    }
    bool matchesSearch(const std::string& search)
    {
        criteria.search = search;
        return matches();
    }

    const double begin = Sample::noon - 5 * Sample::hour;
    const double end = Sample::noon + 5 * Sample::hour;
    LedgerData ledger = Sample::ledger();
    TimeEntry entry = Sample::entry();
    SessionCriteria criteria;
};

TEST_F(FilteringSessions, WithoutCriteriaEverySessionMatches)
{
    EXPECT_TRUE(matches());
    entry.spans.clear();
    entry.projectID = Sample::projectID(77);
    EXPECT_TRUE(matches());
}

TEST_F(FilteringSessions, ASessionAcrossAMonthBoundaryMatchesBothMonths)
{
    entry.spans = {Sample::span(end - 60, end + 60)};
    EXPECT_TRUE(matchesMonth());
    entry.spans = {Sample::span(begin - 60, begin + 60)};
    EXPECT_TRUE(matchesMonth());
}

TEST_F(FilteringSessions, ASessionThatEndsAtTheStartOfAMonthDoesNotMatchIt)
{
    entry.spans = {Sample::span(begin - 60, begin)};
    EXPECT_FALSE(matchesMonth());
}

TEST_F(FilteringSessions, ASessionThatBeginsAtTheEndOfAMonthDoesNotMatchIt)
{
    entry.spans = {Sample::span(end, end + 60)};
    EXPECT_FALSE(matchesMonth());
}

TEST_F(FilteringSessions, ASessionLongerThanTheMonthMatches)
{
    entry.spans = {Sample::span(begin - 60, end + 60)};
    EXPECT_TRUE(matchesMonth());
}

TEST_F(FilteringSessions, OneSpanInsideTheMonthIsEnough)
{
    entry.spans = {Sample::span(begin - 60, begin - 30), Sample::span(begin + 30, begin + 31)};
    EXPECT_TRUE(matchesMonth());
}

TEST_F(FilteringSessions, TwoSpansAroundTheMonthDoNotMatchIt)
{
    entry.spans = {Sample::span(begin - 60, begin - 30), Sample::span(end + 30, end + 60)};
    EXPECT_FALSE(matchesMonth());
}

TEST_F(FilteringSessions, ASessionOfNoLengthMatchesNoMonth)
{
    entry.spans = {Sample::span(Sample::noon, Sample::noon)};
    EXPECT_FALSE(matchesMonth());
}

TEST_F(FilteringSessions, ASessionRecordedAsNoTimeMatchesNoMonthDespiteItsSpans)
{
    entry.recordedDuration = 0.0;
    EXPECT_FALSE(matchesMonth());
}

TEST_F(FilteringSessions, ASessionWithARecordedLengthAndNoSpansMatchesNoMonth)
{
    entry.spans.clear();
    entry.recordedDuration = 3600.0;
    EXPECT_FALSE(matchesMonth());
}

TEST_F(FilteringSessions, ARecordedLengthOverAnEmptySpanMatchesNoMonth)
{
    entry.spans = {Sample::span(Sample::noon, Sample::noon)};
    entry.recordedDuration = 3600.0;
    EXPECT_FALSE(matchesMonth());
}

TEST_F(FilteringSessions, OnlyTheSessionsOfTheWantedClientMatch)
{
    criteria.clientID = Sample::clientID();
    EXPECT_TRUE(matches());
    criteria.clientID = Sample::clientID(2);
    EXPECT_FALSE(matches());
}

TEST_F(FilteringSessions, ASessionWhoseProjectIsGoneMatchesNoClient)
{
    criteria.clientID = Sample::clientID();
    entry.projectID = Sample::projectID(77);
    EXPECT_FALSE(matches());
}

TEST_F(FilteringSessions, AProjectMatchesItsClientEvenWhenThatIsGone)
{
    ledger.clients.remove(Sample::clientID());
    criteria.clientID = Sample::clientID();
    EXPECT_TRUE(matches());
}

TEST_F(FilteringSessions, ASearchLooksInTitleProjectAndClient)
{
    EXPECT_TRUE(matchesSearch("proof"));
    EXPECT_TRUE(matchesSearch("CATALOG"));
    EXPECT_TRUE(matchesSearch("harbour books"));
    EXPECT_FALSE(matchesSearch("invoice"));
}

TEST_F(FilteringSessions, ASearchMayRunAcrossTheThreeNames)
{
    EXPECT_TRUE(matchesSearch("proofs cat"));
    EXPECT_TRUE(matchesSearch("s Catalogue H"));
    EXPECT_FALSE(matchesSearch("proofs harbour"));
    EXPECT_FALSE(matchesSearch("harbour books proofs"));
}

TEST_F(FilteringSessions, WhatIsMissingLeavesItsBlanksBetween)
{
    entry.title.clear();
    EXPECT_TRUE(matchesSearch(" catalogue"));
    entry.title = "Proofs";
    entry.projectID = Sample::projectID(77);
    EXPECT_TRUE(matchesSearch("proofs  "));
    EXPECT_FALSE(matchesSearch("proofs   "));
}

TEST_F(FilteringSessions, AMissingClientLeavesOneBlankAtTheEnd)
{
    ledger.clients.remove(Sample::clientID());
    EXPECT_TRUE(matchesSearch("catalogue "));
    EXPECT_FALSE(matchesSearch("catalogue  "));
}

TEST_F(FilteringSessions, ASearchIsUsedAsItStands)
{
    EXPECT_FALSE(matchesSearch(" proofs"));
    EXPECT_FALSE(matchesSearch("proofs  catalogue"));
    EXPECT_TRUE(matchesSearch(" "));
    EXPECT_FALSE(matchesSearch("  "));
}

TEST_F(FilteringSessions, ASearchTakesAnUntitledSessionAtItsEmptyTitle)
{
    entry.title.clear();
    ledger.projects.modify(
        Sample::projectID(), [](Project& project) { project.isClientDefault = true; });
    EXPECT_FALSE(matchesSearch("Session"));
    EXPECT_TRUE(matchesSearch("catalogue"));
}

TEST_F(FilteringSessions, AllCriteriaMustBeMet)
{
    criteria.clientID = Sample::clientID();
    criteria.search = "proofs";
    EXPECT_TRUE(matchesMonth());
    criteria.search = "invoice";
    EXPECT_FALSE(matches());
    criteria.search = "proofs";
    criteria.month->end = criteria.month->start;
    EXPECT_FALSE(matches());
}

} // namespace
} // namespace KestryCore
