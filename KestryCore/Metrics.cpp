#include "Metrics.h"

#include <algorithm>

#include "ActiveAsEntry.h"
#include "UuidSet.h"

namespace KestryCore {

namespace {

/// The sessions that figures are taken from.
class CountedSessions {
public:
    /// Those of one client's projects, or all.
    CountedSessions(const LedgerData& ledger, Date now, const std::optional<Uuid>& clientID)
        : ledger_(ledger), now_(now), isWhole_(!clientID), projects_(ledger.projects.size())
    {
        for (const Project& project : ledger.projects) {
            if (clientID == project.clientID) {
                projects_.insert(project.id);
            }
        }
    }

    /// Hands each to `visit` in stored order, the one in progress last.
    template <class Visit>
    void forEach(Visit visit) const
    {
        for (std::size_t index = 0; index < ledger_.entries.blockCount(); ++index) {
            for (const TimeEntry& entry : ledger_.entries.block(index).records) {
                if (counts(entry.projectID)) {
                    visit(entry);
                }
            }
        }
        if (ledger_.active && counts(ledger_.active->projectID)) {
            visit(countedEntry(*ledger_.active, now_));
        }
    }

private:
    [[nodiscard]] bool counts(const Uuid& projectID) const
    {
        return isWhole_ || projects_.contains(projectID);
    }

    const LedgerData& ledger_;
    Date now_;
    bool isWhole_;
    UuidSet projects_;
};

/// Adds sessions up within one month.
class MonthSums {
public:
    MonthSums(const MonthInterval& month, const Calendar& calendar)
        : month_(month), days_(month, calendar)
    {
    }

    /// Goes on from sums that were made before.
    void goOnFrom(const MonthMetrics& sums)
    {
        for (const DailyTotal& day : sums.daily) {
            if (const auto known = days_.dayOf(day.date)) {
                known->total = day;
            }
        }
        sums_.sessionCount = sums.sessionCount;
        sums_.billableSeconds = sums.billableSeconds;
        sums_.unpricedSeconds = sums.unpricedSeconds;
    }

    void add(const TimeEntry& entry)
    {
        if (!touchesMonth(entry)) {
            return;
        }
        const double rawSeconds = totalDuration(entry.spans);
        const double scale = rawSeconds > 0.0 ? entry.duration() / rawSeconds : 0.0;
        double seconds = 0.0;
        for (const TimeSpan& span : entry.spans) {
            addSpan(entry, span, scale, seconds);
        }
        if (seconds > 0.0) {
            ++sums_.sessionCount;
        }
    }

    /// All but what is carried forward.
    [[nodiscard]] MonthMetrics result() const
    {
        MonthMetrics result = sums_;
        result.daily = days_.totals();
        for (const DailyTotal& day : result.daily) {
            result.earnedCents += day.earnedCents;
            result.seconds += day.seconds;
        }
        return result;
    }

private:
    /// The part of a span inside the month, without length or less when there is none.
    [[nodiscard]] TimeSpan clipped(const TimeSpan& span) const
    {
        return {std::max(month_.start, span.start), std::min(month_.end, span.end)};
    }

    /// Nearly all sessions lie in other months, and nothing else is asked of them.
    [[nodiscard]] bool touchesMonth(const TimeEntry& entry) const
    {
        return std::ranges::any_of(entry.spans, [&](const TimeSpan& span) {
            const TimeSpan inside = clipped(span);
            return inside.start < inside.end;
        });
    }

    void addSpan(const TimeEntry& entry, const TimeSpan& span, double scale, double& seconds)
    {
        TimeSpan rest = clipped(span);
        while (rest.start < rest.end) {
            const auto day = days_.dayOf(rest.start);
            if (!day) {
                return;
            }
            const Date end = std::min(day->end, rest.end);
            const double slice = (end - rest.start) * scale;
            addSlice(entry, slice, day->total);
            seconds += slice;
            rest.start = end;
        }
    }

    void addSlice(const TimeEntry& entry, double seconds, DailyTotal& day)
    {
        day.seconds += seconds;
        if (!entry.isBillable) {
            return;
        }
        sums_.billableSeconds += seconds;
        if (entry.rateIsKnown) {
            day.earnedCents += centsFor(seconds, entry.hourlyRateCents);
        } else {
            sums_.unpricedSeconds += seconds;
        }
    }

    MonthInterval month_;
    DayTable days_;
    MonthMetrics sums_; // the days and what is summed over them are added at the end
};

bool isUnpriced(const TimeEntry& entry)
{
    return entry.isBillable && !entry.rateIsKnown;
}

/// Not the first span of the first session: sessions are stored in the order of saving.
void noteFirstDate(const TimeEntry& entry, std::optional<Date>& first)
{
    for (const TimeSpan& span : entry.spans) {
        if (span.end > span.start && (!first || span.start < *first)) {
            first = span.start;
        }
    }
}

/// From the month of the first session to that of `now`, both counted. A first session that is
/// yet to come counts as one of this month.
int countMonths(const std::optional<Date>& first, Date now, const Calendar& calendar)
{
    if (!first) {
        return 0;
    }
    const auto from = calendar.month(*first);
    const auto to = calendar.month(now);
    if (!from || !to) {
        return 0;
    }
    return std::max(1, calendar.monthsBetween(from->start, to->start) + 1);
}

/// Adds what counts of a session over all time.
void addWhole(const TimeEntry& entry, ClientMetrics& sums)
{
    const double seconds = entry.duration();
    sums.seconds += seconds;
    sums.earnedCents += entry.earnedCents();
    sums.unpricedSeconds += isUnpriced(entry) ? seconds : 0.0;
    noteFirstDate(entry, sums.firstSessionDate);
}

/// Works out what follows from the sums at a date.
void conclude(ClientMetrics& sums, double monthSeconds, Date now, const Calendar& calendar)
{
    sums.monthSeconds = monthSeconds;
    sums.monthCount = countMonths(sums.firstSessionDate, now, calendar);
    sums.averageMonthlySeconds = sums.monthCount > 0 ? sums.seconds / sums.monthCount : 0.0;
}

/// At the daily pace to the end of the month. On its last day that is what there is, to the last
/// bit: dividing and multiplying again could round it to something else.
double carriedForward(double total, int elapsedDays, int dayCount)
{
    return elapsedDays == dayCount ? total : total / elapsedDays * dayCount;
}

/// The totals of the month that holds a date, from sums that `addAll` is to make.
template <class AddAll>
MonthMetrics monthMetrics(Date month, const Calendar& calendar, AddAll addAll)
{
    const auto interval = calendar.month(month);
    const auto dayCount = calendar.daysInMonth(month);
    if (!interval || !dayCount) {
        return {};
    }
    MonthSums sums(*interval, calendar);
    addAll(sums);
    MonthMetrics result = sums.result();
    const int elapsedDays = std::max(1, calendar.dayOfMonth(month));
    result.projectedCents = carriedForward(result.earnedCents, elapsedDays, *dayCount);
    result.projectedSeconds = carriedForward(result.seconds, elapsedDays, *dayCount);
    return result;
}

} // namespace

MonthMetrics metrics(const LedgerData& ledger, Date month, const Calendar& calendar,
    const std::optional<Uuid>& clientID, std::optional<Date> asOf)
{
    return monthMetrics(month, calendar, [&](MonthSums& sums) {
        CountedSessions(ledger, asOf.value_or(month), clientID)
            .forEach([&](const TimeEntry& entry) { sums.add(entry); });
    });
}

MonthMetrics withSession(const MonthMetrics& saved, const ActiveSession& active, Date month,
    const Calendar& calendar, Date asOf)
{
    return monthMetrics(month, calendar, [&](MonthSums& sums) {
        sums.goOnFrom(saved);
        sums.add(countedEntry(active, asOf));
    });
}

ClientMetrics clientMetrics(
    const LedgerData& ledger, const Uuid& clientID, Date now, const Calendar& calendar)
{
    ClientMetrics result;
    CountedSessions(ledger, now, clientID).forEach([&](const TimeEntry& entry) {
        addWhole(entry, result);
    });
    conclude(result, metrics(ledger, now, calendar, clientID, now).seconds, now, calendar);
    return result;
}

ClientMetrics withSession(const ClientMetrics& saved, const MonthMetrics& savedMonth,
    const ActiveSession& active, Date now, const Calendar& calendar, Date asOf)
{
    ClientMetrics result = saved;
    addWhole(countedEntry(active, asOf), result);
    const MonthMetrics month = withSession(savedMonth, active, now, calendar, asOf);
    conclude(result, month.seconds, now, calendar);
    return result;
}

std::optional<Date> monthAnchor(Date month, Date now, const Calendar& calendar)
{
    const auto interval = calendar.month(month);
    if (!interval) {
        return std::nullopt;
    }
    const bool isCurrent = !(now < interval->start) && now < interval->end;
    return isCurrent ? now : interval->end + -1.0;
}

} // namespace KestryCore
