#pragma once

#include "Ledger.h"
#include "Uuid.h"
#include "ZoneCalendar.h"

namespace KestryCore {

/// A made-up ledger for showing the application without anybody's data: three clients, four
/// projects, and a session on every working day of the current month up to `now`. No date is after
/// `now`. Equal arguments give equal ledgers, except for the identifiers.
[[nodiscard]] LedgerData demoLedger(
    Date now, const ZoneCalendar& calendar, const UuidSource& newUuid = Uuid::random);

} // namespace KestryCore
