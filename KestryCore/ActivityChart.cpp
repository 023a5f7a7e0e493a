#include "ActivityChart.h"

#include <algorithm>
#include <cmath>

#include "TextForms.h"

namespace KestryCore {

namespace {

constexpr double secondsInHour = 3600.0;
constexpr double leastMaximumHours = 4.0;
constexpr double leastBusyHeight = 5.0;
constexpr double leastIdleHeight = 3.0;

std::string hoursLabel(double hours)
{
    return std::to_string(static_cast<long long>(hours)) + "h";
}

} // namespace

ActivityScale::ActivityScale(const std::vector<DailyTotal>& daily)
{
    double most = 0.0;
    for (const DailyTotal& day : daily) {
        most = std::max(most, day.seconds / secondsInHour);
    }
    maximumHours = std::max(leastMaximumHours, std::ceil(most / 2.0) * 2.0);
}

std::array<std::string, 3> ActivityScale::labels() const
{
    return {hoursLabel(maximumHours), hoursLabel(maximumHours / 2.0), hoursLabel(0.0)};
}

double ActivityBar::height() const
{
    const double hours = day.seconds / secondsInHour;
    const double least = day.seconds > 0.0 ? leastBusyHeight : leastIdleHeight;
    return std::max(least, hours / maximumHours * activityChartHeight);
}

ActivityLook ActivityBar::look(Date today) const
{
    if (day.date > today) {
        return ActivityLook::later;
    }
    if (day.date == today) {
        return ActivityLook::today;
    }
    return day.seconds > 0.0 ? ActivityLook::busy : ActivityLook::idle;
}

std::string ActivityBar::text(const DayText& days) const
{
    return days.shortDay(day.date) + ": " + durationText(day.seconds);
}

std::vector<ActivityBar> activityBars(const std::vector<DailyTotal>& daily)
{
    const double maximumHours = ActivityScale(daily).maximumHours;
    std::vector<ActivityBar> bars;
    bars.reserve(daily.size());
    for (const DailyTotal& day : daily) {
        bars.push_back({day, maximumHours, static_cast<int>(bars.size())});
    }
    return bars;
}

} // namespace KestryCore
