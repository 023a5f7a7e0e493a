#include "RecordMembers.h"

#include <gtest/gtest.h>

#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "RecordJson.h"
#include "Refusal.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

using namespace Sample;

LedgerSyncState readState(const std::string& json)
{
    return *decodeLedger(R"({"clients":[],"projects":[],"entries":[],"replication":)" + json + '}')
                .replication;
}

std::string stateJson(const LedgerSyncState& state)
{
    LedgerData ledger;
    ledger.replication = state;
    const std::string document = encodeLedger(ledger);
    const std::string_view key = R"("replication":)";
    const std::size_t begin = document.find(key) + key.size();
    return document.substr(begin, document.size() - 1 - begin);
}

constexpr const char* shortest = R"({"deviceID":"a","deviceName":"b","accountID":"c"})";

TEST(SyncStateReading, AStateOfNamesAloneIsInDevelopmentEnabledAndEmpty)
{
    const LedgerSyncState state = readState(shortest);
    LedgerSyncState expected;
    expected.deviceID = "a";
    expected.deviceName = "b";
    expected.accountID = "c";
    expected.environment = CloudSyncEnvironment::development;
    expected.enabled = true;
    EXPECT_EQ(state, expected);
}

TEST(SyncStateReading, AnUnknownEnvironmentIsRefused)
{
    for (const char* word : {"\"Staging\"", "\"production\"", "\"\""}) {
        EXPECT_EQ(refusalOf([&] {
            (void)decodeLedger(recordForm("state").document("environment", word));
        }),
            "The data is malformed: replication.environment is an unknown environment.");
    }
}

TEST(SyncStateReading, MapsWithAWrongValueAreRefused)
{
    for (const std::string_view key :
        {"systemFields", "baseRevisions", "outbox", "remoteSessions", "staged", "tombstones"}) {
        for (const std::string_view wrong : {R"({"k":7})", R"({"k":null})", R"({"k":[]})"}) {
            EXPECT_NE(
                refusalOf([&] { (void)decodeLedger(recordForm("state").document(key, wrong)); }),
                accepted)
                << key << ' ' << wrong;
        }
    }
}

TEST(SyncStateReading, AMapWithAKeyTwiceIsRefused)
{
    EXPECT_EQ(refusalOf([&] {
        (void)decodeLedger(
            recordForm("state").document("baseRevisions", R"({"k":"1","\u006b":"1"})"));
    }),
        "The data is malformed: replication.baseRevisions gives the key \"k\" twice.");
}

TEST(SyncStateReading, AMapOfManyRecordsIsReadWhole)
{
    std::string map;
    for (int number = 0; number < 100; ++number) {
        map += (map.empty() ? "{\"" : ",\"") + std::to_string(number) + "\":\"x\"";
    }
    const std::string json = recordForm("state").object("baseRevisions", map + '}');
    EXPECT_EQ(readState(json).baseRevisions.size(), 100U);
}

TEST(SyncStateWriting, EveryKeyIsWrittenButAnAbsentCursor)
{
    const std::string json = stateJson(state());
    for (const JsonField& field : recordForm("state").fields) {
        const bool isWritten = json.find('"' + std::string(field.key) + "\":") != std::string::npos;
        EXPECT_EQ(isWritten, field.key != "changeToken") << field.key;
    }
}

TEST(SyncStateWriting, EnvironmentsAreWrittenAsTheWordsShown)
{
    EXPECT_NE(stateJson(state()).find(R"("environment":"Development")"), std::string::npos);
    EXPECT_NE(stateJson(fullState()).find(R"("environment":"Production")"), std::string::npos);
}

TEST(SyncStateWriting, ADeletionHasNoPayload)
{
    EXPECT_EQ(canonicalJson(deletion("Client:7")).find("payload"), std::string::npos);
}

TEST(SyncStateWriting, BytesAreBase64)
{
    EXPECT_NE(stateJson(fullState()).find(R"("changeToken":"AP8vY3Vyc29y")"), std::string::npos);
}

TEST(SyncStateWriting, AFullStateReadsBackEqual)
{
    EXPECT_EQ(readState(stateJson(fullState())), fullState());
}

TEST(SyncedSessionWriting, OnlyTheHalfThatIsSetIsWritten)
{
    EXPECT_EQ(canonicalJson(synced(pausedSession())).find("\"entry\""), std::string::npos);
    EXPECT_EQ(canonicalJson(synced(entry())).find("\"active\""), std::string::npos);
}

} // namespace
} // namespace KestryCore
