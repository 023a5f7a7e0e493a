// A ledger in the form in which it is written has a reader of its own. It must read what the
// reader of any JSON reads, and leave alone whatever it would not itself write.

#include "CanonicalLedger.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "ArbitraryLedger.h"
#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerGenerator.h"
#include "LedgerValidation.h"
#include "Refusal.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

std::optional<LedgerData> readCanonically(const std::string& json)
{
    const std::size_t end = replicationOffset(json);
    return readCanonicalLedger(std::make_shared<const std::string>(json.substr(0, end)),
        std::string_view(json).substr(end));
}

/// A blank before the document is good JSON that is never written.
LedgerData readPlainly(const std::string& json)
{
    return decodeLedger(" " + json);
}

std::string replaced(std::string text, std::string_view old, std::string_view replacement)
{
    const std::size_t position = text.find(old);
    EXPECT_NE(position, std::string::npos) << old;
    return text.replace(position, old.size(), replacement);
}

/// A ledger document with one client and one session, whose title and first span's start are the
/// given JSON values.
std::string documentWith(const std::string& title, const std::string& start)
{
    const std::string id = R"("11111111-1111-1111-1111-1111111111AF")";
    return R"({"clients":[{"id":)" + id
        + R"(,"name":"Acme","hourlyRateCents":15000,"colorHex":"A2A5AA","rateIsKnown":true,)"
        + R"("projectsEnabled":true}],"projects":[],"entries":[{"id":)" + id + R"(,"projectID":)"
        + id + R"(,"title":)" + title + R"(,"hourlyRateCents":0,"spans":[{"start":)" + start
        + R"(,"end":785000000.25}],"isBillable":true,"rateIsKnown":false}]})";
}

void expectReadAlike(const std::string& json, const LedgerData& ledger)
{
    EXPECT_TRUE(ledger == readPlainly(json)) << json;
    EXPECT_EQ(encodeLedger(ledger), encodeLedger(rebuilt(ledger))) << json;
}

void expectTaken(const std::string& json)
{
    const std::optional<LedgerData> ledger = readCanonically(json);
    ASSERT_TRUE(ledger) << json;
    expectReadAlike(json, *ledger);
    EXPECT_EQ(encodeLedger(*ledger), json);
}

void expectLeft(const std::string& json)
{
    EXPECT_FALSE(readCanonically(json)) << json;
    const std::string verdict = refusalOf([&] { (void)decodeLedger(json); });
    EXPECT_EQ(verdict, refusalOf([&] { (void)readPlainly(json); })) << json;
}

RC_GTEST_PROP(CanonicalLedger, IsReadAsThePlainReaderReadsIt, ())
{
    const LedgerData ledger = *arbitraryLedger();
    const std::string json = encodeLedger(ledger);
    const std::optional<LedgerData> read = readCanonically(json);
    RC_ASSERT(read.has_value());
    RC_ASSERT(*read == ledger);
    RC_ASSERT(readPlainly(json) == ledger);
    RC_ASSERT(encodeLedger(*read) == json);
}

RC_GTEST_PROP(CanonicalLedger, AnyOtherTextThatItTakesReadsAlikeToo, ())
{
    std::string json = encodeLedger(*arbitraryLedger());
    const auto changes = *rc::gen::inRange(1, 4);
    for (int change = 0; change < changes; ++change) {
        const auto position = *rc::gen::inRange<std::size_t>(0, json.size());
        const auto letter = *rc::gen::elementOf(std::string("0159.-eE\"\\/u{}[],: atfnx\x01\xff"));
        if (*rc::gen::arbitrary<bool>()) {
            json[position] = letter;
        } else {
            json.insert(position, 1, letter);
        }
    }
    if (const std::optional<LedgerData> read = readCanonically(json)) {
        RC_ASSERT(*read == readPlainly(json));
        RC_ASSERT(encodeLedger(*read) == encodeLedger(rebuilt(*read)));
    }
}

TEST(CanonicalLedger, IsTakenInBlocksThatNeedNoFurtherEncoding)
{
    for (const std::size_t sessions : {0, 1, 255, 256, 257, 700}) {
        const std::string json = encodeLedger(generateLedger({.sessions = sessions}));
        expectTaken(json);
        EXPECT_TRUE(readCanonically(json)->entries.empty()
            || readCanonically(json)->entries.block(0).remembered.json);
    }
}

TEST(CanonicalLedger, TakesNumbersInTheirShortestForm)
{
    for (const char* number : {"0", "7", "-978307200", "785000000", "785000000.25",
             "785000000.1234567", "0.5", "0.0001", "123456789012345", "1234567890123456",
             "99999999999999.5", "1e+16", "1e-05", "5e-324", "-0.25", "1.7976931348623157e+308"}) {
        expectTaken(documentWith("\"\"", number));
    }
}

TEST(CanonicalLedger, LeavesNumbersInOtherForms)
{
    for (const char* number : {"-0", "0.50", "1.0", "785000000.250", "7.85e8", "1e5", "1E+16",
             "0.00001", "10000000000000000", "0.1000000000000000055", "785000000.12345678901", "01",
             "1.", ".5", "+1", "-", "inf", "nan", "-inf", "infinity", "1e999", "0x10", "null",
             "true", "\"1\"", ""}) {
        expectLeft(documentWith("\"\"", number));
    }
}

TEST(CanonicalLedger, TakesTextsWithTheEscapesThatAreWritten)
{
    for (const char* text : {R"("")", R"("a")", R"("\"\\\/\b\f\n\r\t")", R"("\u0000\u001f")",
             "\"Ünïcödé 🕰\"", "\"\x7f\""}) {
        expectTaken(documentWith(text, "0"));
    }
}

TEST(CanonicalLedger, LeavesTextsWithOtherEscapesOrNone)
{
    for (const char* text : {R"("\u001F")", R"("\u000a")", R"("\u0041")", R"("\u00e9")",
             R"("\ud83d\ude00")", R"("\ud83d")", R"("/")", R"("\x")", R"("\u00)", R"("\)", R"(")",
             "\"\n\"", "\"\xff\"", "\"\xed\xa0\x80\"", "7", "null", "[]"}) {
        expectLeft(documentWith(text, "0"));
    }
}

TEST(CanonicalLedger, LeavesDocumentsThatAreNotJustAsWritten)
{
    const std::string json = documentWith("\"Title\"", "0");
    expectTaken(json);
    expectLeft(json + "\n");
    expectLeft(json + "}");
    expectLeft(" " + json);
    EXPECT_FALSE(readCanonically("\xEF\xBB\xBF" + json));
    expectLeft("");
    expectLeft(replaced(json, ",\"projects\":[]", ""));
    expectLeft(replaced(json, "\"projects\":[]", "\"projects\":[,]"));
    expectLeft(replaced(json, "\"projects\":[]", "\"projects\": []"));
    expectLeft(replaced(json, "}]}", ",}]}"));
    expectLeft(replaced(json, "}]}", "},]}"));
    expectLeft(replaced(json, "1AF\"", "1Af\""));
    expectLeft(replaced(json, "1AF\"", "1A\""));
    expectLeft(replaced(json, "-1111-", "_1111-"));
    expectLeft(replaced(json, "15000", "15000.0"));
    expectLeft(replaced(json, "15000", "-0"));
    expectLeft(replaced(json, "15000", "9223372036854775808"));
    expectLeft(replaced(json, "\"isBillable\":true,", ""));
    expectLeft(replaced(json, "\"isBillable\":true", "\"isBillable\":null"));
    expectLeft(replaced(json, "\"isBillable\":true", "\"isBillable\":truth"));
    expectLeft(replaced(json, "\"rateIsKnown\":false", "\"rateIsKnown\":false,\"new\":1"));
    expectLeft(replaced(json, "\"rateIsKnown\":false", "\"rateIsKnown\":false,\"sourceID\":null"));
    expectLeft(replaced(json, "\"spans\":[", "\"spans\":[],\"spans\":["));
    expectLeft(replaced(json, "\"projectsEnabled\"", "\"logoData\":\"AA==\",\"projectsEnabled\""));
    expectLeft(replaced(json, "\"projectsEnabled\"", "\"logoData\":\"%\",\"projectsEnabled\""));
}

TEST(CanonicalLedger, LeavesWhateverIsCutShort)
{
    LedgerData ledger = generateLedger({.sessions = 2, .clients = 1, .projects = 1});
    ledger.active = Sample::runningSession();
    const std::string json = encodeLedger(ledger);
    for (std::size_t length = 0; length < json.size(); ++length) {
        expectLeft(json.substr(0, length));
    }
}

TEST(CanonicalLedger, LeavesATextThatIsCutShortWithinAnEscape)
{
    const std::string json = documentWith(R"("\u001f")", "0");
    const std::size_t escape = json.find("\\u001f");
    for (std::size_t length = escape; length <= escape + 6; ++length) {
        expectLeft(json.substr(0, length));
    }
}

TEST(CanonicalLedger, TakesSessionsOfAnyNumberOfIntervals)
{
    LedgerData ledger = Sample::ledger();
    for (int count = 0; count < 30; ++count) {
        expectTaken(encodeLedger(ledger));
        ledger.entries.modify(Sample::sessionID(), [](TimeEntry& entry) {
            entry.spans.push_back(Sample::span(Sample::noon, Sample::noon + 0.5));
        });
    }
}

TEST(CanonicalLedger, TheRecordsDoNotKeepTheBytesOfTheReplicationState)
{
    const std::string json = encodeLedger(Sample::connectedLedger());
    const LedgerDocument document = readLedgerDocument(json);
    ASSERT_TRUE(document.bytes);
    EXPECT_EQ(document.bytes->text(), json);
    ASSERT_EQ(document.bytes->views().size(), 2U);
    EXPECT_TRUE(document.bytes->views().back().starts_with(",\"replication\":{"));
    EXPECT_EQ(document.ledger, readPlainly(json));
}

TEST(CanonicalLedger, ATextThatLooksLikeTheReplicationStateIsNone)
{
    expectTaken(documentWith(R"("a\",\"replication\":{}")", "0"));
    const std::string json = documentWith("\"Title\"", "0");
    expectLeft(replaced(json, R"({"clients")", R"({"x":{"a":1,"replication":{}},"clients")"));
    expectLeft(replaced(json, R"("entries")", R"("x":1,"replication":{},"entries")"));
}

TEST(CanonicalLedger, NestsItsReplicationStateNoDeeperThanAnyDocument)
{
    const std::string head = R"({"clients":[],"projects":[],"entries":[],"replication":)"
                             R"({"deviceID":"d","deviceName":"n","accountID":"a","new":)";
    const auto nested = [&](std::size_t depth) {
        return head + std::string(depth, '[') + std::string(depth, ']') + "}}";
    };
    for (std::size_t depth = 120; depth < 132; ++depth) {
        const bool isRead = refusalOf([&] { (void)readPlainly(nested(depth)); }) == accepted;
        EXPECT_EQ(readCanonically(nested(depth)).has_value(), isRead) << depth;
    }
}

} // namespace
} // namespace KestryCore
