#pragma once

#include <string>

#include "DayText.h"
#include "Metrics.h"

namespace Kestry {

/// The chart of a month in words: "14 hours 30 minutes on 9 days in March 2026. The most was 6
/// hours 20 minutes on March 14." `anchor` is a date in the month.
[[nodiscard]] std::string spokenActivity(const KestryCore::MonthMetrics& metrics,
    KestryCore::Date anchor, const KestryCore::DayText& days);

} // namespace Kestry
