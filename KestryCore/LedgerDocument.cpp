#include "LedgerDocument.h"

#include <memory>
#include <utility>

#include "CanonicalLedger.h"
#include "LedgerError.h"
#include "MemberReader.h"

namespace KestryCore {

LedgerDocument readLedgerDocument(std::string bytes)
{
    return withinMemory([&]() -> LedgerDocument {
        auto text = std::make_shared<std::string>(std::move(bytes));
        if (std::optional<LedgerData> ledger = readCanonicalLedger(text)) {
            LedgerBytes whole;
            whole.append(SharedBytes(std::move(text)));
            return {std::move(*ledger), std::move(whole)};
        }
        return {readRecord<LedgerData>(std::move(*text)), std::nullopt};
    });
}

LedgerData decodeLedger(std::string bytes)
{
    return readLedgerDocument(std::move(bytes)).ledger;
}

} // namespace KestryCore
