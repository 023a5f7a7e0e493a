#include "MonthOffset.h"

namespace KestryCore {

namespace {

constexpr int monthsPerYear = 12;

/// The first day of the month that is so many months later.
CalendarDay shifted(const CalendarDay& day, int months)
{
    const long long count = 1LL * day.year * monthsPerYear + (day.month - 1) + months;
    const long long year =
        count >= 0 ? count / monthsPerYear : (count - (monthsPerYear - 1)) / monthsPerYear;
    return {static_cast<int>(year), static_cast<int>(count - year * monthsPerYear) + 1, 1};
}

} // namespace

Date monthAnchor(int monthOffset, Date now, const ZoneCalendar& calendar)
{
    const auto present = calendar.month(now);
    if (monthOffset == 0 || !present) {
        return now;
    }
    // The middle of a month is in it, whatever the clocks do at its ends.
    const Date middle = present->start + (present->end - present->start) / 2.0;
    const Date inMonth = calendar.startOfDay(shifted(calendar.day(middle), monthOffset));
    return monthAnchor(inMonth, now, calendar).value_or(now);
}

} // namespace KestryCore
