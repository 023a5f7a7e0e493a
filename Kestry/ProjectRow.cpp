#include "ProjectRow.h"

#include <string_view>
#include <unordered_map>

namespace Kestry {

using KestryCore::Project;
using KestryCore::Uuid;

namespace {

using Counts = std::unordered_map<Uuid, int>;

QString projectText(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

void countSessions(const KestryCore::RecordList<KestryCore::TimeEntry>& entries, Counts& counts)
{
    for (std::size_t index = 0; index < entries.blockCount(); ++index) {
        for (const KestryCore::TimeEntry& entry : entries.block(index).records) {
            const auto found = counts.find(entry.projectID);
            if (found != counts.end()) {
                ++found->second;
            }
        }
    }
}

ProjectRow row(const Project& project, int sessionCount, const KestryCore::MoneyText& money)
{
    ProjectRow row;
    row.id = project.id;
    row.name = projectText(project.name);
    row.count = QString::number(sessionCount) + " saved sessions";
    row.rate = project.rateIsKnown ? projectText(money.rateShort(project.hourlyRateCents))
                                   : KestryCore::rateNotSet;
    row.spoken = row.name + ", " + row.count + ", " + row.rate;
    return row;
}

} // namespace

std::vector<ProjectRow> projectRows(
    const KestryCore::LedgerData& ledger, const Uuid& clientID, const KestryCore::MoneyText& money)
{
    std::vector<const Project*> projects;
    Counts counts;
    for (const Project& project : ledger.projects) {
        if (project.clientID == clientID && !project.isClientDefault) {
            projects.push_back(&project);
            counts[project.id] = 0;
        }
    }
    countSessions(ledger.entries, counts);
    std::vector<ProjectRow> rows;
    rows.reserve(projects.size());
    for (const Project* project : projects) {
        rows.push_back(row(*project, counts[project->id], money));
    }
    return rows;
}

} // namespace Kestry
