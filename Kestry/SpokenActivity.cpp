#include "SpokenActivity.h"

#include <algorithm>

#include "SessionWords.h"

namespace Kestry {

using KestryCore::DailyTotal;

std::string spokenActivity(const KestryCore::MonthMetrics& metrics, KestryCore::Date anchor,
    const KestryCore::DayText& days)
{
    const auto count = std::ranges::count_if(
        metrics.daily, [](const DailyTotal& day) { return day.seconds > 0.0; });
    if (count == 0) {
        return "No time tracked in " + days.month(anchor) + ".";
    }
    const DailyTotal& most = *std::ranges::max_element(metrics.daily, {}, &DailyTotal::seconds);
    return spokenHoursAndMinutes(metrics.seconds) + " on " + std::to_string(count)
        + (count == 1 ? " day" : " days") + " in " + days.month(anchor) + ". The most was "
        + spokenHoursAndMinutes(most.seconds) + " on " + days.longDay(most.date) + ".";
}

} // namespace Kestry
