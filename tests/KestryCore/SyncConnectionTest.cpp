#include "SyncConnection.h"

#include <gtest/gtest.h>

#include "LedgerCoding.h"
#include "Refusal.h"
#include "SampleLedger.h"
#include "SyncRecords.h"

namespace KestryCore {
namespace {

using namespace Sample;

constexpr auto development = CloudSyncEnvironment::development;
constexpr auto production = CloudSyncEnvironment::production;

/// A ledger that is to be connected; new identifiers count from 1.
class SyncConnection : public testing::Test {
protected:
    void begin(const std::string& accountID = "account", const std::string& deviceName = "studio",
        CloudSyncEnvironment environment = development)
    {
        beginSync(ledger, accountID, deviceName, environment, [this] { return id(++uuids); });
    }
    [[nodiscard]] const LedgerSyncState& state() const { return *ledger.replication; }

    LedgerData ledger = runningLedger();
    unsigned uuids = 0;
};

TEST_F(SyncConnection, ANewStateHoldsTheNamesAsGivenAndAFreshDevice)
{
    begin(" account ", " studio\n", production);
    LedgerSyncState expected;
    expected.deviceID = id(1).text();
    expected.deviceName = " studio\n";
    expected.accountID = " account ";
    expected.environment = production;
    expected.outbox = state().outbox;
    EXPECT_EQ(state(), expected);
    EXPECT_TRUE(state().enabled);
}

TEST_F(SyncConnection, AllRecordsEnterTheOutboxEachWithAFreshRevision)
{
    begin();
    const auto payloads = recordPayloads(ledger, id(1).text(), "studio");
    ASSERT_EQ(state().outbox.size(), 4U);
    unsigned revision = 1;
    for (const auto& [key, record] : state().outbox) {
        EXPECT_EQ(record,
            (SyncRecord{key, id(++revision).text(), id(1).text(), payloads.at(key), false}));
    }
}

TEST_F(SyncConnection, ABlankLedgerIsConnectedWithNothingToDeliver)
{
    ledger = LedgerData{};
    begin();
    EXPECT_TRUE(state().outbox.empty());
}

TEST_F(SyncConnection, BeginningAgainTurnsReplicationOnAndDoesNothingElse)
{
    begin();
    ledger.replication.edit().enabled = false;
    ledger.replication.edit().outbox.clear();
    LedgerData expected = ledger;
    expected.replication.edit().enabled = true;
    uuids = 0;
    begin("account", "another name");
    EXPECT_EQ(ledger, expected);
    EXPECT_EQ(uuids, 0U);
}

TEST_F(SyncConnection, AnotherAccountIsRefused)
{
    begin();
    ledger.replication.edit().enabled = false;
    EXPECT_EQ(refusalOf([&] { begin("another"); }),
        "This ledger belongs to another iCloud account. Switch back before syncing; your local "
        "data has been preserved.");
    EXPECT_FALSE(state().enabled);
}

TEST_F(SyncConnection, AnAccountAndADeviceMustBeNamed)
{
    constexpr const char* message = "Sync needs an account and device name.";
    EXPECT_EQ(refusalOf([&] { begin(""); }), message);
    EXPECT_EQ(refusalOf([&] { begin("account", ""); }), message);
    EXPECT_EQ(refusalOf([&] { begin("account", " \t\r\n\u00A0\u2028"); }), message);
    EXPECT_EQ(refusalOf([&] { begin(" "); }), accepted);
}

TEST_F(SyncConnection, AnotherEnvironmentIsRefusedInBothNames)
{
    ledger = connectedLedger();
    EXPECT_EQ(refusalOf([&] { validateSyncEnvironment(ledger, production); }),
        "iCloud sync is paused because this ledger uses the Development environment. Your "
        "sessions and sync history are preserved. Use the previous Kestry build to sync, or "
        "contact support to migrate to Production.");
    ledger.replication.edit().environment = production;
    EXPECT_EQ(refusalOf([&] { validateSyncEnvironment(ledger, development); }),
        "iCloud sync is paused because this ledger uses the Production environment. Your "
        "sessions and sync history are preserved. Use the previous Kestry build to sync, or "
        "contact support to migrate to Development.");
    EXPECT_EQ(refusalOf([&] { validateSyncEnvironment(ledger, production); }), accepted);
}

TEST_F(SyncConnection, ALedgerThatWasNeverConnectedFitsAnyEnvironment)
{
    EXPECT_EQ(refusalOf([&] { validateSyncEnvironment(ledger, production); }), accepted);
}

TEST_F(SyncConnection, TheEnvironmentIsLookedAtFirstThenTheNamesThenTheAccount)
{
    ledger = connectedLedger();
    EXPECT_EQ(refusalOf([&] { begin("", "", production); }).substr(0, 21), "iCloud sync is paused");
    EXPECT_EQ(refusalOf([&] { begin("another", " "); }), "Sync needs an account and device name.");
}

TEST_F(SyncConnection, EnablingSetsTheFlagAlone)
{
    ledger = connectedLedger();
    setSyncEnabled(ledger, false);
    EXPECT_FALSE(state().enabled);
    setSyncEnabled(ledger, true);
    EXPECT_EQ(ledger, connectedLedger());
}

TEST_F(SyncConnection, WhatWasNeverConnectedCannotBeEnabled)
{
    EXPECT_EQ(refusalOf([&] { setSyncEnabled(ledger, false); }),
        "Connect your iCloud account before enabling sync.");
}

} // namespace
} // namespace KestryCore
