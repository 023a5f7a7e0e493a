#pragma once

#include <optional>
#include <string>

#include "JsonReader.h"
#include "JsonWriter.h"
#include "Ledger.h"
#include "LedgerBytes.h"
#include "LedgerMembers.h"
#include "SyncState.h"

namespace KestryCore {

/// The ledger as the JSON document of `ledger.json`. Fails with a `LedgerError` when a number is
/// not finite or a text not UTF-8. The bytes of record blocks are remembered with them, so that
/// encoding a ledger again costs what has changed.
[[nodiscard]] LedgerBytes ledgerBytes(const LedgerData& ledger);

/// The same bytes in one text.
[[nodiscard]] std::string encodeLedger(const LedgerData& ledger);

void encode(JsonWriter& writer, const Client& client);
void encode(JsonWriter& writer, const Project& project);
void encode(JsonWriter& writer, const TimeEntry& entry);
void encode(JsonWriter& writer, const ActiveSession& session);
void encode(JsonWriter& writer, const SyncRecord& record);
void encode(JsonWriter& writer, const SyncedSession& session);
void encode(JsonWriter& writer, const SyncConflict& conflict);
void encode(JsonWriter& writer, const LedgerSyncState& state);
/// The same text in pieces: those of what may grow with the ledger are remembered with it.
void encode(LedgerBytes& bytes, JsonWriter& writer, const LedgerSyncState& state);

/// The canonical bytes of one record: keys sorted, so that equal records give equal bytes.
template <class Record>
[[nodiscard]] std::string canonicalJson(const Record& record)
{
    JsonWriter writer(JsonKeyOrder::sorted);
    encode(writer, record);
    return writer.take();
}

/// Reads one record from a JSON text of its own. Fails as `decodeLedger` does.
template <class Record>
[[nodiscard]] Record decodeRecord(std::string json)
{
    const JsonDocument document(std::move(json));
    return decode<Record>(document.root());
}

template <>
Uuid decode<Uuid>(const JsonValue& value);
template <>
Date decode<Date>(const JsonValue& value);
template <>
Base64Bytes decode<Base64Bytes>(const JsonValue& value);
template <>
Client decode<Client>(const JsonValue& value);
template <>
Project decode<Project>(const JsonValue& value);
template <>
TimeEntry decode<TimeEntry>(const JsonValue& value);
template <>
ActiveSession decode<ActiveSession>(const JsonValue& value);
template <>
SyncRecord decode<SyncRecord>(const JsonValue& value);
template <>
SyncedSession decode<SyncedSession>(const JsonValue& value);
template <>
LedgerSyncState decode<LedgerSyncState>(const JsonValue& value);

} // namespace KestryCore
