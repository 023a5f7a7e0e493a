#include "RecordValidation.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "ClientLogo.h"
#include "LedgerError.h"
#include "Text.h"
#include "UuidSet.h"

namespace KestryCore {

namespace {

template <class Record>
UuidSet identifiers(const RecordList<Record>& records)
{
    UuidSet identifiers(records.size());
    for (const Record& record : records) {
        identifiers.insert(record.id);
    }
    return identifiers;
}

template <class Record>
void requireUniqueIdentifiers(const RecordList<Record>& records)
{
    UuidSet seen(records.size());
    for (const Record& record : records) {
        refuseUnless(seen.insert(record.id), "Duplicate identifiers in ledger.");
    }
}

/// What is known of a ledger before any rule is looked at.
struct Known {
    bool clients = false;           ///< Every rule that looks at the clients alone holds.
    bool projects = false;          ///< The same for the projects, but for the clients they name.
    bool entries = false;           ///< The same for the entries, but for the projects they name.
    bool sourceIdentifiers = false; ///< They differ, and none is empty.
    bool activeIsNoEntry = false;   ///< The active session's identifier is that of no entry.
};

Known knownAfterChange(const LedgerData& sound, const LedgerData& changed)
{
    Known known;
    known.clients = changed.clients.sharesAllWith(sound.clients);
    known.projects = changed.projects.sharesAllWith(sound.projects);
    known.entries = changed.entries.sharesAllWith(sound.entries);
    const bool sameActive = changed.active && sound.active && changed.active->id == sound.active->id
        && changed.active->sourceID == sound.active->sourceID;
    const bool addsNoSource = !changed.active || !changed.active->sourceID;
    known.sourceIdentifiers = known.entries && (sameActive || addsNoSource);
    known.activeIsNoEntry = known.entries && sameActive;
    return known;
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
    refuseUnless(!hasEmpty && std::ranges::adjacent_find(present) == present.end(),
        "Duplicate or empty imported source identifiers.");
}

void validateName(const std::string& name)
{
    refuseUnless(!trimmed(name).empty(), "Enter a name.");
}

void validateDuration(double seconds)
{
    refuseUnless(isAcceptableDuration(seconds),
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
    refuseUnless(client.hourlyRateCents >= 0, "Hourly rates cannot be negative.");
}

void validateProject(const Project& project, const UuidSet& clients, bool soundByItself)
{
    if (!soundByItself) {
        validateName(project.name);
    }
    refuseUnless(clients.contains(project.clientID) && project.hourlyRateCents >= 0,
        "Invalid project client or hourly rate.");
}

void validateEntry(const TimeEntry& entry, const UuidSet& projects, bool soundByItself)
{
    refuseUnless(
        projects.contains(entry.projectID) && entry.hourlyRateCents >= 0 && !entry.spans.empty(),
        "Invalid entry project, rate, or intervals.");
    if (soundByItself) {
        return;
    }
    validateIntervals(entry.spans);
    const double total = totalDuration(entry.spans);
    validateDuration(entry.duration());
    validateDuration(total);
    refuseUnless(
        !entry.recordedDuration || !(total + recordedDurationTolerance < *entry.recordedDuration),
        "Recorded duration cannot exceed its work intervals.");
}

void validateActive(const ActiveSession& session, bool projectExists, bool isSavedAlready)
{
    refuseUnless(projectExists && session.hourlyRateCents >= 0 && isValidDate(session.checkpointAt)
            && !isSavedAlready,
        "Invalid active session.");
    validateIntervals(session.spans);
    validateDuration(session.elapsed(session.checkpointAt));
    refuseUnless(session.spans.empty() || !(session.checkpointAt < session.spans.back().end),
        "Invalid session checkpoint.");
    if (!session.runningSince) {
        return;
    }
    refuseUnless(
        isValidDate(*session.runningSince) && !(session.checkpointAt < *session.runningSince),
        "Invalid running session checkpoint.");
    refuseUnless(session.spans.empty() || !(*session.runningSince < session.spans.back().end),
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
        refuseUnless(isValidDate(span.start) && isValidDate(span.end) && !(span.end < span.start),
            "Time intervals must be ordered, with dates between 1970 and 2200.");
        refuseUnless(previous == nullptr || !(span.start < previous->end),
            "Time intervals overlap or are out of order.");
        previous = &span;
    }
}

namespace {

void validateBeyond(const Known& known, const LedgerData& ledger)
{
    if (!known.clients) {
        requireUniqueIdentifiers(ledger.clients);
    }
    if (!known.projects) {
        requireUniqueIdentifiers(ledger.projects);
    }
    if (!known.entries) {
        requireUniqueIdentifiers(ledger.entries);
    }
    if (!known.sourceIdentifiers) {
        validateSourceIdentifiers(ledger);
    }
    if (!known.clients) {
        validateEach(ledger.clients, validateClient);
    }
    if (!known.clients || !known.projects) {
        const UuidSet clients = identifiers(ledger.clients);
        validateEach(ledger.projects, [&](const Project& project, bool soundByItself) {
            validateProject(project, clients, soundByItself);
        });
    }
    if (!known.projects || !known.entries) {
        const UuidSet projects = identifiers(ledger.projects);
        validateEach(ledger.entries, [&](const TimeEntry& entry, bool soundByItself) {
            validateEntry(entry, projects, soundByItself);
        });
    }
    if (ledger.active) {
        const bool isSavedAlready =
            !known.activeIsNoEntry && ledger.entries.find(ledger.active->id) != nullptr;
        const bool projectExists = ledger.projects.find(ledger.active->projectID) != nullptr;
        validateActive(*ledger.active, projectExists, isSavedAlready);
    }
}

} // namespace

void validateRecords(const LedgerData& ledger)
{
    withinMemory([&] { validateBeyond(Known{}, ledger); });
}

void validateChangedRecords(const LedgerData& sound, const LedgerData& changed)
{
    validateBeyond(knownAfterChange(sound, changed), changed);
}

} // namespace KestryCore
