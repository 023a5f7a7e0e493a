#pragma once

#include <optional>
#include <string>

#include "Ledger.h"
#include "LedgerBytes.h"

namespace KestryCore {

/// A ledger as it was read, and how.
struct LedgerDocument {
    LedgerData ledger;
    /// The bytes it was read from, when its records were written in them as they would be again.
    std::optional<LedgerBytes> bytes;
};

/// Reads a ledger document; fails with a `LedgerError` that tells the first thing wrong. A client
/// logo is checked here already, so a file with a bad one cannot be read at all. No other rule of
/// a sound ledger is.
[[nodiscard]] LedgerData decodeLedger(std::string bytes);

/// The same reading. A document in the exact form in which ledgers are written is read in a much
/// shorter time and with less memory, to the same result.
[[nodiscard]] LedgerDocument readLedgerDocument(std::string bytes);

} // namespace KestryCore
