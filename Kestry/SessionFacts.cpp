#include "SessionFacts.h"

#include <utility>

#include "SessionValue.h"

namespace Kestry {

using KestryCore::Date;

namespace {

constexpr const char* explanation =
    "Billable earnings across all clients this month, including this session.";
constexpr const char* explanationWithUnpriced =
    "Billable earnings across all clients, including this session. "
    "Time without a rate is excluded.";

} // namespace

SessionFacts::SessionFacts(const KestryCore::TimeStore& store, KestryCore::MoneyText words)
    : store_(store), words_(std::move(words)), totals_(store)
{
}

std::string SessionFacts::sessionValue(Date now) const
{
    const auto& active = store_.data()->active;
    return active ? KestryCore::valueText(*active, store_.elapsed(now), words_) : std::string();
}

SessionFacts::Month SessionFacts::month(Date now, const KestryCore::Calendar& calendar)
{
    const KestryCore::MonthMetrics total = totals_.of(now, now, calendar);
    return {words_.money(total.earnedCents),
        total.unpricedSeconds > 0.0 ? explanationWithUnpriced : explanation};
}

} // namespace Kestry
