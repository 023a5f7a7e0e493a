#pragma once

#include <functional>
#include <optional>

#include "Calendar.h"

namespace KestryCore {

/// A calendar that answers as another one does, but for the answers that a test replaces.
class StandInCalendar final : public Calendar {
public:
    /// The other calendar must outlive it.
    explicit StandInCalendar(const Calendar& real) : real_(real) { }

    std::function<std::optional<MonthInterval>(Date)> monthAnswer;
    std::function<std::optional<int>(Date)> daysInMonthAnswer;
    std::function<int(Date)> dayOfMonthAnswer;
    std::function<std::optional<Date>(Date)> startOfNextDayAnswer;

    [[nodiscard]] std::optional<MonthInterval> month(Date date) const override
    {
        return monthAnswer ? monthAnswer(date) : real_.month(date);
    }
    [[nodiscard]] std::optional<int> daysInMonth(Date date) const override
    {
        return daysInMonthAnswer ? daysInMonthAnswer(date) : real_.daysInMonth(date);
    }
    [[nodiscard]] int dayOfMonth(Date date) const override
    {
        return dayOfMonthAnswer ? dayOfMonthAnswer(date) : real_.dayOfMonth(date);
    }
    [[nodiscard]] int monthsBetween(Date from, Date to) const override
    {
        return real_.monthsBetween(from, to);
    }
    [[nodiscard]] Date startOfDay(Date date) const override { return real_.startOfDay(date); }
    [[nodiscard]] std::optional<Date> startOfNextDay(Date date) const override
    {
        return startOfNextDayAnswer ? startOfNextDayAnswer(date) : real_.startOfNextDay(date);
    }

private:
    const Calendar& real_;
};

} // namespace KestryCore
