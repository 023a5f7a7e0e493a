#include "SessionCommands.h"

#include "LedgerError.h"
#include "RecordLookup.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::LedgerData;
using KestryCore::TimeStore;
using KestryCore::Uuid;

namespace {

/// The client of a project, and the project unless it is hidden: "Aster Studio, Website".
std::string targetText(const LedgerData& ledger, const Uuid& projectID)
{
    const auto* project = ledger.projects.find(projectID);
    if (project == nullptr) {
        return "an unknown project";
    }
    const auto* client = ledger.clients.find(project->clientID);
    const std::string name = client != nullptr ? client->name : std::string("an unknown client");
    return project->isClientDefault ? name : name + ", " + project->name;
}

std::optional<Uuid> activeID(const TimeStore& store)
{
    const auto& session = store.data()->active;
    return session ? std::optional(session->id) : std::nullopt;
}

std::string clockAt(const TimeStore& store, const CommandContext& context)
{
    return KestryCore::clockText(store.elapsed(context.at));
}

std::optional<Uuid> activeClient(const LedgerData& ledger)
{
    const auto* project = ledger.active ? ledger.projects.find(ledger.active->projectID) : nullptr;
    return project != nullptr ? std::optional(project->clientID) : std::nullopt;
}

/// The ID of no session: the store answers to it as to a session that has ended.
constexpr Uuid noSession{};

} // namespace

CommandAnswer run(const StartCommand& command, TimeStore& store, const CommandContext& context)
{
    const Uuid client = findClient(*store.data(), command.client);
    std::optional<Uuid> project;
    if (command.project) {
        project = findProject(*store.data(), *command.project, client);
    }
    const Uuid id = store.start(client, project, command.title, context.at);
    return changeAnswer(
        "Started: " + targetText(*store.data(), store.data()->active->projectID) + ".", id);
}

CommandAnswer run(const PauseCommand&, TimeStore& store, const CommandContext& context)
{
    store.pause(context.at);
    return changeAnswer("Paused at " + clockAt(store, context) + ".", activeID(store));
}

CommandAnswer run(const ResumeCommand&, TimeStore& store, const CommandContext& context)
{
    store.resume(context.at);
    return changeAnswer("Resumed at " + clockAt(store, context) + ".", activeID(store));
}

CommandAnswer run(const StopCommand&, TimeStore& store, const CommandContext& context)
{
    const Uuid id = store.stop(context.at);
    const auto* entry = store.data()->entries.find(id);
    if (entry == nullptr) {
        return changeAnswer("Ended with no time to save.", id);
    }
    return changeAnswer("Saved " + KestryCore::clockText(entry->duration()) + ": "
            + targetText(*store.data(), entry->projectID) + ".",
        id);
}

CommandAnswer run(const CheckpointCommand&, TimeStore& store, const CommandContext& context)
{
    // Otherwise time that has not passed yet would be recorded as worked.
    if (context.at > context.now) {
        throw KestryCore::LedgerError("A checkpoint cannot be in the future.");
    }
    store.checkpoint(context.at);
    const auto& session = store.data()->active;
    const bool isRunning = session && !session->isPaused();
    return changeAnswer(isRunning ? "Checkpoint at " + clockAt(store, context) + "."
                                  : "No session is running: there is nothing to keep.",
        isRunning ? activeID(store) : std::nullopt);
}

CommandAnswer run(const RenameCommand& command, TimeStore& store, const CommandContext&)
{
    store.renameActiveSession(activeID(store).value_or(noSession), command.title);
    const std::string& title = store.data()->active->title;
    return changeAnswer(title.empty() ? "The session has no title now."
                                      : "The session is called \"" + title + "\" now.",
        activeID(store));
}

CommandAnswer run(const MoveCommand& command, TimeStore& store, const CommandContext&)
{
    const LedgerData& ledger = *store.data();
    const std::string title = ledger.active ? ledger.active->title : std::string();
    // Without a session there is nothing to move, whatever the project.
    const std::optional<Uuid> project = ledger.active
        ? std::optional(findProject(ledger, command.project, activeClient(ledger)))
        : std::nullopt;
    store.updateActiveSession(activeID(store).value_or(noSession), title, project);
    return changeAnswer(
        "Moved to " + targetText(*store.data(), store.data()->active->projectID) + ".",
        activeID(store));
}

} // namespace Kestry
