#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <map>

#include "ArbitraryLedger.h"
#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerValidation.h"
#include "LocalChanges.h"
#include "Refusal.h"
#include "SampleLedger.h"
#include "SyncRecords.h"

namespace KestryCore {
namespace {

std::string verdict(const LedgerData& ledger)
{
    return refusalOf([&] { validate(ledger); });
}

RC_GTEST_PROP(AnyLedger, IsSoundAndReadsBackEqualAndSound, ())
{
    const LedgerData ledger = *arbitraryLedger();
    const LedgerData readBack = decodeLedger(encodeLedger(ledger));
    RC_ASSERT(readBack == ledger);
    RC_ASSERT(verdict(ledger) == accepted);
    RC_ASSERT(verdict(readBack) == accepted);
}

RC_GTEST_PROP(AnyLedger, IsWrittenInTheSameBytesAfterBeingRead, ())
{
    const std::string json = encodeLedger(*arbitraryLedger());
    RC_ASSERT(encodeLedger(decodeLedger(json)) == json);
}

RC_GTEST_PROP(AnyLedger, HasTheSamePayloadsAfterBeingRead, ())
{
    const LedgerData ledger = *arbitraryLedger();
    const LedgerData readBack = decodeLedger(encodeLedger(ledger));
    RC_ASSERT(
        recordPayloads(ledger, "device", "name") == recordPayloads(readBack, "device", "name"));
}

RC_GTEST_PROP(AnyLedger, HasPayloadsThatReadBackInTheSameBytes, ())
{
    for (const auto& [key, payload] : recordPayloads(*arbitraryLedger(), "device", "name")) {
        const SyncRecord record{key, Uuid{}.text(), "device", payload, false};
        switch (parseRecordIdentity(record).kind) {
        case SyncRecordKind::client:
            RC_ASSERT(canonicalJson(decodeRecord<Client>(payload)) == payload);
            break;
        case SyncRecordKind::project:
            RC_ASSERT(canonicalJson(decodeRecord<Project>(payload)) == payload);
            break;
        case SyncRecordKind::session:
            RC_ASSERT(canonicalJson(decodeRecord<SyncedSession>(payload)) == payload);
            break;
        }
    }
}

RC_GTEST_PROP(AnyLedger, HasSoundPayloads, ())
{
    for (const auto& [key, payload] : recordPayloads(*arbitraryLedger(), "device", "name")) {
        validateRecord({key, Uuid{}.text(), "device", payload, false});
    }
}

RC_GTEST_PROP(AnyLedger, IsWrittenAfterEditsAsIfNothingHadBeenRemembered, ())
{
    LedgerData ledger = *arbitraryLedger();
    for (int round = 0; round < 3; ++round) {
        const LedgerData before = ledger;
        const std::string json = encodeLedger(before);
        editArbitrarily(ledger);
        RC_ASSERT(encodeLedger(ledger) == encodeLedger(rebuilt(ledger)));
        RC_ASSERT(encodeLedger(before) == json);
    }
}

RC_GTEST_PROP(AnyLedger, IsJudgedAfterEditsAsIfNothingHadBeenRemembered, ())
{
    LedgerData ledger = *arbitraryLedger();
    for (int round = 0; round < 3; ++round) {
        editArbitrarily(ledger);
        const LedgerData before = ledger;
        RC_ASSERT(verdict(ledger) == verdict(rebuilt(ledger)));
        RC_ASSERT(ledger == before);
    }
}

/// What a ledger's records are by their identities, put together without the code under test.
struct KnownRecords {
    std::map<std::string, Client> clients;
    std::map<std::string, Project> projects;
    std::map<std::string, SyncedSession> sessions;

    KnownRecords(const LedgerData& ledger, const LedgerSyncState& owner)
    {
        for (const Client& client : ledger.clients) {
            clients["Client:" + client.id.text()] = client;
        }
        for (const Project& project : ledger.projects) {
            projects["Project:" + project.id.text()] = project;
        }
        SyncedSession session{owner.deviceID, owner.deviceName, std::nullopt, std::nullopt};
        for (const TimeEntry& entry : ledger.entries) {
            session.entry = entry;
            sessions["Session:" + entry.id.text()] = session;
        }
        if (ledger.active) {
            session.entry.reset();
            session.active = ledger.active;
            sessions["Session:" + ledger.active->id.text()] = session;
        }
    }
};

/// Notes each record that counts as changed, comparing values where the hook compares bytes.
template <class Record>
void noteChanges(const std::map<std::string, Record>& before,
    const std::map<std::string, Record>& after, ChangeTracking tracking,
    std::map<std::string, std::optional<std::string>>& changes)
{
    for (const auto& [key, record] : after) {
        if (tracking.forceAll || !before.contains(key) || !(before.at(key) == record)) {
            changes[key] = canonicalJson(record);
        }
    }
    for (const auto& [key, record] : before) {
        if (tracking.trackDeletions && !after.contains(key)) {
            changes[key] = std::nullopt;
        }
    }
}

LedgerSyncState expectedState(
    const LedgerData& before, const LedgerData& after, ChangeTracking tracking)
{
    LedgerSyncState state = *after.replication;
    const KnownRecords older(before, state);
    const KnownRecords newer(after, state);
    std::map<std::string, std::optional<std::string>> changes;
    noteChanges(older.clients, newer.clients, tracking, changes);
    noteChanges(older.projects, newer.projects, tracking, changes);
    noteChanges(older.sessions, newer.sessions, tracking, changes);
    unsigned revision = 0;
    for (const auto& [key, payload] : changes) {
        const SyncRecord record{
            key, Sample::id(++revision).text(), state.deviceID, payload, !payload.has_value()};
        state.outbox[key] = record;
        state.tombstones.erase(key);
        if (record.isDeleted) {
            state.tombstones[key] = record;
        }
        state.conflicts.modify(key, [&](SyncConflict& conflict) { conflict.local = record; });
    }
    return state;
}

RC_GTEST_PROP(AnyChange, IsTrackedAsComparingTheRecordsOneByOneWould, ())
{
    const LedgerData before = *arbitraryLedger();
    LedgerData after = before;
    editArbitrarily(after);
    after.replication = Sample::state();
    if (!before.clients.empty()) {
        const SyncRecord local = Sample::record(before.clients.front());
        after.replication.edit().conflicts = {{local.recordID, local, local}};
        after.replication.edit().tombstones = {{local.recordID, Sample::deletion(local.recordID)}};
    }
    const ChangeTracking tracking{*rc::gen::arbitrary<bool>(), *rc::gen::arbitrary<bool>()};
    LedgerData expected = after;
    expected.replication = expectedState(before, after, tracking);
    unsigned revision = 0;
    recordLedgerChange(before, after, tracking, [&] { return Sample::id(++revision); });
    RC_ASSERT(after == expected);
}

} // namespace
} // namespace KestryCore
