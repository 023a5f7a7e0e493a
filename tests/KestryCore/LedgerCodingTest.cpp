#include "LedgerCoding.h"
#include "LedgerDocument.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "Base64.h"
#include "LogoImages.h"
#include "RecordJson.h"
#include "Refusal.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

using namespace Sample;

constexpr const char* badLogo =
    "Client logos must be valid PNG images up to 256 pixels and 256 KB.";
constexpr const char* emptyLedger = R"({"clients":[],"projects":[],"entries":[]})";

std::string verdict(const std::string& json)
{
    return refusalOf([&] { (void)decodeLedger(json); });
}

/// The only record of a kind in a ledger that differs from the usual in one key.
Client readClient(std::string_view key = {}, std::string_view value = {})
{
    return decodeLedger(recordForm("client").document(key, value)).clients.front();
}

Project readProject(std::string_view key, std::string_view value)
{
    return decodeLedger(recordForm("project").document(key, value)).projects.front();
}

TimeEntry readEntry(std::string_view key, std::string_view value)
{
    return decodeLedger(recordForm("entry").document(key, value)).entries.front();
}

ActiveSession readSession(std::string_view key, std::string_view value)
{
    return *decodeLedger(recordForm("session").document(key, value)).active;
}

// Reading

TEST(LedgerReading, ThreeEmptyArraysAreAnEmptyLedger)
{
    EXPECT_EQ(decodeLedger(emptyLedger), LedgerData{});
}

TEST(LedgerReading, ADocumentWithoutEntriesIsRefused)
{
    EXPECT_EQ(verdict(R"({"clients":[],"projects":[]})"),
        "The data is malformed: the document has no \"entries\".");
}

TEST(LedgerReading, ADocumentThatIsNoObjectIsRefused)
{
    for (const char* json : {"[]", "7", "null", "\"ledger\"", "true"}) {
        EXPECT_EQ(verdict(json), "The data is malformed: the document isn't an object.") << json;
    }
}

TEST(LedgerReading, AClientWithoutItsOptionalKeysHasAKnownRateProjectsAndNoLogo)
{
    EXPECT_TRUE(readClient("rateIsKnown").rateIsKnown);
    EXPECT_TRUE(readClient("projectsEnabled").projectsEnabled);
    EXPECT_EQ(readClient("logoData").logoData, std::nullopt);
}

TEST(LedgerReading, AProjectWithoutItsOptionalKeysHasAKnownRateAndIsNoDefault)
{
    EXPECT_TRUE(readProject("rateIsKnown", "").rateIsKnown);
    EXPECT_FALSE(readProject("isClientDefault", "").isClientDefault);
}

TEST(LedgerReading, AnEntryWithoutItsOptionalKeysIsBillableAtAKnownRateAndNotImported)
{
    EXPECT_TRUE(readEntry("isBillable", "").isBillable);
    EXPECT_TRUE(readEntry("rateIsKnown", "").rateIsKnown);
    EXPECT_EQ(readEntry("recordedDuration", "").recordedDuration, std::nullopt);
    EXPECT_EQ(readEntry("sourceID", "").sourceID, std::nullopt);
}

TEST(LedgerReading, ASessionWithoutItsOptionalKeysIsPausedBillableAndAtAKnownRate)
{
    EXPECT_TRUE(readSession("runningSince", "").isPaused());
    EXPECT_TRUE(readSession("isBillable", "").isBillable);
    EXPECT_TRUE(readSession("rateIsKnown", "").rateIsKnown);
    EXPECT_EQ(readSession("sourceID", "").sourceID, std::nullopt);
}

TEST(LedgerReading, IdentifiersAreReadInEitherCaseAndComparedAsValues)
{
    EXPECT_EQ(readClient("id", R"("1b4e28ba-2fa1-11d2-883f-0016d3cca427")").id,
        readClient("id", R"("1B4E28BA-2FA1-11D2-883F-0016D3CCA427")").id);
}

TEST(LedgerReading, AWholeDoubleIsAnAmountOfCents)
{
    EXPECT_EQ(readClient("hourlyRateCents", "15000.0").hourlyRateCents, 15'000);
    EXPECT_EQ(readClient("hourlyRateCents", "1.5e4").hourlyRateCents, 15'000);
}

TEST(LedgerReading, UnknownKeysAreDropped)
{
    const std::string known = recordForm("ledger").document();
    std::string json = known;
    json.insert(1, R"("version":[3,{"a":null}],)");
    json.insert(json.find("{\"id\"") + 1, R"("notes":{"id":7},)");
    EXPECT_EQ(encodeLedger(decodeLedger(json)), encodeLedger(decodeLedger(known)));
}

TEST(LedgerReading, KeysAreReadInAnyOrder)
{
    for (RecordJson form : recordForms()) {
        const LedgerData inOrder = decodeLedger(form.document());
        std::ranges::reverse(form.fields);
        EXPECT_EQ(decodeLedger(form.document()), inOrder) << form.kind;
    }
}

TEST(LedgerReading, EscapedKeysAreReadInEveryRecord)
{
    for (const RecordJson& form : recordForms()) {
        std::string json = form.object();
        json.replace(1, 2,
            "\"\\u00" + std::string(json[2] >= 'p' ? "7" : "6")
                + "0123456789abcdef"[json[2] & 0x0F]);
        EXPECT_EQ(decodeLedger(form.before + json + form.after), decodeLedger(form.document()))
            << json;
    }
}

TEST(LedgerReading, EscapedAndPlainSolidusAreTheSame)
{
    EXPECT_EQ(readClient("name", R"("a\/b")").name, readClient("name", R"("a/b")").name);
}

TEST(LedgerReading, EveryKeyOfAWrongTypeIsRefusedByName)
{
    for (const RecordJson& form : recordForms()) {
        for (const JsonField& field : form.fields) {
            for (const std::string_view wrong : wrongValues(field.form)) {
                const std::string complaint = verdict(form.document(field.key, wrong));
                EXPECT_TRUE(complaint.starts_with("The data is malformed: "))
                    << form.kind << '.' << field.key << ' ' << wrong << ": " << complaint;
                EXPECT_NE(complaint.find(field.key), std::string::npos) << complaint;
            }
        }
    }
}

TEST(LedgerReading, EveryRequiredKeyMustBeThere)
{
    for (const RecordJson& form : recordForms()) {
        for (const JsonField& field : form.fields) {
            const std::string complaint = verdict(form.document(field.key));
            if (field.presence == Presence::optional) {
                EXPECT_EQ(complaint, accepted) << form.kind << '.' << field.key;
            } else {
                EXPECT_TRUE(complaint.ends_with(" has no \"" + std::string(field.key) + "\"."))
                    << form.kind << '.' << field.key << ": " << complaint;
            }
        }
    }
}

TEST(LedgerReading, NullIsRefusedForARequiredKeyAndCountsAsAbsentForAnOptionalOne)
{
    for (const RecordJson& form : recordForms()) {
        for (const JsonField& field : form.fields) {
            const std::string json = form.document(field.key, "null");
            if (field.presence == Presence::required) {
                EXPECT_NE(verdict(json), accepted) << form.kind << '.' << field.key;
            } else {
                EXPECT_EQ(decodeLedger(json), decodeLedger(form.document(field.key)))
                    << form.kind << '.' << field.key;
            }
        }
    }
}

TEST(LedgerReading, AKeyGivenTwiceIsRefusedInEveryRecord)
{
    for (const RecordJson& form : recordForms()) {
        std::string json = form.object();
        const JsonField& first = form.fields.front();
        json.insert(1, '"' + std::string(first.key) + "\":" + first.value + ',');
        const std::string complaint = verdict(form.before + json + form.after);
        EXPECT_TRUE(complaint.ends_with("gives the key \"" + std::string(first.key) + "\" twice."))
            << form.kind << ": " << complaint;
    }
}

TEST(LedgerReading, AComplaintNamesThePlace)
{
    EXPECT_EQ(verdict(recordForm("client").document("name", "7")),
        "The data is malformed: clients[0].name isn't text.");
    EXPECT_EQ(verdict(recordForm("span").document("end", "true")),
        "The data is malformed: active.spans[0].end isn't a number.");
    EXPECT_EQ(verdict(recordForm("entry").document("id", "\"7\"")),
        "The data is malformed: entries[0].id isn't a UUID.");
    EXPECT_EQ(verdict(recordForm("conflict").document("local", "{}")),
        "The data is malformed: replication.conflicts[0].local has no \"recordID\".");
}

TEST(LedgerReading, OfSeveralBrokenKeysTheFirstDeclaredIsNamed)
{
    EXPECT_EQ(verdict(R"({"clients":[{"colorHex":7,"name":7,"id":"7"}],"entries":7})"),
        "The data is malformed: clients[0].id isn't a UUID.");
    EXPECT_EQ(verdict(R"({"entries":7,"projects":7,"clients":[]})"),
        "The data is malformed: projects isn't an array.");
}

TEST(LedgerReading, ADocumentCutOffAnywhereIsRefused)
{
    const std::string whole = recordForm("ledger").document();
    ASSERT_EQ(verdict(whole), accepted);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_NE(verdict(whole.substr(0, length)), accepted) << length;
    }
}

TEST(LedgerReading, ADocumentWithAnyByteChangedIsReadOrRefusedInWords)
{
    const std::string whole = recordForm("ledger").document();
    for (std::size_t position = 0; position < whole.size(); ++position) {
        for (const char byte : {'"', '9', '\xFF'}) {
            std::string damaged = whole;
            damaged[position] = byte;
            const std::string words = verdict(damaged);
            EXPECT_TRUE(words == accepted || words.ends_with('.')) << position << words;
        }
    }
}

// Logos

std::string quotedBytes(const std::string& bytes)
{
    return '"' + encodeBase64(bytes) + '"';
}

TEST(LedgerReading, ABadLogoMakesTheWholeDocumentUnreadable)
{
    EXPECT_EQ(verdict(recordForm("client").document("logoData", R"("")")), badLogo);
    EXPECT_EQ(verdict(recordForm("client").document("logoData", quotedBytes(LogoImages::jpeg()))),
        badLogo);
}

TEST(LedgerReading, ABadLogoIsNamedBeforeALaterBrokenKey)
{
    std::string later = recordForm("client").document("logoData", R"("")");
    later.replace(later.find("\"projectsEnabled\":true"), 22, "\"projectsEnabled\":7");
    EXPECT_EQ(verdict(later), badLogo);
    later.replace(later.find("\"entries\":[]"), 12, "\"entries\":17");
    EXPECT_EQ(verdict(later), badLogo);
}

TEST(LedgerReading, ABadLogoIsNamedAfterAnEarlierBrokenKey)
{
    std::string json = recordForm("client").document("logoData", R"("")");
    json.replace(json.find("\"rateIsKnown\":true"), 18, "\"rateIsKnown\":7");
    EXPECT_EQ(verdict(json), "The data is malformed: clients[0].rateIsKnown isn't true or false.");
}

TEST(LedgerReading, ALogoIsKeptAsItsBytes)
{
    EXPECT_EQ(readClient().logoData, LogoImages::png());
}

// Writing

TEST(LedgerWriting, AnEmptyLedgerIsThreeEmptyArrays)
{
    EXPECT_EQ(encodeLedger(LedgerData{}), emptyLedger);
}

TEST(LedgerWriting, TheDocumentIsCompactAndEndsWithItsBrace)
{
    const std::string json = encodeLedger(connectedLedger());
    EXPECT_EQ(json.find('\n'), std::string::npos);
    EXPECT_EQ(json.find(": "), std::string::npos);
    EXPECT_EQ(json.back(), '}');
}

TEST(LedgerWriting, AnEntryOfOneHourHasItsSevenKeysAndNoOthers)
{
    EXPECT_EQ(canonicalJson(entry()),
        R"({"hourlyRateCents":15000,"id":"00000000-0000-0000-0000-000000005001",)"
        R"("isBillable":true,"projectID":"00000000-0000-0000-0000-00000000A001",)"
        R"("rateIsKnown":true,"spans":[{"end":785003600,"start":785000000}],"title":"Proofs"})");
}

TEST(LedgerWriting, OptionalKeysAreWrittenWhenTheyHoldSomething)
{
    TimeEntry imported = entry();
    imported.recordedDuration = 0.0;
    imported.sourceID = "a/7";
    const std::string json = canonicalJson(imported);
    EXPECT_NE(json.find(R"("recordedDuration":0,)"), std::string::npos);
    EXPECT_NE(json.find(R"("sourceID":"a\/7",)"), std::string::npos);
}

TEST(LedgerWriting, NothingIsEverWrittenAsNull)
{
    EXPECT_EQ(encodeLedger(connectedLedger()).find("null"), std::string::npos);
    EXPECT_EQ(encodeLedger(ledger()).find("null"), std::string::npos);
}

TEST(LedgerWriting, APausedSessionHasNoRunningSince)
{
    EXPECT_EQ(canonicalJson(pausedSession()).find("runningSince"), std::string::npos);
    EXPECT_NE(
        canonicalJson(runningSession()).find(R"("runningSince":785007200)"), std::string::npos);
}

TEST(LedgerWriting, ALogoIsBase64WithItsSolidusEscaped)
{
    Client withLogo = client();
    withLogo.logoData = "\xFF\xFF\xFF";
    EXPECT_NE(canonicalJson(withLogo).find(R"("logoData":"\/\/\/\/",)"), std::string::npos);
}

TEST(LedgerWriting, IdentifiersAreUpperCase)
{
    const Client read = readClient("id", R"("1b4e28ba-2fa1-11d2-883f-0016d3cca427")");
    EXPECT_NE(canonicalJson(read).find("1B4E28BA-2FA1-11D2-883F-0016D3CCA427"), std::string::npos);
}

TEST(LedgerWriting, ADateThatIsNotFiniteIsRefused)
{
    LedgerData ledger = runningLedger();
    ledger.active->checkpointAt = Date{HUGE_VAL};
    EXPECT_EQ(refusalOf([&] { (void)encodeLedger(ledger); }),
        "A number in the data is not finite and can't be saved.");
}

TEST(LedgerWriting, ATextThatIsNotUtf8IsRefused)
{
    LedgerData ledger = Sample::ledger();
    ledger.clients.modify(clientID(), [](Client& client) { client.name = "\xFF"; });
    EXPECT_EQ(refusalOf([&] { (void)encodeLedger(ledger); }),
        "A text in the data is not valid UTF-8 and can't be saved.");
}

TEST(LedgerWriting, WhatWasWrittenReadsBackEqual)
{
    LedgerData ledger = connectedLedger();
    ledger.replication = fullState();
    EXPECT_EQ(decodeLedger(encodeLedger(ledger)), ledger);
}

TEST(LedgerWriting, RemovingTheLastRecordOfALongListIsSeenInTheNextDocument)
{
    LedgerData ledger = Sample::ledger();
    (void)encodeLedger(ledger);
    ledger.entries.remove(sessionID());
    EXPECT_NE(encodeLedger(ledger).find("\"entries\":[]"), std::string::npos);
}

} // namespace
} // namespace KestryCore
