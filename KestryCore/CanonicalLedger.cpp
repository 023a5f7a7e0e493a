#include "CanonicalLedger.h"

#include <simdjson.h>

#include <algorithm>

#include "CanonicalReader.h"
#include "MemberReader.h"

namespace KestryCore {

namespace {

using Text = std::shared_ptr<const std::string>;

// In texts a quotation mark has a backslash before it, and no other object has such a member.
constexpr std::string_view replicationKey = ",\"replication\":";

template <class Record>
void readList(CanonicalReader& reader, const Text& text, RecordList<Record>& list)
{
    constexpr std::size_t capacity = RecordList<Record>::blockCapacity;
    reader.expect("[");
    if (reader.takes("]")) {
        return;
    }
    bool goesOn = true;
    while (goesOn) {
        std::vector<Record> records;
        records.reserve(capacity);
        const std::size_t begin = reader.offset();
        std::size_t end = begin;
        do {
            reader.read(records.emplace_back());
            end = reader.offset();
            goesOn = reader.takes(",");
        } while (goesOn && records.size() < capacity);
        list.appendBlock(std::move(records), SharedBytes(text, begin, end));
    }
    reader.expect("]");
}

/// The state is the last member. Its maps may be of any size and are in another order than in
/// memory, so it is read as any JSON.
LedgerSyncState readReplication(std::string_view documentEnd)
{
    if (!documentEnd.starts_with(replicationKey) || !documentEnd.ends_with('}')) {
        throw NotCanonical{};
    }
    documentEnd.remove_prefix(replicationKey.size());
    documentEnd.remove_suffix(1);
    if (!documentEnd.starts_with('{') || !documentEnd.ends_with('}')) {
        throw NotCanonical{};
    }
    return readRecord<LedgerSyncState>(std::string(documentEnd), JsonDocument::maximumDepth - 1);
}

LedgerData readLedger(const Text& text, std::string_view replication)
{
    CanonicalReader reader(*text);
    CanonicalObject object(reader);
    const auto expectKey = [&](std::string_view key) {
        if (!object.takesKey(key)) {
            throw NotCanonical{};
        }
    };
    LedgerData ledger;
    expectKey("clients");
    readList(reader, text, ledger.clients);
    expectKey("projects");
    readList(reader, text, ledger.projects);
    expectKey("entries");
    readList(reader, text, ledger.entries);
    object.optional("active", ledger.active);
    if (replication.empty()) {
        object.end();
    }
    if (!reader.rest().empty()) {
        throw NotCanonical{};
    }
    if (!replication.empty()) {
        ledger.replication = readReplication(replication);
    }
    return ledger;
}

} // namespace

std::size_t replicationOffset(std::string_view document)
{
    return std::min(document.find(replicationKey), document.size());
}

std::optional<LedgerData> readCanonicalLedger(const Text& records, std::string_view replication)
{
    // Asked first, because a damaged file mostly shows here, and reading on would be for nothing.
    if (!simdjson::validate_utf8(*records) || !simdjson::validate_utf8(replication)) {
        return std::nullopt;
    }
    try {
        return readLedger(records, replication);
    } catch (const NotCanonical&) {
        return std::nullopt;
    } catch (const LedgerError&) {
        // The reader of any JSON finds out which failure is the first.
        return std::nullopt;
    }
}

} // namespace KestryCore
