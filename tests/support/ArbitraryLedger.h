#pragma once

#include <rapidcheck.h>

#include <iosfwd>

#include "Ledger.h"
#include "SyncState.h"

namespace KestryCore {

/// A sound ledger with anything that one may hold: logos, imported and recorded sessions, a paused
/// or running one, and a replication state with every part in use.
[[nodiscard]] rc::Gen<LedgerData> arbitraryLedger();

/// Up to a few changes of the kinds that editing makes: records added, changed and removed, the
/// active session begun, changed, saved and dropped. A removal may leave records without parent.
void editArbitrarily(LedgerData& ledger);

/// The same records in lists and maps of their own, of which nothing is remembered.
[[nodiscard]] LedgerData rebuilt(const LedgerData& ledger);

/// Shows a counterexample as its document.
void showValue(const LedgerData& ledger, std::ostream& stream);

} // namespace KestryCore
