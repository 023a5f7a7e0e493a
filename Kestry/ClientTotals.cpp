#include "ClientTotals.h"

namespace Kestry {

using KestryCore::ClientMetrics;
using KestryCore::Date;
using KestryCore::Uuid;

ClientMetrics ClientTotals::metrics(
    const Uuid& clientID, Date now, const KestryCore::Calendar& calendar)
{
    const Saved& totals = saved(clientID, now, calendar);
    if (!hasSession(clientID)) {
        return totals.metrics;
    }
    return KestryCore::withSession(totals.metrics, totals.monthMetrics, *store_.data()->active, now,
        calendar, store_.countedUntil(now));
}

bool ClientTotals::hasSession(const Uuid& clientID) const
{
    const KestryCore::LedgerData& ledger = *store_.data();
    const auto* project = ledger.active ? ledger.projects.find(ledger.active->projectID) : nullptr;
    return project && project->clientID == clientID;
}

const ClientTotals::Saved& ClientTotals::saved(
    const Uuid& clientID, Date now, const KestryCore::Calendar& calendar)
{
    if (!saved_ || !isStillTrue(*saved_, clientID, now)) {
        KestryCore::LedgerData finished = *store_.data();
        finished.active.reset();
        const auto interval = calendar.month(now);
        saved_ = Saved{clientID, finished.entries, finished.projects,
            interval.value_or(KestryCore::MonthInterval{}),
            KestryCore::clientMetrics(finished, clientID, now, calendar),
            KestryCore::metrics(finished, now, calendar, clientID)};
    }
    return *saved_;
}

bool ClientTotals::isStillTrue(const Saved& saved, const Uuid& clientID, Date now) const
{
    const KestryCore::LedgerData& ledger = *store_.data();
    return saved.clientID == clientID && !(now < saved.month.start) && now < saved.month.end
        && saved.entries.sharesAllWith(ledger.entries)
        && saved.projects.sharesAllWith(ledger.projects);
}

} // namespace Kestry
