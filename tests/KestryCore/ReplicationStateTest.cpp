// What a ledger knows about its replication, as a whole.

#include <gtest/gtest.h>

#include "LedgerCoding.h"
#include "Refusal.h"
#include "SampleLedger.h"
#include "SyncRecords.h"

namespace KestryCore {
namespace {

using namespace Sample;

constexpr const char* wrongIdentity = "Invalid sync record identity.";
constexpr const char* wrongSession = "Invalid synced session or ownership.";
constexpr const char* wrongPayload = "Missing or oversized sync record payload.";
constexpr const char* badMetadata = "Invalid sync account or conflict metadata.";

std::string verdict(const LedgerSyncState& state)
{
    return refusalOf([&] { validateReplicationState(state); });
}

/// Changes the first conflict of a state.
template <class Change>
void changeConflict(LedgerSyncState& state, Change change)
{
    SyncConflict conflict = state.conflicts.front();
    change(conflict);
    state.conflicts = {conflict};
}

TEST(ReplicationState, AFullStateIsSound)
{
    EXPECT_EQ(verdict(fullState()), accepted);
    EXPECT_EQ(verdict(state()), accepted);
}

TEST(ReplicationState, DeviceAndAccountMustBeNamed)
{
    for (auto LedgerSyncState::*field :
        {&LedgerSyncState::deviceID, &LedgerSyncState::deviceName, &LedgerSyncState::accountID}) {
        LedgerSyncState state = fullState();
        (state.*field).clear();
        EXPECT_EQ(verdict(state), badMetadata);
    }
}

TEST(ReplicationState, ARecordHasOneConflictAtMost)
{
    LedgerSyncState state = fullState();
    state.conflicts.append(state.conflicts.front());
    EXPECT_EQ(verdict(state), badMetadata);
}

TEST(ReplicationState, EveryRecordStandsUnderItsOwnIdentity)
{
    for (SharedMap<SyncRecord> LedgerSyncState::*map :
        {&LedgerSyncState::outbox, &LedgerSyncState::staged, &LedgerSyncState::tombstones}) {
        LedgerSyncState state = Sample::state();
        (state.*map)["Client:other"] = deletion(record(client()).recordID);
        EXPECT_EQ(verdict(state), "Sync record key mismatch.");
    }
}

TEST(ReplicationState, EveryRecordOfEveryMapIsChecked)
{
    for (SharedMap<SyncRecord> LedgerSyncState::*map :
        {&LedgerSyncState::outbox, &LedgerSyncState::staged, &LedgerSyncState::tombstones}) {
        LedgerSyncState state = Sample::state();
        (state.*map)["Client:7"] = deletion("Client:7");
        EXPECT_EQ(verdict(state), wrongIdentity);
    }
}

TEST(ReplicationState, ALiveTombstoneIsRefusedAlthoughItsRecordIsSound)
{
    LedgerSyncState state = fullState();
    const SyncRecord live = record(client());
    state.tombstones[live.recordID] = live;
    EXPECT_EQ(verdict(state), "Invalid retained sync deletion.");
}

TEST(ReplicationState, BothVersionsOfAConflictShareItsIdentity)
{
    for (auto SyncConflict::*version : {&SyncConflict::local, &SyncConflict::remote}) {
        LedgerSyncState state = fullState();
        changeConflict(
            state, [&](SyncConflict& conflict) { conflict.*version = record(client(3)); });
        EXPECT_EQ(verdict(state), "Sync conflict key mismatch.");
    }
}

TEST(ReplicationState, BothVersionsOfAConflictAreChecked)
{
    for (auto SyncConflict::*version : {&SyncConflict::local, &SyncConflict::remote}) {
        LedgerSyncState state = fullState();
        changeConflict(state, [&](SyncConflict& conflict) { (conflict.*version).payload.reset(); });
        EXPECT_EQ(verdict(state), wrongPayload);
    }
}

TEST(ReplicationState, ARemoteSessionIsActiveAndNotSaved)
{
    constexpr const char* message = "Remote sessions must contain an active timer.";
    LedgerSyncState state = Sample::state();
    state.remoteSessions = {{record(synced(entry())).recordID, synced(entry())}};
    EXPECT_EQ(verdict(state), message);
    state = fullState();
    state.remoteSessions[state.remoteSessions.begin()->first].entry = entry();
    EXPECT_EQ(verdict(state), message);
}

TEST(ReplicationState, ARemoteSessionStandsUnderItsOwnIdentity)
{
    LedgerSyncState state = Sample::state();
    state.remoteSessions = {{record(synced(entry())).recordID, synced(runningSession())}};
    EXPECT_EQ(verdict(state), wrongSession);
}

TEST(ReplicationState, ARemoteSessionFollowsTheRulesOfTheLedger)
{
    LedgerSyncState state = fullState();
    state.remoteSessions[state.remoteSessions.begin()->first].active->hourlyRateCents = -1;
    EXPECT_EQ(verdict(state), "Invalid active session.");
}

TEST(ReplicationState, WhatChangedSinceItWasFoundSoundIsJudgedAgain)
{
    const LedgerSyncState sound = fullState();
    EXPECT_EQ(verdict(sound), accepted);
    for (SharedMap<SyncRecord> LedgerSyncState::*map :
        {&LedgerSyncState::outbox, &LedgerSyncState::staged, &LedgerSyncState::tombstones}) {
        LedgerSyncState state = sound;
        (state.*map)[(state.*map).begin()->first].deviceID.clear();
        EXPECT_EQ(verdict(state), wrongIdentity);
    }
    LedgerSyncState state = sound;
    state.conflicts.modify(state.conflicts.front().id,
        [](SyncConflict& conflict) { conflict.local.deviceID.clear(); });
    EXPECT_EQ(verdict(state), wrongIdentity);
    EXPECT_EQ(verdict(sound), accepted);
}

TEST(ReplicationState, CursorSystemFieldsAndBaseRevisionsAreTakenAsTheyStand)
{
    LedgerSyncState state = Sample::state();
    state.changeToken = "";
    state.systemFields = {{"", "\xFF"}};
    state.baseRevisions = {{"any key", "no revision"}};
    EXPECT_EQ(verdict(state), accepted);
}

TEST(ReplicationState, AKeyIsComparedBeforeItsRecordIsLookedAt)
{
    LedgerSyncState state = Sample::state();
    state.outbox["Client:other"] = deletion("Client:7");
    EXPECT_EQ(verdict(state), "Sync record key mismatch.");
}

TEST(ReplicationState, ALiveTombstoneThatIsNotSoundIsRefusedForThatFirst)
{
    LedgerSyncState state = Sample::state();
    SyncRecord live = record(client());
    live.payload.reset();
    state.tombstones[live.recordID] = live;
    EXPECT_EQ(verdict(state), wrongPayload);
}

TEST(ReplicationState, OfAConflictTheIdentitiesCountFirstThenTheLocalVersion)
{
    LedgerSyncState state = fullState();
    changeConflict(state, [](SyncConflict& conflict) {
        conflict.remote.payload.reset();
        conflict.local.deviceID.clear();
    });
    EXPECT_EQ(verdict(state), wrongIdentity);
    changeConflict(state, [](SyncConflict& conflict) { conflict.id = "other"; });
    EXPECT_EQ(verdict(state), "Sync conflict key mismatch.");
}

TEST(ReplicationState, ConflictsAreJudgedInTheirOrderAndBeforeRemoteSessions)
{
    LedgerSyncState state = fullState();
    state.remoteSessions[state.remoteSessions.begin()->first].active.reset();
    SyncConflict second{record(client(3)).recordID, record(client(3)), record(client(3))};
    second.remote.payload.reset();
    state.conflicts.append(second);
    EXPECT_EQ(verdict(state), wrongPayload);
    changeConflict(state, [](SyncConflict& conflict) { conflict.remote.deviceID.clear(); });
    state.conflicts.append(second);
    EXPECT_EQ(verdict(state), wrongIdentity);
}

TEST(ReplicationState, TheFirstFailureInOrderIsNamed)
{
    LedgerSyncState state = fullState();
    state.remoteSessions[state.remoteSessions.begin()->first].active.reset();
    changeConflict(state, [](SyncConflict& conflict) { conflict.id = "other"; });
    EXPECT_EQ(verdict(state), "Sync conflict key mismatch.");
    const SyncRecord live = record(client());
    state.tombstones[live.recordID] = live;
    EXPECT_EQ(verdict(state), "Invalid retained sync deletion.");
    state.tombstones["key"] = live;
    EXPECT_EQ(verdict(state), "Sync record key mismatch.");
    state.staged["Client:7"] = deletion("Client:7");
    EXPECT_EQ(verdict(state), wrongIdentity);
    const std::string first = state.outbox.begin()->first;
    state.outbox[first].payload.reset();
    state.outbox[first].isDeleted = false;
    EXPECT_EQ(verdict(state), wrongPayload);
    state.deviceName = "";
    EXPECT_EQ(verdict(state), badMetadata);
}

} // namespace
} // namespace KestryCore
