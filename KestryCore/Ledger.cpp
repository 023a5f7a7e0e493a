#include "Ledger.h"

#include <algorithm>

namespace KestryCore {

namespace {

constexpr double secondsPerHour = 3600.0;

} // namespace

double totalDuration(const std::vector<TimeSpan>& spans)
{
    double total = 0.0;
    for (const TimeSpan& span : spans) {
        total += span.duration();
    }
    return total;
}

double TimeEntry::duration() const
{
    return recordedDuration ? *recordedDuration : totalDuration(spans);
}

double centsFor(double seconds, Cents hourlyRateCents)
{
    return seconds / secondsPerHour * static_cast<double>(hourlyRateCents);
}

double TimeEntry::earnedCents() const
{
    return isBillable && rateIsKnown ? centsFor(duration(), hourlyRateCents) : 0.0;
}

Date TimeEntry::startedAt() const
{
    return spans.empty() ? distantPast : spans.front().start;
}

Date TimeEntry::endedAt() const
{
    return spans.empty() ? distantPast : spans.back().end;
}

double ActiveSession::earnedCents(double elapsedSeconds) const
{
    return isBillable && rateIsKnown ? centsFor(elapsedSeconds, hourlyRateCents) : 0.0;
}

double ActiveSession::elapsed(Date date) const
{
    const double open = runningSince ? std::max(0.0, date - *runningSince) : 0.0;
    return totalDuration(spans) + open;
}

} // namespace KestryCore
