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
        // Two texts, because the first one stays in memory as long as its records.
        const std::size_t end = replicationOffset(bytes);
        const auto replication = std::make_shared<std::string>(bytes, end);
        if (!replication->empty()) {
            bytes.resize(end);
            bytes.shrink_to_fit();
        }
        const auto records = std::make_shared<std::string>(std::move(bytes));
        if (std::optional<LedgerData> ledger = readCanonicalLedger(records, *replication)) {
            LedgerBytes whole;
            whole.append(SharedBytes(records));
            if (!replication->empty()) {
                whole.append(SharedBytes(replication));
            }
            return {std::move(*ledger), std::move(whole)};
        }
        return {readRecord<LedgerData>(std::move(*records) + *replication), std::nullopt};
    });
}

LedgerData decodeLedger(std::string bytes)
{
    return readLedgerDocument(std::move(bytes)).ledger;
}

} // namespace KestryCore
