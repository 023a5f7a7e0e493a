#include "RecentSessions.h"

#include "NewestSessions.h"

namespace Kestry {

void RecentSessions::show(const Criteria& criteria, const QString& revealID)
{
    criteria_ = criteria;
    if (!list_.isOpen()) {
        list_.open(revealID);
    } else if (list_.revealID() != revealID) {
        list_.showAnew(revealID);
    } else {
        list_.refresh(SessionList::Rows::same);
    }
}

SessionsModel::Entries RecentSessions::sessions(const KestryCore::LedgerData& ledger)
{
    if (const auto* ofMonth = std::get_if<OfMonth>(&*criteria_)) {
        return KestryCore::newestSessionsOfMonth(ledger, ofMonth->month, most);
    }
    return KestryCore::newestSessionsOfClient(
        ledger, std::get<OfClient>(*criteria_).clientID, most);
}

SessionSelection::Active RecentSessions::active(
    const KestryCore::LedgerData& ledger, KestryCore::Date /*until*/)
{
    if (const auto* ofMonth = std::get_if<OfMonth>(&*criteria_)) {
        return ofMonth->showsActive ? Active::shown : Active::hidden;
    }
    const auto* project = ledger.projects.find(ledger.active->projectID);
    const bool isOfClient = project && project->clientID == std::get<OfClient>(*criteria_).clientID;
    return isOfClient ? Active::shown : Active::hidden;
}

} // namespace Kestry
