#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <type_traits>

#include "ClientLogo.h"
#include "Ledger.h"
#include "SyncState.h"

namespace KestryCore {

/// A record of this type, to be written or, when it is not const, to be read into.
template <class Subject, class Record>
concept RecordOf = std::same_as<std::remove_const_t<Subject>, Record>;

// The members of each record, named once for reading and writing, in the order in which they are
// written. `Visitor` reads or writes one JSON object:
//
// - `required` is a member that must be present;
// - `optional` is one that may be missing from a file. A missing one leaves the target unchanged.
//   Writing leaves out an empty `std::optional` and nothing else;
// - `bytes` is an optional one whose bytes are a base64 string in JSON. A second function checks
//   the bytes when they are read;
// - `bytesByKey` is an optional map from texts to such bytes.

template <class Visitor, RecordOf<TimeSpan> Span>
void visitMembers(Visitor& visitor, Span& span)
{
    visitor.required("start", span.start);
    visitor.required("end", span.end);
}

/// Reading a logo that is not valid fails with its `LedgerError`.
template <class Visitor, RecordOf<Client> Subject>
void visitMembers(Visitor& visitor, Subject& client)
{
    visitor.required("id", client.id);
    visitor.required("name", client.name);
    visitor.required("hourlyRateCents", client.hourlyRateCents);
    visitor.required("colorHex", client.colorHex);
    visitor.optional("rateIsKnown", client.rateIsKnown);
    visitor.bytes("logoData", client.logoData, validateClientLogo);
    visitor.optional("projectsEnabled", client.projectsEnabled);
}

template <class Visitor, RecordOf<Project> Subject>
void visitMembers(Visitor& visitor, Subject& project)
{
    visitor.required("id", project.id);
    visitor.required("clientID", project.clientID);
    visitor.required("name", project.name);
    visitor.required("hourlyRateCents", project.hourlyRateCents);
    visitor.optional("rateIsKnown", project.rateIsKnown);
    visitor.optional("isClientDefault", project.isClientDefault);
}

template <class Visitor, RecordOf<TimeEntry> Subject>
void visitMembers(Visitor& visitor, Subject& entry)
{
    visitor.required("id", entry.id);
    visitor.required("projectID", entry.projectID);
    visitor.required("title", entry.title);
    visitor.required("hourlyRateCents", entry.hourlyRateCents);
    visitor.required("spans", entry.spans);
    visitor.optional("isBillable", entry.isBillable);
    visitor.optional("rateIsKnown", entry.rateIsKnown);
    visitor.optional("recordedDuration", entry.recordedDuration);
    visitor.optional("sourceID", entry.sourceID);
}

template <class Visitor, RecordOf<ActiveSession> Subject>
void visitMembers(Visitor& visitor, Subject& session)
{
    visitor.required("id", session.id);
    visitor.required("projectID", session.projectID);
    visitor.required("title", session.title);
    visitor.required("hourlyRateCents", session.hourlyRateCents);
    visitor.required("spans", session.spans);
    visitor.optional("runningSince", session.runningSince);
    visitor.required("checkpointAt", session.checkpointAt);
    visitor.optional("isBillable", session.isBillable);
    visitor.optional("rateIsKnown", session.rateIsKnown);
    visitor.optional("sourceID", session.sourceID);
}

template <class Visitor, RecordOf<SyncRecord> Subject>
void visitMembers(Visitor& visitor, Subject& record)
{
    visitor.required("recordID", record.recordID);
    visitor.required("revision", record.revision);
    visitor.required("deviceID", record.deviceID);
    visitor.bytes("payload", record.payload);
    visitor.required("isDeleted", record.isDeleted);
}

template <class Visitor, RecordOf<SyncedSession> Subject>
void visitMembers(Visitor& visitor, Subject& session)
{
    visitor.required("ownerDeviceID", session.ownerDeviceID);
    visitor.required("ownerName", session.ownerName);
    visitor.optional("active", session.active);
    visitor.optional("entry", session.entry);
}

template <class Visitor, RecordOf<SyncConflict> Subject>
void visitMembers(Visitor& visitor, Subject& conflict)
{
    visitor.required("id", conflict.id);
    visitor.required("local", conflict.local);
    visitor.required("remote", conflict.remote);
}

template <class Visitor, RecordOf<LedgerSyncState> Subject>
void visitMembers(Visitor& visitor, Subject& state)
{
    visitor.required("deviceID", state.deviceID);
    visitor.required("deviceName", state.deviceName);
    visitor.required("accountID", state.accountID);
    visitor.optional("environment", state.environment);
    visitor.optional("enabled", state.enabled);
    visitor.bytes("changeToken", state.changeToken);
    visitor.bytesByKey("systemFields", state.systemFields);
    visitor.optional("baseRevisions", state.baseRevisions);
    visitor.optional("outbox", state.outbox);
    visitor.optional("conflicts", state.conflicts);
    visitor.optional("remoteSessions", state.remoteSessions);
    visitor.optional("staged", state.staged);
    visitor.optional("tombstones", state.tombstones);
}

template <class Visitor, RecordOf<LedgerData> Subject>
void visitMembers(Visitor& visitor, Subject& ledger)
{
    visitor.required("clients", ledger.clients);
    visitor.required("projects", ledger.projects);
    visitor.required("entries", ledger.entries);
    visitor.optional("active", ledger.active);
    visitor.optional("replication", ledger.replication);
}

} // namespace KestryCore
