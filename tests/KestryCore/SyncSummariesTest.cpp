#include "SyncSummaries.h"

#include <gtest/gtest.h>

#include "SampleLedger.h"
#include "SyncRecords.h"

namespace KestryCore {
namespace {

using namespace Sample;

std::string summary(const SyncRecord& record)
{
    return SyncSummaries(ZoneCalendar("UTC", "en_US")).summary(record);
}

/// What the summary of the sample session ends with.
const std::string noonText = DateTimeText(ZoneCalendar("UTC", "en_US")).dateAndTime(Date{noon});

TEST(SyncSummaries, ADeletionIsDeletedWhateverItWas)
{
    EXPECT_EQ(summary(deletion("Client:7")), "Deleted");
}

TEST(SyncSummaries, WhatCannotBeReadIsUnavailable)
{
    SyncRecord record = Sample::record(client());
    record.payload = "{";
    EXPECT_EQ(summary(record), "Unavailable version");
    record.payload.reset();
    EXPECT_EQ(summary(record), "Unavailable version");
}

TEST(SyncSummaries, AClientIsItsNameAndRate)
{
    EXPECT_EQ(summary(record(client())), "Harbour Books · $150.00/hr");
}

TEST(SyncSummaries, AProjectWithNoKnownRateIsUnpriced)
{
    Project project = Sample::project();
    EXPECT_EQ(summary(record(project)), "Catalogue · $150.00/hr");
    project.rateIsKnown = false;
    EXPECT_EQ(summary(record(project)), "Catalogue · Unpriced");
}

TEST(SyncSummaries, ASavedSessionTellsLengthRateValueAndStart)
{
    TimeEntry entry = Sample::entry();
    entry.title = "Index";
    EXPECT_EQ(summary(record(synced(entry))), "Index · 1h 0m · $150.00/hr · $150.00 · " + noonText);
    entry.title = "";
    entry.recordedDuration = 1800;
    EXPECT_EQ(
        summary(record(synced(entry))), "Session · 0h 30m · $150.00/hr · $75.00 · " + noonText);
}

TEST(SyncSummaries, ASessionEarnsNothingUnlessBillableAtAKnownRate)
{
    TimeEntry entry = Sample::entry();
    entry.title = "Index";
    entry.isBillable = false;
    EXPECT_EQ(
        summary(record(synced(entry))), "Index · 1h 0m · $150.00/hr · Nonbillable · " + noonText);
    entry.isBillable = true;
    entry.rateIsKnown = false;
    EXPECT_EQ(summary(record(synced(entry))), "Index · 1h 0m · Unpriced · Unpriced · " + noonText);
}

TEST(SyncSummaries, ATimerCountsToItsLastCheckpoint)
{
    EXPECT_EQ(summary(record(synced(runningSession()))),
        "Index · 1h 10m · $150.00/hr · $175.00 · Running");
    ActiveSession paused = pausedSession();
    paused.title = "";
    EXPECT_EQ(summary(record(synced(paused))), "Session · 1h 0m · $150.00/hr · $150.00 · Paused");
}

TEST(SyncSummaries, AnythingElseIsASavedRecord)
{
    SyncRecord record = Sample::record(synced(entry()));
    record.payload = R"({"ownerDeviceID":"a","ownerName":"b"})";
    EXPECT_EQ(summary(record), "Saved record");
    record.recordID = "Invoice:7";
    EXPECT_EQ(summary(record), "Saved record");
}

} // namespace
} // namespace KestryCore
