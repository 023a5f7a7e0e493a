#include "NewestSessions.h"

#include <algorithm>

#include "UuidSet.h"

namespace KestryCore {

namespace {

bool isNewer(const TimeEntry* left, const TimeEntry* right)
{
    const Date leftStart = left->startedAt();
    const Date rightStart = right->startedAt();
    return leftStart != rightStart ? leftStart > rightStart : left->id < right->id;
}

/// Few are kept while many go by, so that nothing is sorted that is not shown.
template <class Counts>
std::vector<const TimeEntry*> newest(const LedgerData& ledger, std::size_t count, Counts counts)
{
    std::vector<const TimeEntry*> kept;
    kept.reserve(count + 1);
    for (const TimeEntry& entry : ledger.entries) {
        if (!counts(entry)) {
            continue;
        }
        kept.insert(std::ranges::upper_bound(kept, &entry, isNewer), &entry);
        if (kept.size() > count) {
            kept.pop_back();
        }
    }
    return kept;
}

} // namespace

std::vector<const TimeEntry*> newestSessionsOfMonth(
    const LedgerData& ledger, const MonthInterval& month, std::size_t count)
{
    const auto isInMonth = [&](const TimeSpan& span) {
        return span.start < month.end && span.end > month.start;
    };
    return newest(ledger, count,
        [&](const TimeEntry& entry) { return std::ranges::any_of(entry.spans, isInMonth); });
}

std::vector<const TimeEntry*> newestSessionsOfClient(
    const LedgerData& ledger, const Uuid& clientID, std::size_t count)
{
    UuidSet projects(ledger.projects.size());
    for (const Project& project : ledger.projects) {
        if (project.clientID == clientID) {
            projects.insert(project.id);
        }
    }
    return newest(
        ledger, count, [&](const TimeEntry& entry) { return projects.contains(entry.projectID); });
}

} // namespace KestryCore
