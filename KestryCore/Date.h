#pragma once

#include <cmath>
#include <compare>
#include <functional>

namespace KestryCore {

/// An instant: seconds since 2001-01-01T00:00:00Z, fractions kept. Comparisons are those of the
/// doubles, so every comparison with a NaN is false.
struct Date {
    double seconds = 0.0;

    [[nodiscard]] bool isFinite() const { return std::isfinite(seconds); }

    friend auto operator<=>(const Date&, const Date&) = default;
    friend double operator-(Date later, Date earlier) { return later.seconds - earlier.seconds; }
    friend Date operator+(Date date, double length) { return Date{date.seconds + length}; }
};

/// Seconds from 1970-01-01T00:00:00Z to the reference date 2001-01-01T00:00:00Z.
inline constexpr double referenceDateSecondsSince1970 = 978307200.0;

/// The start of year 1: earlier than any date in a ledger.
inline constexpr Date distantPast{-63114076800.0};

/// Returns the current time. Passed as an argument, so that tests can use a clock of their own.
using Clock = std::function<Date()>;

/// The machine's real-time clock.
[[nodiscard]] Date currentDate();

/// Returns seconds on a clock that nobody can set and that advances while the machine sleeps. Only
/// differences have a meaning.
using SteadyClock = std::function<double()>;

/// The seconds since the machine was started.
[[nodiscard]] double secondsSinceStart();

} // namespace KestryCore
