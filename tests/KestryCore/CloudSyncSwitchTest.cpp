#include "CloudSyncSwitch.h"

#include "CloudFixture.h"

namespace KestryCore {
namespace {

class CloudSyncSwitchTest : public StoreFixture {
protected:
    CloudSyncSwitchTest() { put(connected(sampleLedger())); }

    void put(const LedgerData& ledger)
    {
        open(ledger);
        make(CloudSyncEnvironment::development);
    }
    void make(std::optional<CloudSyncEnvironment> environment)
    {
        permission.emplace(store(), fields, environment, [this] { return uuid(++drawn); });
    }
    /// Turns it off; tells whether work that ran had to end.
    bool turnOffEndsRuns()
    {
        const Uuid before = permission->generation();
        permission->turnOff();
        return permission->generation() != before;
    }

    CloudSyncFields fields;
    unsigned drawn = 0;
    std::optional<CloudSyncSwitch> permission;
};

TEST_F(CloudSyncSwitchTest, IsOnForAConnectedLedgerOfThisEnvironmentThatIsOn)
{
    EXPECT_TRUE(permission->isEnabled());
    make(CloudSyncEnvironment::production);
    EXPECT_FALSE(permission->isEnabled());
    make(std::nullopt);
    EXPECT_FALSE(permission->isEnabled());
}

TEST_F(CloudSyncSwitchTest, IsOffForALedgerThatWasNeverConnectedOrIsOff)
{
    put(sampleLedger());
    EXPECT_FALSE(permission->isEnabled());
    LedgerData off = connected(sampleLedger());
    off.replication.edit().enabled = false;
    put(off);
    EXPECT_FALSE(permission->isEnabled());
}

TEST_F(CloudSyncSwitchTest, TurningOffEndsWhatRunsAndIsSaved)
{
    EXPECT_TRUE(turnOffEndsRuns());
    EXPECT_FALSE(permission->isEnabled());
    EXPECT_FALSE(readPrimary().replication->enabled);
    EXPECT_EQ(*fields.status, "iCloud sync is off");
}

TEST_F(CloudSyncSwitchTest, TurningOffKeepsAllThatIsKnownOfTheCloud)
{
    LedgerData full = Sample::connectedLedger();
    full.replication = Sample::fullState();
    full.replication.edit().enabled = true;
    put(full);
    LedgerSyncState expected = *ledger().replication;
    expected.enabled = false;
    permission->turnOff();
    EXPECT_EQ(*ledger().replication, expected);
}

TEST_F(CloudSyncSwitchTest, TurningOffALedgerThatWasNeverConnectedChangesNoFile)
{
    put(sampleLedger());
    const auto before = files.contents();
    EXPECT_TRUE(turnOffEndsRuns());
    EXPECT_EQ(files.contents(), before);
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(CloudSyncSwitchTest, WhatCannotBeSavedAsOffIsOffAllTheSame)
{
    corruptPrimary();
    EXPECT_TRUE(turnOffEndsRuns());
    EXPECT_TRUE(ledger().replication->enabled);
    EXPECT_FALSE(permission->isEnabled());
    EXPECT_EQ(*fields.status, "iCloud sync is off");
    EXPECT_NE(errorMessage(), "");
    permission->turnedOn();
    EXPECT_TRUE(permission->isEnabled());
}

TEST_F(CloudSyncSwitchTest, AnAccountThatChangedHoldsItOffUntilItIsTurnedOn)
{
    permission->suspendAccount();
    EXPECT_EQ(
        *fields.status, "iCloud account changed. Enable sync to verify your original account.");
    EXPECT_FALSE(ledger().replication->enabled);
    store().beginSync("account", "Desk", CloudSyncEnvironment::development);
    EXPECT_FALSE(permission->isEnabled());
    permission->turnedOn();
    EXPECT_TRUE(permission->isEnabled());
}

TEST_F(CloudSyncSwitchTest, EndingWhatRunsTurnsNothingOff)
{
    const Uuid before = permission->generation();
    permission->endRuns();
    EXPECT_NE(permission->generation(), before);
    EXPECT_TRUE(permission->isEnabled());
}

} // namespace
} // namespace KestryCore
