#pragma once

#include "Metrics.h"
#include "ZoneCalendar.h"

namespace KestryCore {

/// The date at which to ask for the totals of a month that is `monthOffset` months after the
/// present one: `now` for 0, else the last second of that month. `now` also where the calendar does
/// not reach that month.
[[nodiscard]] Date monthAnchor(int monthOffset, Date now, const ZoneCalendar& calendar);

} // namespace KestryCore
