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

double TimeEntry::earnedCents() const
{
    if (!isBillable || !rateIsKnown) {
        return 0.0;
    }
    return duration() / secondsPerHour * static_cast<double>(hourlyRateCents);
}

Date TimeEntry::startedAt() const
{
    return spans.empty() ? distantPast : spans.front().start;
}

Date TimeEntry::endedAt() const
{
    return spans.empty() ? distantPast : spans.back().end;
}

double ActiveSession::elapsed(Date date) const
{
    const double open = runningSince ? std::max(0.0, date - *runningSince) : 0.0;
    return totalDuration(spans) + open;
}

} // namespace KestryCore
