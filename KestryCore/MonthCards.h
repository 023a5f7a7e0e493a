#pragma once

#include <string>

#include "Metrics.h"
#include "TextForms.h"

namespace KestryCore {

/// Whether a month is the one of today, which goes on, or another.
enum class ShownMonth { current, other };

/// A figure with a line below it.
struct MonthCard {
    std::string value;
    std::string line;

    friend bool operator==(const MonthCard&, const MonthCard&) = default;
};

/// What the totals of a month say: what was recorded, and where the month is heading. Earnings of a
/// month with unpriced time are not carried forward.
struct MonthCards {
    MonthCard billableEarnings;
    MonthCard trackedTime;
    MonthCard projectedEarnings;
    MonthCard projectedTime;

    friend bool operator==(const MonthCards&, const MonthCards&) = default;
};

[[nodiscard]] MonthCards monthCards(
    const MonthMetrics& metrics, ShownMonth month, const MoneyText& words);

} // namespace KestryCore
