#include "LedgerCoding.h"

#include <utility>

#include "MemberReader.h"
#include "MemberWriter.h"

namespace KestryCore {

template <class Record>
void encode(JsonWriter& writer, const Record& record)
{
    MemberWriter(writer).write(record);
}

template <class Record>
Record decodeRecord(std::string json)
{
    return readRecord<Record>(std::move(json));
}

template void encode(JsonWriter&, const Client&);
template void encode(JsonWriter&, const Project&);
template void encode(JsonWriter&, const TimeEntry&);
template void encode(JsonWriter&, const ActiveSession&);
template void encode(JsonWriter&, const SyncRecord&);
template void encode(JsonWriter&, const SyncedSession&);
template Client decodeRecord<Client>(std::string);
template Project decodeRecord<Project>(std::string);
template SyncRecord decodeRecord<SyncRecord>(std::string);
template SyncedSession decodeRecord<SyncedSession>(std::string);
template LedgerSyncState decodeRecord<LedgerSyncState>(std::string);

LedgerBytes ledgerBytes(const LedgerData& ledger)
{
    LedgerBytes bytes;
    JsonWriter writer;
    MemberWriter(writer, &bytes).write(ledger);
    bytes.append(writer.take());
    return bytes;
}

std::string encodeLedger(const LedgerData& ledger)
{
    return ledgerBytes(ledger).text();
}

} // namespace KestryCore
