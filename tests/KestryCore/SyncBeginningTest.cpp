#include "SyncBeginning.h"

#include <gtest/gtest.h>

#include "LedgerGenerator.h"
#include "Refusal.h"
#include "SampleLedger.h"
#include "SyncConnection.h"
#include "SyncRecords.h"

namespace KestryCore {
namespace {

constexpr auto development = CloudSyncEnvironment::development;

/// A ledger of several parts, with a session in progress; new identifiers count from 1.
class SyncBeginningTest : public testing::Test {
protected:
    SyncBeginningTest()
    {
        ledger.active = Sample::runningSession();
        ledger.active->projectID = ledger.projects.front().id;
    }

    [[nodiscard]] SyncBeginning prepared()
    {
        return SyncBeginning(ledger, "account", "Desk", development, newUuid);
    }
    static int carryOut(SyncBeginning& beginning)
    {
        int parts = 0;
        for (; !beginning.isComplete(); ++parts) {
            beginning.goOn();
        }
        return parts;
    }
    void expectAllInTheOutbox(const LedgerSyncState& state) const
    {
        const auto payloads = recordPayloads(ledger, state.deviceID, "Desk");
        ASSERT_EQ(state.outbox.size(), payloads.size());
        for (const auto& [key, record] : state.outbox) {
            EXPECT_EQ(record,
                (SyncRecord{key, record.revision, state.deviceID, payloads.at(key), false}));
        }
    }

    LedgerData ledger = generateLedger({.sessions = 2'500});
    unsigned uuids = 0;
    UuidSource newUuid = [this] { return Sample::id(++uuids); };
};

TEST_F(SyncBeginningTest, AllRecordsEnterTheOutboxInParts)
{
    SyncBeginning beginning = prepared();
    EXPECT_EQ(carryOut(beginning), 3);
    expectAllInTheOutbox(*beginning.state());
    EXPECT_EQ(uuids, beginning.state()->outbox.size() + 1); // a revision each, and the device
}

TEST_F(SyncBeginningTest, ABlankLedgerIsOnePartWithNothingToDeliver)
{
    ledger = LedgerData{};
    SyncBeginning beginning = prepared();
    EXPECT_EQ(carryOut(beginning), 1);
    EXPECT_TRUE(beginning.state()->outbox.empty());
}

TEST_F(SyncBeginningTest, WhatWasMadeIsWhatTheLedgerIsConnectedWith)
{
    SyncBeginning beginning = prepared();
    carryOut(beginning);
    beginSync(ledger, beginning, newUuid);
    EXPECT_TRUE(ledger.replication.isSameAs(beginning.state()));
}

TEST_F(SyncBeginningTest, ALedgerThatHasChangedSinceIsConnectedAsItIs)
{
    SyncBeginning beginning = prepared();
    carryOut(beginning);
    ledger.entries.remove(ledger.entries.front().id);
    ledger.active->title = "Changed";
    EXPECT_FALSE(beginning.isOf(ledger));
    beginSync(ledger, beginning, newUuid);
    expectAllInTheOutbox(*ledger.replication);
}

TEST_F(SyncBeginningTest, WhatIsNotCompleteIsOfNoLedger)
{
    SyncBeginning beginning = prepared();
    beginning.goOn();
    EXPECT_FALSE(beginning.isOf(ledger));
    beginSync(ledger, beginning, newUuid);
    expectAllInTheOutbox(*ledger.replication);
}

TEST_F(SyncBeginningTest, ALedgerThatWasConnectedMeanwhileKeepsItsState)
{
    SyncBeginning beginning = prepared();
    carryOut(beginning);
    beginSync(ledger, "account", "Laptop", development, newUuid);
    const LedgerData expected = ledger;
    beginSync(ledger, beginning, newUuid);
    EXPECT_EQ(ledger, expected);
}

TEST_F(SyncBeginningTest, ARecordThatCannotBeReplicatedIsRefused)
{
    ledger.active->title = std::string(maximumPayloadBytes, 'x');
    SyncBeginning beginning = prepared();
    EXPECT_EQ(refusalOf([&] { carryOut(beginning); }), "Missing or oversized sync record payload.");
}

TEST_F(SyncBeginningTest, AnAccountAndADeviceMustBeNamed)
{
    const auto begin = [&](const char* account, const char* device) {
        return refusalOf([&] { SyncBeginning(ledger, account, device, development, newUuid); });
    };
    EXPECT_EQ(begin("", "Desk"), "Sync needs an account and device name.");
    EXPECT_EQ(begin("account", " \n"), "Sync needs an account and device name.");
    EXPECT_EQ(begin(" ", "Desk"), accepted);
}

} // namespace
} // namespace KestryCore
