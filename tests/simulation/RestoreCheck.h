#pragma once

#include "Ledger.h"

namespace KestryCore {

/// A restore of a connected ledger brings all that the backup has, and drops nothing that was
/// here; else this is a `Violation`.
void requireNothingDropped(
    const LedgerData& before, const LedgerData& backup, const LedgerData& restored);

} // namespace KestryCore
