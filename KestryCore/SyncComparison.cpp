#include "SyncComparison.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "LedgerCoding.h"
#include "LedgerError.h"
#include "RecordIndex.h"

namespace KestryCore {
namespace {

constexpr const char* noValue = "—";

std::string yesOrNo(bool value)
{
    return value ? "Yes" : "No";
}

/// "Harbour Books", or what is said of a client that the ledger does not have.
std::string nameOf(const Client* client)
{
    return client != nullptr ? client->name : "Unknown client";
}

std::string nameOf(const Project* project, const Client* client)
{
    if (project == nullptr) {
        return "Unknown project";
    }
    return project->isClientDefault ? nameOf(client) : nameOf(client) + " · " + project->name;
}

std::string logoText(const Client& client)
{
    constexpr std::size_t bytesOfKilobyte = 1000;
    if (!client.logoData) {
        return "None";
    }
    const std::size_t kilobytes = (client.logoData->size() + bytesOfKilobyte - 1) / bytesOfKilobyte;
    return "Image, " + std::to_string(kilobytes) + " KB";
}

} // namespace

/// A record's properties in their order, or why there are none.
struct SyncComparison::Version {
    std::string state;
    std::vector<std::pair<std::string, std::string>> values;

    void add(std::string name, std::string value)
    {
        values.emplace_back(std::move(name), std::move(value));
    }
    [[nodiscard]] std::string value(std::size_t row) const
    {
        return row < values.size() ? values[row].second : noValue;
    }
};

std::string SyncComparison::rate(Cents cents, bool isKnown) const
{
    return isKnown ? money_.money(static_cast<double>(cents)) + "/hr" : "Unpriced";
}

template <class Work>
std::string SyncComparison::value(const Work& work, double seconds) const
{
    if (!work.isBillable) {
        return "Nonbillable";
    }
    return work.rateIsKnown ? money_.money(centsFor(seconds, work.hourlyRateCents)) : "Unpriced";
}

void SyncComparison::describeTimes(const SyncedSession& session, Version& version) const
{
    if (session.entry) {
        const TimeEntry& entry = *session.entry;
        version.add("Started", moments_.dateAndTime(entry.startedAt()));
        version.add("Ended", moments_.dateAndTime(entry.endedAt()));
        version.add("Duration", clockText(entry.duration()));
        version.add("Intervals", std::to_string(entry.spans.size()));
        return;
    }
    const ActiveSession& active = *session.active;
    const std::size_t open = active.isPaused() ? 0 : 1;
    const Date started = active.spans.empty() ? active.runningSince.value_or(active.checkpointAt)
                                              : active.spans.front().start;
    version.add("Started", moments_.dateAndTime(started));
    version.add("Ended", active.isPaused() ? "Paused" : "Running");
    version.add("Duration", clockText(active.elapsed(active.checkpointAt)));
    version.add("Intervals", std::to_string(active.spans.size() + open));
}

void SyncComparison::describe(
    const SyncRecord& record, const LedgerData& ledger, Version& version) const
{
    const RecordIndex index(ledger);
    if (record.recordID.starts_with("Client:")) {
        const auto client = decodeRecord<Client>(*record.payload);
        version.add("Name", client.name);
        version.add("Rate", rate(client.hourlyRateCents, client.rateIsKnown));
        version.add("Projects", yesOrNo(client.projectsEnabled));
        version.add("Color", "#" + client.colorHex);
        version.add("Logo", logoText(client));
        return;
    }
    if (record.recordID.starts_with("Project:")) {
        const auto project = decodeRecord<Project>(*record.payload);
        version.add("Name", project.name);
        version.add("Client", nameOf(index.client(project.clientID)));
        version.add("Rate", rate(project.hourlyRateCents, project.rateIsKnown));
        return;
    }
    const auto session = decodeRecord<SyncedSession>(*record.payload);
    if (!session.entry && !session.active) {
        version.state = "Unavailable";
        return;
    }
    const auto describeWork = [&](const auto& work, double seconds) {
        const Project* project = index.project(work.projectID);
        version.add("Title", work.title.empty() ? "Session" : work.title);
        version.add("Project", nameOf(project, index.clientOf(project)));
        describeTimes(session, version);
        version.add("Rate", rate(work.hourlyRateCents, work.rateIsKnown));
        version.add("Billable", yesOrNo(work.isBillable));
        version.add("Value", value(work, seconds));
    };
    if (session.entry) {
        describeWork(*session.entry, session.entry->duration());
    } else {
        describeWork(*session.active, session.active->elapsed(session.active->checkpointAt));
    }
    version.add("Device", session.ownerName);
}

SyncComparison::Version SyncComparison::version(
    const SyncRecord& record, const LedgerData& ledger) const
{
    Version version;
    if (record.isDeleted) {
        version.state = "Deleted";
        return version;
    }
    try {
        if (!record.payload) {
            throw LedgerError("no payload");
        }
        describe(record, ledger, version);
    } catch (const LedgerError&) {
        version = {"Unavailable", {}};
    }
    return version;
}

std::vector<ComparedField> SyncComparison::fields(
    const SyncConflict& conflict, const LedgerData& ledger) const
{
    const Version local = version(conflict.local, ledger);
    const Version remote = version(conflict.remote, ledger);
    std::vector<ComparedField> fields;
    if (!local.state.empty() || !remote.state.empty()) {
        const auto stateOf = [](const Version& version) {
            return version.state.empty() ? "Kept" : version.state;
        };
        fields.push_back({"Record", stateOf(local), stateOf(remote), local.state != remote.state});
    }
    const auto& named = local.values.empty() ? remote.values : local.values;
    for (std::size_t row = 0; row < named.size(); ++row) {
        const bool hasBoth = !local.values.empty() && !remote.values.empty();
        fields.push_back({named[row].first, local.value(row), remote.value(row),
            hasBoth && local.value(row) != remote.value(row)});
    }
    const bool showsDifference = std::ranges::any_of(fields, &ComparedField::differs);
    if (!showsDifference && conflict.local.payload != conflict.remote.payload) {
        fields.push_back({"Other details", "This version", "Another version", true});
    }
    return fields;
}

} // namespace KestryCore
