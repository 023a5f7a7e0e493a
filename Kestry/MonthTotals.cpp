#include "MonthTotals.h"

namespace Kestry {

using KestryCore::Date;
using KestryCore::MonthMetrics;

MonthMetrics MonthTotals::of(Date anchor, Date now, const KestryCore::Calendar& calendar)
{
    const MonthMetrics& saved = savedMetrics(anchor, calendar);
    const auto& active = store_.data()->active;
    return active
        ? KestryCore::withSession(saved, *active, anchor, calendar, store_.countedUntil(now))
        : saved;
}

const MonthMetrics& MonthTotals::savedMetrics(Date anchor, const KestryCore::Calendar& calendar)
{
    if (!saved_ || !isStillTrue(*saved_, anchor)) {
        KestryCore::LedgerData finished = *store_.data();
        finished.active.reset();
        const Date dayStart = calendar.startOfDay(anchor);
        saved_ =
            Saved{finished.entries, dayStart, calendar.startOfNextDay(anchor).value_or(dayStart),
                KestryCore::metrics(finished, anchor, calendar)};
    }
    return saved_->metrics;
}

bool MonthTotals::isStillTrue(const Saved& saved, Date anchor) const
{
    return !(anchor < saved.dayStart) && anchor < saved.dayEnd
        && saved.entries.sharesAllWith(store_.data()->entries);
}

} // namespace Kestry
