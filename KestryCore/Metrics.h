#pragma once

#include <optional>
#include <vector>

#include "Calendar.h"
#include "DayTable.h"
#include "Ledger.h"

namespace KestryCore {

// Every figure below is unrounded: seconds, and fractional US cents. The session in progress counts
// as one session more, and its open interval up to the given moment, unless that moment is at or
// before the start of the interval. Nothing is remembered between calls, and nothing fails: where
// the calendar yields nothing, the figures stay at zero.

/// The totals of one calendar month.
struct MonthMetrics {
    int sessionCount = 0;          ///< Sessions with more than zero seconds inside the month.
    double earnedCents = 0.0;      ///< The sum over `daily`.
    double seconds = 0.0;          ///< The sum over `daily`.
    double projectedCents = 0.0;   ///< Carried forward to the month's end at the pace so far.
    double projectedSeconds = 0.0; ///< Carried forward in the same way.
    std::vector<DailyTotal> daily; ///< Every day of the month in order, empty ones included.
    double billableSeconds = 0.0;  ///< Of billable sessions, priced or not.
    double unpricedSeconds = 0.0;  ///< Of billable sessions without a known rate.

    friend bool operator==(const MonthMetrics&, const MonthMetrics&) = default;
};

/// The totals of one client over all time. Durations count whole, also those recorded elsewhere.
struct ClientMetrics {
    double earnedCents = 0.0;
    double seconds = 0.0;
    double monthSeconds = 0.0;          ///< Inside the month of `now`.
    double averageMonthlySeconds = 0.0; ///< `seconds` over `monthCount`; 0 without months.
    int monthCount = 0; ///< From the first session's month to the current one, both counted.
    std::optional<Date> firstSessionDate; ///< Of any span that has a length.
    double unpricedSeconds = 0.0;         ///< Of billable sessions without a known rate.

    friend bool operator==(const ClientMetrics&, const ClientMetrics&) = default;
};

/// The totals of the month of `month`, for the projects of one client or for the whole ledger.
/// Sessions are divided where the calendar's days begin, and a recorded duration is spread over the
/// spans of its session in proportion.
///
/// `month` is also how far the month has come: its day is the last whose pace is carried forward,
/// and counts whole. A running session counts up to `asOf`; by default up to `month`.
[[nodiscard]] MonthMetrics metrics(const LedgerData& ledger, Date month, const Calendar& calendar,
    const std::optional<Uuid>& clientID = {}, std::optional<Date> asOf = {});

/// The totals of a month with the session in progress added, equal to the last bit to those of a
/// ledger with that session. `saved` is the result for the ledger without it.
[[nodiscard]] MonthMetrics withSession(const MonthMetrics& saved, const ActiveSession& active,
    Date month, const Calendar& calendar, Date asOf);

/// The totals of a client's projects. A session whose project is gone belongs to no client.
[[nodiscard]] ClientMetrics clientMetrics(
    const LedgerData& ledger, const Uuid& clientID, Date now, const Calendar& calendar);

/// The totals of a client with the session in progress added, which must be on a project of that
/// client; equal to the last bit to those of a ledger with that session when `asOf` is `now`.
/// `saved` and `savedMonth` are the client's results for the ledger without it, at any date in the
/// month of `now`.
[[nodiscard]] ClientMetrics withSession(const ClientMetrics& saved, const MonthMetrics& savedMonth,
    const ActiveSession& active, Date now, const Calendar& calendar, Date asOf);

/// The date at which to ask for the totals of the month of `month`: `now` when it is in that month,
/// else the last second of that month, whose projection equals what was recorded. Nullopt when the
/// calendar does not reach that month.
[[nodiscard]] std::optional<Date> monthAnchor(Date month, Date now, const Calendar& calendar);

} // namespace KestryCore
