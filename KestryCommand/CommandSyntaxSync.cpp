#include "CommandSyntax.h"

#include <string_view>

#include "CommandWords.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::ConflictChoice;

namespace {

/// Whether a name or a password stands before the server's name.
bool namesUser(std::string_view address)
{
    const std::size_t scheme = address.find("://");
    if (scheme == std::string_view::npos) {
        return false;
    }
    const std::string_view server = address.substr(scheme + 3);
    return server.substr(0, server.find('/')).find('@') != std::string_view::npos;
}

/// Throws a `UsageError` unless what is given goes with a store of this kind.
SyncSignInCommand signInCommand(SyncSignInCommand command)
{
    if (namesUser(command.address)) {
        throw UsageError(
            "Leave the user name and the password out of the address: --user NAME, and the "
            "password is asked for. One that was typed here can be seen in the list of processes "
            "and in the shell's history, so choose a new one.");
    }
    if (needsPassword(command)) {
        if (command.user.empty()) {
            throw UsageError("Say who you are on the server: --user NAME.");
        }
    } else if (!command.user.empty() || command.readsPassword) {
        throw UsageError("A record store in a file has neither users nor passwords. Leave out "
                         "--user and --password-stdin.");
    }
    return command;
}

} // namespace

void CommandSyntax::addSyncCommands()
{
    CLI::App* group = addCommand(root_, "sync",
        "Exchanges records with a record store and decides on conflicts", "kestryctl sync status");
    addSyncAccount(group);
    readers_[addCommand(*group, "on", "Turns replication on and exchanges records",
        "kestryctl sync on")] = [] { return SyncOnCommand{}; };
    readers_[addCommand(*group, "off", "Turns replication off", "kestryctl sync off")] = [] {
        return SyncOffCommand{};
    };
    readers_[addCommand(*group, "now", "Exchanges records now", "kestryctl sync now")] = [] {
        return SyncNowCommand{};
    };
    readers_[addCommand(*group, "status", "Shows how far replication has come",
        "kestryctl sync status --json")] = [] { return SyncStatusCommand{}; };
    readers_[addCommand(*group, "conflicts", "Lists the records of which two versions are kept",
        "kestryctl sync conflicts")] = [] { return SyncConflictsCommand{}; };
    CLI::App* upload = addCommand(*group, "upload-again",
        "Uploads all records again, to a store that went back in time",
        "kestryctl sync upload-again --yes");
    const auto* yes = addFlag(upload, "--yes", "Don't ask");
    readers_[upload] = [=] { return SyncUploadAgainCommand{yes->count() > 0}; };
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

void CommandSyntax::addSyncAccount(CLI::App* group)
{
    CLI::App* signIn = addCommand(*group, "sign-in", "Signs in to a record store",
        "kestryctl sync sign-in https://example.org/hours --user mia");
    const auto* address = addValue(
        signIn, "ADDRESS", "ADDRESS", "Of the database on a server, or sqlite: and a path");
    const auto* user = addValue(signIn, "--user", "NAME", "Your name on the server");
    const auto* readsPassword =
        addFlag(signIn, "--password-stdin", "Read the password from the standard input");
    readers_[signIn] = [=] {
        return signInCommand(
            {required(address), given(user).value_or(""), readsPassword->count() > 0});
    };
    readers_[addCommand(*group, "sign-out", "Turns replication off and forgets the account",
        "kestryctl sync sign-out")] = [] { return SyncSignOutCommand{}; };
}

} // namespace Kestry
