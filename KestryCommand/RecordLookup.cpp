#include "RecordLookup.h"

#include <algorithm>

#include "PlainText.h"
#include "Spelling.h"
#include "Text.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::LedgerData;
using KestryCore::Project;
using KestryCore::TimeEntry;
using KestryCore::Uuid;

namespace {

using Records = std::vector<NamedRecord>;

template <class Matches>
Records filtered(const Records& records, Matches matches)
{
    Records result;
    std::ranges::copy_if(records, std::back_inserter(result), matches);
    return result;
}

/// The records that match a name by the strictest rule that matches any.
Records meant(std::string_view name, const Records& records)
{
    auto exact = filtered(records, [&](const NamedRecord& record) { return record.name == name; });
    if (!exact.empty()) {
        return exact;
    }
    const std::string folded = KestryCore::foldedCase(name);
    auto inAnyCase = filtered(records,
        [&](const NamedRecord& record) { return KestryCore::foldedCase(record.name) == folded; });
    if (!inAnyCase.empty()) {
        return inAnyCase;
    }
    return filtered(records, [&](const NamedRecord& record) {
        return KestryCore::foldedCase(record.name).starts_with(folded);
    });
}

std::string ambiguity(std::string_view name, const Records& candidates)
{
    constexpr std::size_t mostShown = 10;
    std::string message = "\"" + printable(name) + "\" may mean any of these:";
    for (std::size_t index = 0; index < std::min(candidates.size(), mostShown); ++index) {
        const NamedRecord& candidate = candidates[index];
        message += "\n  " + candidate.id.text() + "  " + printable(candidate.name)
            + (candidate.detail.empty() ? "" : "  (" + printable(candidate.detail) + ")");
    }
    if (candidates.size() > mostShown) {
        message += "\n  and " + std::to_string(candidates.size() - mostShown) + " more";
    }
    return message;
}

Uuid required(std::string_view kind, std::string_view name, const Records& records)
{
    if (const auto id = recordNamed(name, records)) {
        return *id;
    }
    std::vector<std::string> names;
    for (const NamedRecord& record : records) {
        names.push_back(record.name);
    }
    const auto near = KestryCore::nearestWord(name, names);
    throw LookupError("There is no " + std::string(kind) + " \"" + printable(name) + "\"."
        + (near ? " Did you mean \"" + printable(*near) + "\"?" : ""));
}

std::string clientName(const LedgerData& ledger, const Uuid& clientID)
{
    const auto* client = ledger.clients.find(clientID);
    return client != nullptr ? client->name : std::string();
}

/// The visible projects, of one client or of all.
Records namedProjects(const LedgerData& ledger, const std::optional<Uuid>& clientID)
{
    Records result;
    for (const Project& project : ledger.projects) {
        if (!project.isClientDefault && (!clientID || project.clientID == *clientID)) {
            result.push_back({project.id, project.name, clientName(ledger, project.clientID)});
        }
    }
    return result;
}

Records savedSessions(const LedgerData& ledger)
{
    Records result;
    for (const TimeEntry& entry : ledger.entries) {
        const Project* project = ledger.projects.find(entry.projectID);
        const std::string client =
            project != nullptr ? clientName(ledger, project->clientID) + ", " : std::string();
        result.push_back({entry.id, sessionName(ledger, entry.title, entry.projectID),
            client + KestryCore::durationText(entry.duration())});
    }
    return result;
}

} // namespace

std::optional<Uuid> recordNamed(std::string_view name, const std::vector<NamedRecord>& records)
{
    const std::string_view words = KestryCore::trimmed(name);
    // Every name begins with the empty text, so it would match all of them.
    const Records candidates = words.empty() ? Records() : meant(words, records);
    if (candidates.size() > 1) {
        throw LookupError(ambiguity(words, candidates));
    }
    return candidates.empty() ? std::nullopt : std::optional(candidates.front().id);
}

Uuid findClient(const LedgerData& ledger, std::string_view words)
{
    if (const auto id = Uuid::parse(words)) {
        return *id;
    }
    Records clients;
    for (const auto& client : ledger.clients) {
        clients.push_back({client.id, client.name, {}});
    }
    return required("client", words, clients);
}

std::optional<Uuid> knownClient(const LedgerData& ledger, const std::optional<std::string>& words)
{
    if (!words) {
        return std::nullopt;
    }
    const Uuid id = findClient(ledger, *words);
    if (ledger.clients.find(id) == nullptr) {
        throw LookupError("Client not found.");
    }
    return id;
}

Uuid findProject(
    const LedgerData& ledger, std::string_view words, const std::optional<Uuid>& clientID)
{
    if (const auto id = Uuid::parse(words)) {
        return *id;
    }
    if (clientID) {
        if (const auto id = recordNamed(words, namedProjects(ledger, clientID))) {
            return *id;
        }
    }
    return required("project", words, namedProjects(ledger, std::nullopt));
}

Uuid findEntry(const LedgerData& ledger, std::string_view words)
{
    const auto id = Uuid::parse(words);
    return id ? *id : required("saved session", words, savedSessions(ledger));
}

Uuid findSession(const LedgerData& ledger, std::string_view words)
{
    if (const auto id = Uuid::parse(words)) {
        return *id;
    }
    Records sessions = savedSessions(ledger);
    if (ledger.active) {
        sessions.push_back({ledger.active->id,
            sessionName(ledger, ledger.active->title, ledger.active->projectID), "in progress"});
    }
    return required("session", words, sessions);
}

std::string sessionName(const LedgerData& ledger, const std::string& title, const Uuid& projectID)
{
    if (!title.empty()) {
        return title;
    }
    const Project* project = ledger.projects.find(projectID);
    if (project == nullptr || project->isClientDefault) {
        return "Session";
    }
    const auto* client = ledger.clients.find(project->clientID);
    return client == nullptr || client->projectsEnabled ? project->name : "Session";
}

} // namespace Kestry
