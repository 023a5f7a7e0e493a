#include "PlainMetrics.h"

#include <algorithm>
#include <map>
#include <set>

namespace KestryCore {

namespace {

bool isOfClient(const LedgerData& ledger, const TimeEntry& entry, const Uuid& clientID)
{
    return std::ranges::any_of(ledger.projects, [&](const Project& project) {
        return project.id == entry.projectID && project.clientID == clientID;
    });
}

using Days = std::map<double, DailyTotal>;

Days emptyDays(const MonthInterval& month, const Calendar& calendar)
{
    Days days;
    Date date = month.start;
    while (date < month.end) {
        days[date.seconds].date = date;
        const std::optional<Date> next = calendar.startOfNextDay(date);
        if (!next || *next <= date) {
            break;
        }
        date = *next;
    }
    return days;
}

} // namespace

std::vector<TimeEntry> plainSessions(
    const LedgerData& ledger, Date now, const std::optional<Uuid>& clientID)
{
    std::vector<TimeEntry> sessions(ledger.entries.begin(), ledger.entries.end());
    if (ledger.active) {
        const ActiveSession& active = *ledger.active;
        TimeEntry last{active.id, active.projectID, active.title, active.hourlyRateCents,
            active.spans, active.isBillable, active.rateIsKnown, std::nullopt, active.sourceID};
        if (active.runningSince && *active.runningSince < now) {
            last.spans.push_back({*active.runningSince, now});
        }
        sessions.push_back(last);
    }
    if (clientID) {
        std::erase_if(sessions,
            [&](const TimeEntry& entry) { return !isOfClient(ledger, entry, *clientID); });
    }
    return sessions;
}

double plainScale(const TimeEntry& entry)
{
    double raw = 0.0;
    for (const TimeSpan& span : entry.spans) {
        raw += span.end.seconds - span.start.seconds;
    }
    return raw > 0.0 ? entry.recordedDuration.value_or(raw) / raw : 0.0;
}

MonthMetrics plainMetrics(const LedgerData& ledger, Date month, const Calendar& calendar,
    const std::optional<Uuid>& clientID, std::optional<Date> asOf)
{
    MonthMetrics result;
    const auto interval = calendar.month(month);
    const auto dayCount = calendar.daysInMonth(month);
    if (!interval || !dayCount) {
        return result;
    }
    Days days = emptyDays(*interval, calendar);
    for (const TimeEntry& entry : plainSessions(ledger, asOf ? *asOf : month, clientID)) {
        const double scale = plainScale(entry);
        double sessionSeconds = 0.0;
        for (const TimeSpan& span : entry.spans) {
            double cursor = std::max(interval->start.seconds, span.start.seconds);
            const double stop = std::min(interval->end.seconds, span.end.seconds);
            while (cursor < stop) {
                const Date day = calendar.startOfDay(Date{cursor});
                const std::optional<Date> nextDay = calendar.startOfNextDay(Date{cursor});
                if (!nextDay || nextDay->seconds <= cursor) {
                    break;
                }
                const double sliceEnd = std::min(nextDay->seconds, stop);
                const double seconds = (sliceEnd - cursor) * scale;
                DailyTotal& total = days[day.seconds];
                total.date = day;
                total.seconds += seconds;
                if (entry.isBillable) {
                    result.billableSeconds += seconds;
                }
                if (entry.isBillable && entry.rateIsKnown) {
                    total.earnedCents += seconds / 3600.0 * double(entry.hourlyRateCents);
                }
                if (entry.isBillable && !entry.rateIsKnown) {
                    result.unpricedSeconds += seconds;
                }
                sessionSeconds += seconds;
                cursor = sliceEnd;
            }
        }
        result.sessionCount += sessionSeconds > 0.0 ? 1 : 0;
    }
    for (const auto& [date, total] : days) {
        result.daily.push_back(total);
        result.earnedCents += total.earnedCents;
        result.seconds += total.seconds;
    }
    const int elapsed = std::max(calendar.dayOfMonth(month), 1);
    // Nothing is left to carry forward on the last day.
    const bool isLastDay = elapsed == *dayCount;
    result.projectedCents =
        isLastDay ? result.earnedCents : result.earnedCents / elapsed * *dayCount;
    result.projectedSeconds = isLastDay ? result.seconds : result.seconds / elapsed * *dayCount;
    return result;
}

ClientMetrics plainClientMetrics(
    const LedgerData& ledger, const Uuid& clientID, Date now, const Calendar& calendar)
{
    ClientMetrics result;
    std::set<double> starts;
    for (const TimeEntry& entry : plainSessions(ledger, now, clientID)) {
        double duration = 0.0;
        for (const TimeSpan& span : entry.spans) {
            duration += span.end.seconds - span.start.seconds;
            if (span.end > span.start) {
                starts.insert(span.start.seconds);
            }
        }
        duration = entry.recordedDuration ? *entry.recordedDuration : duration;
        result.seconds += duration;
        if (entry.isBillable && entry.rateIsKnown) {
            result.earnedCents += duration / 3600.0 * double(entry.hourlyRateCents);
        } else if (entry.isBillable) {
            result.unpricedSeconds += duration;
        }
    }
    result.monthSeconds = plainMetrics(ledger, now, calendar, clientID, now).seconds;
    if (!starts.empty()) {
        result.firstSessionDate = Date{*starts.begin()};
        const auto first = calendar.month(*result.firstSessionDate);
        const auto last = calendar.month(now);
        if (first && last) {
            result.monthCount = std::max(calendar.monthsBetween(first->start, last->start) + 1, 1);
        }
    }
    if (result.monthCount != 0) {
        result.averageMonthlySeconds = result.seconds / result.monthCount;
    }
    return result;
}

} // namespace KestryCore
