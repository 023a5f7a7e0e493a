#pragma once

#include "Ledger.h"
#include "SyncState.h"
#include "Uuid.h"

/// Small sound records that tests change in the one place that they are about. Numbers tell
/// records of one kind apart; what refers to another record refers to number 1 of its kind.
namespace KestryCore::Sample {

/// Seconds of a moment in 2025, and the length of each span below.
inline constexpr double noon = 785'000'000.0;
inline constexpr double hour = 3600.0;

[[nodiscard]] Uuid id(unsigned number);
[[nodiscard]] Uuid clientID(unsigned number = 1);
[[nodiscard]] Uuid projectID(unsigned number = 1);
[[nodiscard]] Uuid sessionID(unsigned number = 1);

[[nodiscard]] TimeSpan span(double start, double end);

[[nodiscard]] Client client(unsigned number = 1);
[[nodiscard]] Project project(unsigned number = 1);
/// One hour from `noon`, at 150 USD an hour.
[[nodiscard]] TimeEntry entry(unsigned number = 1);
/// Number 9, so that it is no saved one: an hour from `noon`, running again from two hours after
/// it, known to have run for ten minutes.
[[nodiscard]] ActiveSession runningSession();
/// The same, paused after its first hour.
[[nodiscard]] ActiveSession pausedSession();

/// One client, project and entry, no active session.
[[nodiscard]] LedgerData ledger();
/// The same with the running session.
[[nodiscard]] LedgerData runningLedger();

/// Connected, with nothing to deliver.
[[nodiscard]] LedgerSyncState state();
[[nodiscard]] LedgerData connectedLedger();

[[nodiscard]] SyncedSession synced(const ActiveSession& session);
[[nodiscard]] SyncedSession synced(const TimeEntry& entry);

[[nodiscard]] SyncRecord record(const Client& client);
[[nodiscard]] SyncRecord record(const Project& project);
[[nodiscard]] SyncRecord record(const SyncedSession& session);
[[nodiscard]] SyncRecord deletion(const std::string& recordID);

/// The state with something in each of its parts.
[[nodiscard]] LedgerSyncState fullState();

} // namespace KestryCore::Sample
