#include "SyncSummaries.h"

#include "LedgerCoding.h"
#include "LedgerError.h"

namespace KestryCore {

namespace {

constexpr const char* separator = " · ";
constexpr const char* unpriced = "Unpriced";

std::string titleOf(const std::string& title)
{
    return title.empty() ? "Session" : title;
}

} // namespace

template <class Record>
std::string SyncSummaries::rate(const Record& record) const
{
    return record.rateIsKnown ? money_.money(static_cast<double>(record.hourlyRateCents)) + "/hr"
                              : unpriced;
}

template <class Session>
std::string SyncSummaries::value(const Session& session, double seconds) const
{
    if (!session.isBillable) {
        return "Nonbillable";
    }
    return session.rateIsKnown ? money_.money(centsFor(seconds, session.hourlyRateCents))
                               : unpriced;
}

std::string SyncSummaries::summary(const SyncedSession& session) const
{
    if (session.entry) {
        const TimeEntry& entry = *session.entry;
        return titleOf(entry.title) + separator + durationText(entry.duration()) + separator
            + rate(entry) + separator + value(entry, entry.duration()) + separator
            + moments_.dateAndTime(entry.startedAt());
    }
    if (session.active) {
        const ActiveSession& active = *session.active;
        const double elapsed = active.elapsed(active.checkpointAt);
        return titleOf(active.title) + separator + durationText(elapsed) + separator + rate(active)
            + separator + value(active, elapsed) + separator
            + (active.isPaused() ? "Paused" : "Running");
    }
    return "Saved record";
}

std::string SyncSummaries::payloadSummary(const SyncRecord& record) const
{
    if (record.recordID.starts_with("Client:")) {
        const auto client = decodeRecord<Client>(*record.payload);
        return client.name + separator + rate(client);
    }
    if (record.recordID.starts_with("Project:")) {
        const auto project = decodeRecord<Project>(*record.payload);
        return project.name + separator + rate(project);
    }
    if (record.recordID.starts_with("Session:")) {
        return summary(decodeRecord<SyncedSession>(*record.payload));
    }
    return "Saved record";
}

std::string SyncSummaries::summary(const SyncRecord& record) const
{
    if (record.isDeleted) {
        return "Deleted";
    }
    if (!record.payload) {
        return "Unavailable version";
    }
    try {
        return payloadSummary(record);
    } catch (const LedgerError&) {
        return "Unavailable version";
    }
}

} // namespace KestryCore
