#pragma once

#include "Ledger.h"
#include "Uuid.h"
#include "ZoneCalendar.h"

namespace KestryCore {

/// A made-up ledger for showing the application without anybody's data: three clients, four
/// projects, and a session on every working day of the current month up to `now`. Built afresh
/// each time, with new identifiers; equal in everything else on equal arguments. Nothing in it
/// lies in the future.
[[nodiscard]] LedgerData demoLedger(
    Date now, const ZoneCalendar& calendar, const UuidSource& newUuid = Uuid::random);

} // namespace KestryCore
