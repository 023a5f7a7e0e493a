#include "SessionFacts.h"

#include <utility>

#include "SessionValue.h"

namespace Kestry {

using KestryCore::Date;
using KestryCore::LedgerData;
using KestryCore::MonthMetrics;

namespace {

constexpr const char* explanation =
    "Billable earnings across all clients this month, including this session.";
constexpr const char* explanationWithUnpriced =
    "Billable earnings across all clients, including this session. "
    "Time without a rate is excluded.";

} // namespace

SessionFacts::SessionFacts(const KestryCore::TimeStore& store, KestryCore::MoneyText words)
    : store_(store), words_(std::move(words))
{
}

std::string SessionFacts::sessionValue(Date now) const
{
    const auto& active = store_.data()->active;
    return active ? KestryCore::valueText(*active, store_.elapsed(now), words_) : std::string();
}

SessionFacts::Month SessionFacts::month(Date now, const KestryCore::Calendar& calendar)
{
    MonthMetrics total = savedMetrics(now, calendar);
    if (const auto& active = store_.data()->active) {
        total = KestryCore::withSession(total, *active, now, calendar, store_.countedUntil(now));
    }
    return {words_.money(total.earnedCents),
        total.unpricedSeconds > 0.0 ? explanationWithUnpriced : explanation};
}

const MonthMetrics& SessionFacts::savedMetrics(Date now, const KestryCore::Calendar& calendar)
{
    if (!saved_ || !isStillTrue(*saved_, now)) {
        LedgerData finished = *store_.data();
        finished.active.reset();
        const auto interval = calendar.month(now);
        saved_ = Saved{finished.entries, interval.value_or(KestryCore::MonthInterval{}),
            KestryCore::metrics(finished, now, calendar)};
    }
    return saved_->metrics;
}

bool SessionFacts::isStillTrue(const Saved& saved, Date now) const
{
    return !(now < saved.month.start) && now < saved.month.end
        && saved.entries.sharesAllWith(store_.data()->entries);
}

} // namespace Kestry
