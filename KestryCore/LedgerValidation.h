#pragma once

#include "RecordValidation.h"

namespace KestryCore {

/// Checks a ledger against every rule of a sound one. Throws the LedgerError of the first rule that
/// is broken. The order is fixed: the replication state, identifiers, source identifiers, then
/// clients, projects, entries and the active session, each record through all its rules before the
/// next. Changes and repairs nothing.
void validate(const LedgerData& ledger);

/// The same check, with the same result, of a ledger that was made by changing a sound one. Skips
/// what both share.
void validateChange(const LedgerData& sound, const LedgerData& changed);

} // namespace KestryCore
