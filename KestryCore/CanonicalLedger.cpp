#include "CanonicalLedger.h"

#include <simdjson.h>

#include "CanonicalReader.h"
#include "MemberReader.h"

namespace KestryCore {

namespace {

using Text = std::shared_ptr<const std::string>;

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
    if (!documentEnd.starts_with('{') || !documentEnd.ends_with('}')) {
        throw NotCanonical{};
    }
    documentEnd.remove_suffix(1);
    return readRecord<LedgerSyncState>(std::string(documentEnd), JsonDocument::maximumDepth - 1);
}

LedgerData readLedger(const Text& text)
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
    if (object.takesKey("replication")) {
        ledger.replication = readReplication(reader.rest());
        return ledger;
    }
    object.end();
    if (!reader.rest().empty()) {
        throw NotCanonical{};
    }
    return ledger;
}

} // namespace

std::optional<LedgerData> readCanonicalLedger(const Text& text)
{
    // Asked first, because a damaged file mostly shows here, and reading on would be for nothing.
    if (!simdjson::validate_utf8(*text)) {
        return std::nullopt;
    }
    try {
        return readLedger(text);
    } catch (const NotCanonical&) {
        return std::nullopt;
    } catch (const LedgerError&) {
        // The reader of any JSON finds out which failure is the first.
        return std::nullopt;
    }
}

} // namespace KestryCore
