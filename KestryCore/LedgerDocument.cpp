#include "LedgerDocument.h"

#include <memory>
#include <utility>

#include "CanonicalLedger.h"
#include "LedgerCoding.h"
#include "LedgerError.h"
#include "SyncState.h"

namespace KestryCore {

namespace {

/// Reads any JSON form of a ledger.
LedgerData readAnyForm(std::string bytes)
{
    const JsonDocument document(std::move(bytes));
    JsonObject object(document.root());
    LedgerData ledger;
    object.read("clients", ledger.clients);
    object.read("projects", ledger.projects);
    object.read("entries", ledger.entries);
    object.readOptional("active", ledger.active);
    if (auto state = object.optional<LedgerSyncState>("replication")) {
        ledger.replication = std::move(*state);
    }
    return ledger;
}

} // namespace

LedgerDocument readLedgerDocument(std::string bytes)
{
    return withinMemory([&]() -> LedgerDocument {
        auto text = std::make_shared<std::string>(std::move(bytes));
        if (std::optional<LedgerData> ledger = readCanonicalLedger(text)) {
            LedgerBytes whole;
            whole.append(SharedBytes(std::move(text)));
            return {std::move(*ledger), std::move(whole)};
        }
        return {readAnyForm(std::move(*text)), std::nullopt};
    });
}

LedgerData decodeLedger(std::string bytes)
{
    return readLedgerDocument(std::move(bytes)).ledger;
}

} // namespace KestryCore
