#pragma once

#include "RecordValidation.h"

namespace KestryCore {

/// Checks a ledger against every rule of a sound one and fails with the `LedgerError` of the
/// first rule broken. The order is fixed: the replication state, identifiers, source identifiers,
/// then clients, projects, entries and the active session, each record through all its rules
/// before the next. Nothing is changed or repaired.
void validate(const LedgerData& ledger);

/// The same check, with the same outcome, of a ledger that was made by changing a sound one: what
/// the two share is not looked at again.
void validateChange(const LedgerData& sound, const LedgerData& changed);

} // namespace KestryCore
