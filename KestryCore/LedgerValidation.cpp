#include "LedgerValidation.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "ClientLogo.h"
#include "LedgerError.h"
#include "SyncRecords.h"
#include "Text.h"

namespace KestryCore {

namespace {

using IdentifierSet = std::unordered_set<Uuid>;

void require(bool holds, const char* message)
{
    if (!holds) {
        throw LedgerError(message);
    }
}

template <class Record>
IdentifierSet uniqueIdentifiers(const RecordList<Record>& records)
{
    IdentifierSet identifiers;
    identifiers.reserve(records.size());
    for (const Record& record : records) {
        require(identifiers.insert(record.id).second, "Duplicate identifiers in ledger.");
    }
    return identifiers;
}

/// Sorts rather than hashes: the texts come from foreign files, which could be made so that all
/// of them fall into one bucket of a hash table.
void validateSourceIdentifiers(const LedgerData& ledger)
{
    std::vector<std::string_view> present;
    const auto note = [&](const std::optional<std::string>& sourceID) {
        if (sourceID) {
            present.push_back(*sourceID);
        }
    };
    for (const TimeEntry& entry : ledger.entries) {
        note(entry.sourceID);
    }
    if (ledger.active) {
        note(ledger.active->sourceID);
    }
    std::ranges::sort(present);
    const bool hasEmpty = !present.empty() && present.front().empty();
    require(!hasEmpty && std::ranges::adjacent_find(present) == present.end(),
        "Duplicate or empty imported source identifiers.");
}

void validateName(const std::string& name)
{
    require(!trimmed(name).empty(), "Enter a name.");
}

void validateDuration(double seconds)
{
    require(isAcceptableDuration(seconds),
        "A session must contain between 0 and 744 hours (31 days) of work.");
}

/// Runs a check over all records in order. It is told whether the record was found sound by
/// itself before, when all that can have changed is what the record refers to.
template <class Record, class Check>
void validateEach(const RecordList<Record>& records, Check check)
{
    for (std::size_t index = 0; index < records.blockCount(); ++index) {
        const auto& block = records.block(index);
        for (const Record& record : block.records) {
            check(record, block.remembered.soundByItself);
        }
        block.remembered.soundByItself = true;
    }
}

void validateClient(const Client& client, bool soundByItself)
{
    if (soundByItself) {
        return;
    }
    if (client.logoData) {
        validateClientLogo(*client.logoData);
    }
    validateName(client.name);
    require(client.hourlyRateCents >= 0, "Hourly rates cannot be negative.");
}

void validateProject(const Project& project, const IdentifierSet& clients, bool soundByItself)
{
    if (!soundByItself) {
        validateName(project.name);
    }
    require(clients.contains(project.clientID) && project.hourlyRateCents >= 0,
        "Invalid project client or hourly rate.");
}

void validateEntry(const TimeEntry& entry, const IdentifierSet& projects, bool soundByItself)
{
    require(
        projects.contains(entry.projectID) && entry.hourlyRateCents >= 0 && !entry.spans.empty(),
        "Invalid entry project, rate, or intervals.");
    if (soundByItself) {
        return;
    }
    validateIntervals(entry.spans);
    const double total = totalDuration(entry.spans);
    validateDuration(entry.duration());
    validateDuration(total);
    require(
        !entry.recordedDuration || !(total + recordedDurationTolerance < *entry.recordedDuration),
        "Recorded duration cannot exceed its work intervals.");
}

void validateActive(
    const ActiveSession& session, const IdentifierSet& projects, const IdentifierSet& entries)
{
    require(projects.contains(session.projectID) && session.hourlyRateCents >= 0
            && isValidDate(session.checkpointAt) && !entries.contains(session.id),
        "Invalid active session.");
    validateIntervals(session.spans);
    validateDuration(session.elapsed(session.checkpointAt));
    require(session.spans.empty() || !(session.checkpointAt < session.spans.back().end),
        "Invalid session checkpoint.");
    if (!session.runningSince) {
        return;
    }
    require(isValidDate(*session.runningSince) && !(session.checkpointAt < *session.runningSince),
        "Invalid running session checkpoint.");
    require(session.spans.empty() || !(*session.runningSince < session.spans.back().end),
        "Running interval overlaps saved time.");
}

} // namespace

bool isValidDate(Date date)
{
    return earliestDate <= date && date <= latestDate;
}

bool isAcceptableDuration(double seconds)
{
    return seconds >= 0.0 && seconds <= maximumSessionDuration;
}

void validateIntervals(const std::vector<TimeSpan>& spans)
{
    const TimeSpan* previous = nullptr;
    for (const TimeSpan& span : spans) {
        require(isValidDate(span.start) && isValidDate(span.end) && !(span.end < span.start),
            "Time intervals must be ordered, with dates between 1970 and 2200.");
        require(previous == nullptr || !(span.start < previous->end),
            "Time intervals overlap or are out of order.");
        previous = &span;
    }
}

void validate(const LedgerData& ledger)
{
    if (ledger.replication) {
        validateReplicationState(*ledger.replication);
    }
    const IdentifierSet clients = uniqueIdentifiers(ledger.clients);
    const IdentifierSet projects = uniqueIdentifiers(ledger.projects);
    const IdentifierSet entries = uniqueIdentifiers(ledger.entries);
    validateSourceIdentifiers(ledger);
    validateEach(ledger.clients, validateClient);
    validateEach(ledger.projects, [&](const Project& project, bool soundByItself) {
        validateProject(project, clients, soundByItself);
    });
    validateEach(ledger.entries, [&](const TimeEntry& entry, bool soundByItself) {
        validateEntry(entry, projects, soundByItself);
    });
    if (ledger.active) {
        validateActive(*ledger.active, projects, entries);
    }
}

} // namespace KestryCore
