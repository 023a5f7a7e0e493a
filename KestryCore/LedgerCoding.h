#pragma once

#include <string>

#include "JsonWriter.h"
#include "Ledger.h"
#include "LedgerBytes.h"
#include "SyncState.h"

namespace KestryCore {

/// The ledger as the JSON document of `ledger.json`. Throws LedgerError when a number is not finite
/// or a text is not UTF-8. The bytes of each block of records are remembered with it, so that
/// encoding a ledger again costs only what has changed.
[[nodiscard]] LedgerBytes ledgerBytes(const LedgerData& ledger);

/// The same bytes as one text.
[[nodiscard]] std::string encodeLedger(const LedgerData& ledger);

/// Writes one record as a JSON object. `Record` is `Client`, `Project`, `TimeEntry`,
/// `ActiveSession`, `SyncRecord` or `SyncedSession`. Fails as `ledgerBytes` does.
template <class Record>
void encode(JsonWriter& writer, const Record& record);

/// The canonical bytes of one record: keys sorted, so that equal records give equal bytes.
template <class Record>
[[nodiscard]] std::string canonicalJson(const Record& record)
{
    JsonWriter writer(JsonKeyOrder::sorted);
    encode(writer, record);
    return writer.take();
}

/// Reads one record from a JSON text: a `Client`, `Project`, `SyncRecord`, `SyncedSession` or
/// `LedgerSyncState`. Fails as `decodeLedger` does.
template <class Record>
[[nodiscard]] Record decodeRecord(std::string json);

} // namespace KestryCore
