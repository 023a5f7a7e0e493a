#include "GoneRecords.h"

#include <gtest/gtest.h>

#include "SampleLedger.h"

namespace KestryCore {
namespace {

using namespace Sample;

const std::string entryKey = record(synced(entry())).recordID;

/// A connected ledger from which a session was deleted.
class GoneRecordsTest : public testing::Test {
protected:
    GoneRecordsTest()
    {
        (void)observe([](LedgerData& data) { data.entries = {}; });
    }
    template <class Change>
    std::string observe(Change change)
    {
        const LedgerData before = ledger;
        change(ledger);
        return gone.observe(before, ledger).value_or("nothing");
    }
    static void bringBack(LedgerData& data) { data.entries = {entry()}; }

    LedgerData ledger = connectedLedger();
    GoneRecords gone;
};

TEST_F(GoneRecordsTest, WhatComesBackByItselfIsNamed)
{
    EXPECT_EQ(observe(bringBack), entryKey);
}

TEST_F(GoneRecordsTest, WhatIsMadeHereAnewMayComeBack)
{
    EXPECT_EQ(observe([](LedgerData& data) {
        bringBack(data);
        data.replication.edit().outbox[entryKey] = record(synced(entry()));
    }),
        "nothing");
}

TEST_F(GoneRecordsTest, WhatTheUserDecidedOnMayComeBack)
{
    const SyncConflict conflict{entryKey, deletion(entryKey), record(synced(entry()))};
    (void)observe([&](LedgerData& data) { data.replication.edit().conflicts = {conflict}; });
    EXPECT_EQ(observe([](LedgerData& data) { data.replication.edit().conflicts = {}; }), "nothing");
    EXPECT_EQ(observe(bringBack), "nothing");
}

TEST_F(GoneRecordsTest, AnOpenConflictAllowsNothing)
{
    const SyncConflict conflict{entryKey, deletion(entryKey), record(synced(entry()))};
    (void)observe([&](LedgerData& data) { data.replication.edit().conflicts = {conflict}; });
    EXPECT_EQ(observe(bringBack), entryKey);
}

TEST_F(GoneRecordsTest, ADeletionRetainedFromBeforeCountsToo)
{
    ledger.replication.edit().tombstones[entryKey] = deletion(entryKey);
    GoneRecords other;
    other.startFrom(ledger);
    const LedgerData before = ledger;
    ledger.replication.edit().tombstones = {};
    bringBack(ledger);
    EXPECT_EQ(other.observe(before, ledger), entryKey);
}

} // namespace
} // namespace KestryCore
