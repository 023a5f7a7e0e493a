#pragma once

#include <array>
#include <string>
#include <vector>

#include "DayTable.h"
#include "DayText.h"

namespace KestryCore {

// The chart of a month's days, without a picture: lengths are in device-independent pixels.

/// The height of the chart, and so of a day that reaches the top of its scale.
inline constexpr double activityChartHeight = 138.0;

/// The scale of a chart: an even number of hours, at least 4, that no day of the month exceeds.
struct ActivityScale {
    explicit ActivityScale(const std::vector<DailyTotal>& daily);

    double maximumHours = 0.0;

    /// The labels of the axis from the top: "10h", "5h", "0h".
    [[nodiscard]] std::array<std::string, 3> labels() const;

    friend bool operator==(const ActivityScale&, const ActivityScale&) = default;
};

/// How a day is drawn: later than today, today, and earlier days with time and without.
enum class ActivityLook { later, today, busy, idle };

/// One day in the chart.
struct ActivityBar {
    DailyTotal day;
    double maximumHours = 0.0;
    int index = 0; ///< Of the day in its month, from 0.

    /// A day with time is at least 5 high, one without time is 3.
    [[nodiscard]] double height() const;
    /// `today` is the first moment of today.
    [[nodiscard]] ActivityLook look(Date today) const;
    /// "Mar 14: 2h 30m"
    [[nodiscard]] std::string text(const DayText& days) const;

    friend bool operator==(const ActivityBar&, const ActivityBar&) = default;
};

/// One bar for each day, in their order.
[[nodiscard]] std::vector<ActivityBar> activityBars(const std::vector<DailyTotal>& daily);

} // namespace KestryCore
