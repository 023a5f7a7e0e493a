#include "CommandSyntax.h"
#include "CommandWords.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::ConflictChoice;

void CommandSyntax::addSyncCommands()
{
    CLI::App* group = addCommand(
        root_, "sync", "Shows replication and decides on conflicts", "kestryctl sync status");
    readers_[addCommand(*group, "status", "Shows how far replication has come",
        "kestryctl sync status --json")] = [] { return SyncStatusCommand{}; };
    readers_[addCommand(*group, "conflicts", "Lists the records of which two versions are kept",
        "kestryctl sync conflicts")] = [] { return SyncConflictsCommand{}; };
    CLI::App* resolve = addCommand(*group, "resolve", "Ends a conflict by choosing a version",
        "kestryctl sync resolve \"$conflict\" --keep-local");
    const auto* conflict = addValue(resolve, "ID", "ID", "The conflict, as they are listed");
    const auto* keepLocal =
        addFlag(resolve, "--keep-local", "Send this device's version out again");
    const auto* useCloud =
        addFlag(resolve, "--use-cloud", "Give up this device's change; it never goes out");
    readers_[resolve] = [=] {
        const std::string id = required(conflict);
        const std::optional<bool> keeps = choice(keepLocal, useCloud);
        if (!keeps) {
            throw UsageError("Say which version to choose: --keep-local or --use-cloud.");
        }
        return SyncResolveCommand{
            id, *keeps ? ConflictChoice::keepLocal : ConflictChoice::useCloud};
    };
}

} // namespace Kestry
