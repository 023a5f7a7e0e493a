#include "FetchedRecords.h"

#include "Refusal.h"
#include "SyncFixture.h"

namespace KestryCore {
namespace {

/// A fetch that is made record by record and then applied.
class FetchedRecordsTest : public SyncFixture {
protected:
    void apply() { applyRemoteSync(ledger, fetched, "cursor", newUuid()); }

    FetchedRecords fetched;
    SyncRecord acme = remote(Sample::client());
};

TEST_F(FetchedRecordsTest, ARecordIsCheckedWhenItIsAdded)
{
    SyncRecord broken = acme;
    broken.revision = "7";
    fetched.add(acme, "etag");
    fetched.add(broken, "etag");
    ASSERT_EQ(fetched.size(), 2U);
    EXPECT_TRUE(fetched.items()[0].isSound);
    EXPECT_FALSE(fetched.items()[1].isSound);
}

TEST_F(FetchedRecordsTest, WhatIsNotValidIsToldWhenTheFetchIsApplied)
{
    const LedgerData before = ledger;
    SyncRecord broken = acme;
    broken.payload = "{}";
    fetched.add(acme, "etag");
    fetched.add(broken, "etag");
    EXPECT_EQ(refusalOf([&] { apply(); }), refusalOf([&] { validateRecord(broken); }));
    EXPECT_EQ(ledger, before);
}

TEST_F(FetchedRecordsTest, RecordsThatWereNotCheckedAreCheckedThen)
{
    SyncRecord broken = acme;
    broken.deviceID.clear();
    fetched = FetchedRecords({broken}, {});
    EXPECT_FALSE(fetched.items().front().isSound);
    EXPECT_EQ(refusalOf([&] { apply(); }), "Invalid sync record identity.");
}

TEST_F(FetchedRecordsTest, OfARecordThatComesTwiceTheLastCounts)
{
    fetched.add(acme, "old");
    const SyncRecord later = remote(Sample::client(), 0xFC);
    fetched.add(later, "new");
    apply();
    EXPECT_EQ(state().systemFields.at(acme.recordID), "new");
    EXPECT_EQ(state().baseRevisions.at(acme.recordID), later.revision);
}

} // namespace
} // namespace KestryCore
