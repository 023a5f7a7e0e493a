#pragma once

#include <optional>
#include <string>

#include "Ledger.h"
#include "LedgerBytes.h"

namespace KestryCore {

/// A ledger that was read, and its bytes.
struct LedgerDocument {
    LedgerData ledger;
    /// The bytes from which it was read, when its records are written in the same bytes again;
    /// otherwise nullopt.
    std::optional<LedgerBytes> bytes;
};

/// Reads a ledger document. Throws LedgerError with the first thing wrong; OutOfMemory is one. Of
/// the rules of a sound ledger it checks client logos alone: call `validate` for the rest.
[[nodiscard]] LedgerData decodeLedger(std::string bytes);

/// Like `decodeLedger`. A document in exactly the form in which ledgers are written is read much
/// faster and with less memory, with the same result.
[[nodiscard]] LedgerDocument readLedgerDocument(std::string bytes);

} // namespace KestryCore
