#include "SyncRecords.h"

#include <gtest/gtest.h>

#include "LedgerCoding.h"
#include "LedgerValidation.h"
#include "LogoImages.h"
#include "Refusal.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

using namespace Sample;

constexpr const char* badIdentity = "Invalid sync record identity.";
constexpr const char* badSession = "Invalid synced session or ownership.";
constexpr const char* badPayload = "Missing or oversized sync record payload.";

std::string verdict(const SyncRecord& record)
{
    return refusalOf([&] { validateRecord(record); });
}

std::string verdictOnIdentity(const std::string& recordID)
{
    SyncRecord record = Sample::record(client());
    record.recordID = recordID;
    return refusalOf([&] { (void)parseRecordIdentity(record); });
}

// Payloads

TEST(RecordPayloads, HoldEveryRecordUnderItsIdentity)
{
    const auto payloads = recordPayloads(runningLedger(), "device-a", "studio");
    ASSERT_EQ(payloads.size(), 4U);
    EXPECT_EQ(payloads.at("Client:00000000-0000-0000-0000-00000000C001"), canonicalJson(client()));
    EXPECT_EQ(
        payloads.at("Project:00000000-0000-0000-0000-00000000A001"), canonicalJson(project()));
    EXPECT_EQ(payloads.at("Session:00000000-0000-0000-0000-000000005001"),
        canonicalJson(synced(entry())));
    EXPECT_EQ(payloads.at("Session:00000000-0000-0000-0000-000000005009"),
        canonicalJson(synced(runningSession())));
}

TEST(RecordPayloads, TheActiveSessionWinsOverTheEntryWithItsIdentifier)
{
    LedgerData ledger = runningLedger();
    ledger.active->id = sessionID();
    const auto payloads = recordPayloads(ledger, "device-a", "studio");
    EXPECT_EQ(payloads.size(), 3U);
    EXPECT_EQ(payloads.at("Session:00000000-0000-0000-0000-000000005001"),
        canonicalJson(synced(*ledger.active)));
}

TEST(RecordPayloads, AreTheseBytesForEver)
{
    EXPECT_EQ(canonicalJson(client()),
        R"({"colorHex":"B7A5FF","hourlyRateCents":15000,)"
        R"("id":"00000000-0000-0000-0000-00000000C001","name":"Harbour Books",)"
        R"("projectsEnabled":true,"rateIsKnown":true})");
    EXPECT_EQ(canonicalJson(project()),
        R"({"clientID":"00000000-0000-0000-0000-00000000C001","hourlyRateCents":15000,)"
        R"("id":"00000000-0000-0000-0000-00000000A001","isClientDefault":false,)"
        R"("name":"Catalogue","rateIsKnown":true})");
    TimeEntry imported = entry();
    imported.sourceID = "import/7";
    imported.recordedDuration = 1800.5;
    EXPECT_EQ(canonicalJson(synced(imported)),
        R"({"entry":{"hourlyRateCents":15000,"id":"00000000-0000-0000-0000-000000005001",)"
        R"("isBillable":true,"projectID":"00000000-0000-0000-0000-00000000A001",)"
        R"("rateIsKnown":true,"recordedDuration":1800.5,"sourceID":"import\/7",)"
        R"("spans":[{"end":785003600,"start":785000000}],"title":"Proofs"},)"
        R"("ownerDeviceID":"device-a","ownerName":"studio"})");
    EXPECT_EQ(canonicalJson(synced(runningSession())),
        R"({"active":{"checkpointAt":785007800,"hourlyRateCents":15000,)"
        R"("id":"00000000-0000-0000-0000-000000005009","isBillable":true,)"
        R"("projectID":"00000000-0000-0000-0000-00000000A001","rateIsKnown":true,)"
        R"("runningSince":785007200,"spans":[{"end":785003600,"start":785000000}],)"
        R"("title":"Index"},"ownerDeviceID":"device-a","ownerName":"studio"})");
}

TEST(RecordPayloads, FailWhenARecordCannotBeEncoded)
{
    LedgerData ledger = runningLedger();
    ledger.active->title = "\xFF";
    EXPECT_EQ(refusalOf([&] { (void)recordPayloads(ledger, "device-a", "studio"); }),
        "A text in the data is not valid UTF-8 and can't be saved.");
}

// Identity

TEST(SyncRecordIdentity, IsAKindAColonAndAnUpperCaseUuid)
{
    const SyncRecordIdentity identity = parseRecordIdentity(record(project()));
    EXPECT_EQ(identity.kind, SyncRecordKind::project);
    EXPECT_EQ(identity.id, projectID());
    EXPECT_EQ(verdictOnIdentity("Client:1B4E28BA-2FA1-11D2-883F-0016D3CCA427"), accepted);
}

TEST(SyncRecordIdentity, ALowerCaseUuidIsRefused)
{
    EXPECT_EQ(verdictOnIdentity("Client:1b4e28ba-2fa1-11d2-883f-0016d3cca427"), badIdentity);
}

TEST(SyncRecordIdentity, OneColonIsNeededAndNoMore)
{
    for (const char* recordID : {"Client1B4E28BA-2FA1-11D2-883F-0016D3CCA427",
             "Client:1B4E28BA-2FA1-11D2-883F-0016D3CCA427:",
             ":Client:1B4E28BA-2FA1-11D2-883F-0016D3CCA427",
             "Client::1B4E28BA-2FA1-11D2-883F-0016D3CCA427", "Client:", ":", ""}) {
        EXPECT_EQ(verdictOnIdentity(recordID), badIdentity) << recordID;
    }
}

TEST(SyncRecordIdentity, AnyOtherKindIsRefused)
{
    for (const char* kind : {"client", "Clients", "Entry", "", "Session ", "CLIENT"}) {
        EXPECT_EQ(verdictOnIdentity(std::string(kind) + ":1B4E28BA-2FA1-11D2-883F-0016D3CCA427"),
            badIdentity)
            << kind;
    }
}

TEST(SyncRecordIdentity, ARevisionThatIsNoUuidIsRefusedAlthoughThePayloadIsFine)
{
    SyncRecord record = Sample::record(client());
    record.revision = "7";
    EXPECT_EQ(verdict(record), badIdentity);
}

TEST(SyncRecordIdentity, ARevisionMayBeInEitherCase)
{
    SyncRecord record = Sample::record(client());
    record.revision = "1b4e28ba-2fa1-11d2-883f-0016d3cca427";
    EXPECT_EQ(verdict(record), accepted);
}

TEST(SyncRecordIdentity, AnEmptyDeviceIsRefused)
{
    SyncRecord record = Sample::record(client());
    record.deviceID = "";
    EXPECT_EQ(verdict(record), badIdentity);
}

// One record

TEST(SyncRecordValidation, ADeletionMustNotHoldDataEvenIfEmpty)
{
    SyncRecord record = deletion(Sample::record(client()).recordID);
    EXPECT_EQ(verdict(record), accepted);
    record.payload = "";
    EXPECT_EQ(verdict(record), "Deleted sync records cannot contain live data.");
}

TEST(SyncRecordValidation, ALiveRecordNeedsAPayload)
{
    SyncRecord record = Sample::record(client());
    record.payload.reset();
    EXPECT_EQ(verdict(record), badPayload);
}

TEST(SyncRecordValidation, APayloadOfExactly4194304BytesIsAcceptedAndOneMoreIsRefused)
{
    SyncRecord record = Sample::record(client());
    record.payload->append(4'194'304 - record.payload->size(), ' ');
    EXPECT_EQ(verdict(record), accepted);
    record.payload->push_back(' ');
    EXPECT_EQ(verdict(record), badPayload);
}

TEST(SyncRecordValidation, ThePayloadSizeIsTestedBeforeAnyDecoding)
{
    SyncRecord record = Sample::record(client());
    record.payload = std::string(4'194'305, '[');
    EXPECT_EQ(verdict(record), badPayload);
}

TEST(SyncRecordValidation, APayloadThatIsNoSuchRecordFailsAsItsReading)
{
    SyncRecord record = Sample::record(client());
    record.payload = "not json";
    EXPECT_EQ(verdict(record), "The file isn't valid JSON.");
    record.payload = canonicalJson(project());
    EXPECT_EQ(verdict(record), "The data is malformed: the document has no \"colorHex\".");
}

TEST(SyncRecordValidation, ThePayloadMustHaveTheIdentifierOfItsRecord)
{
    SyncRecord record = Sample::record(client());
    record.payload = canonicalJson(client(2));
    EXPECT_EQ(verdict(record), "Synced client ID did not match its record.");
    record = Sample::record(project());
    record.payload = canonicalJson(project(2));
    EXPECT_EQ(verdict(record), "Synced project ID did not match its record.");
    record = Sample::record(synced(entry()));
    record.payload = canonicalJson(synced(entry(2)));
    EXPECT_EQ(verdict(record), badSession);
    record.payload = canonicalJson(synced(runningSession()));
    EXPECT_EQ(verdict(record), badSession);
}

TEST(SyncRecordValidation, AProjectNeedsNoClientHere)
{
    EXPECT_EQ(verdict(record(project())), accepted);
}

TEST(SyncRecordValidation, ASessionNeedsNoProjectHere)
{
    EXPECT_EQ(verdict(record(synced(entry()))), accepted);
    EXPECT_EQ(verdict(record(synced(runningSession()))), accepted);
}

TEST(SyncRecordValidation, ASessionIsEitherActiveOrSaved)
{
    SyncRecord record = Sample::record(synced(entry()));
    SyncedSession session = synced(entry());
    session.active = runningSession();
    session.active->id = sessionID();
    record.payload = canonicalJson(session);
    EXPECT_EQ(verdict(record), badSession);
    session = {"device-a", "studio", std::nullopt, std::nullopt};
    record.payload = canonicalJson(session);
    EXPECT_EQ(verdict(record), badSession);
}

TEST(SyncRecordValidation, ASessionNamesItsOwner)
{
    SyncedSession session = synced(entry());
    session.ownerName = "";
    EXPECT_EQ(verdict(record(session)), badSession);
    session = synced(entry());
    session.ownerDeviceID = "";
    EXPECT_EQ(verdict(record(session)), badSession);
}

TEST(SyncRecordValidation, ARecordThatBreaksALedgerRuleFailsInTheLedgersWords)
{
    Client client = Sample::client();
    client.name = " ";
    EXPECT_EQ(verdict(record(client)), "Enter a name.");
    Project project = Sample::project();
    project.hourlyRateCents = -1;
    EXPECT_EQ(verdict(record(project)), "Invalid project client or hourly rate.");
    TimeEntry entry = Sample::entry();
    entry.spans = {span(noon, noon - 1)};
    EXPECT_EQ(verdict(record(synced(entry))),
        "Time intervals must be ordered, with dates between 1970 and 2200.");
    ActiveSession session = runningSession();
    session.checkpointAt = latestDate + 1;
    EXPECT_EQ(verdict(record(synced(session))), "Invalid active session.");
}

TEST(SyncRecordValidation, ABadLogoIsRefusedInItsOwnWordsEvenBesideALaterBrokenKey)
{
    Client client = Sample::client();
    client.logoData = LogoImages::jpeg();
    SyncRecord record = Sample::record(client);
    const std::string flag = "\"projectsEnabled\":true";
    record.payload->replace(record.payload->find(flag), flag.size(), "\"projectsEnabled\":7");
    EXPECT_EQ(
        verdict(record), "Client logos must be valid PNG images up to 256 pixels and 256 KB.");
}

TEST(SyncRecordValidation, KeysOfAPayloadMayComeInAnyOrderAndOthersAreIgnored)
{
    SyncRecord record = Sample::record(client());
    record.payload->insert(1, R"("version":9,)");
    EXPECT_EQ(verdict(record), accepted);
}

} // namespace
} // namespace KestryCore
