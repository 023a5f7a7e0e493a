#include "CommandPreparation.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>

#include "LedgerError.h"
#include "PictureFile.h"
#include "PlainText.h"
#include "RecordCommands.h"
#include "RecordLookup.h"
#include "StoreCommands.h"

namespace Kestry {

using KestryCore::LedgerError;

namespace {

/// Whether the command takes a logo from a file that has not been read yet.
bool namesUnreadLogo(const StoreCommand& command)
{
    return std::visit(
        [](const auto& chosen) {
            if constexpr (requires { chosen.logoFile; }) {
                return chosen.logoFile && !chosen.logo;
            } else {
                return false;
            }
        },
        command);
}

void readLogo(StoreCommand& command, const ProgramPlatform& platform)
{
    std::visit(
        [&](auto& chosen) {
            if constexpr (requires { chosen.logoFile; }) {
                if (chosen.logoFile && !chosen.logo) {
                    chosen.logo = platform.logoFromPicture(
                        KestryCore::readPictureFile(platform.files, *chosen.logoFile));
                }
            }
        },
        command);
}

bool needsPassword(const StoreCommand& command)
{
    const auto* signIn = std::get_if<SyncSignInCommand>(&command);
    return signIn != nullptr && needsPassword(*signIn) && !signIn->password;
}

/// The password of a sign-in: what the words ask for first, and a person last.
std::string passwordOf(const SyncSignInCommand& command, const ProgramPlatform& platform)
{
    Console& console = platform.console;
    std::optional<std::string> password;
    const auto known = platform.environment("KESTRY_CLOUD_PASSWORD");
    if (known && !command.readsPassword) {
        password = known;
    } else if (command.readsPassword || console.readsFromTerminal()) {
        password = console.readSecret("Password of " + printable(command.user) + ": ");
    } else {
        throw LedgerError("There is no password, and nobody can be asked for it here. Hand it over "
                          "with --password-stdin or in KESTRY_CLOUD_PASSWORD.");
    }
    if (password.value_or("").empty()) {
        throw LedgerError("The password is empty. Nothing was changed.");
    }
    if (password->size() > LocalMessageLimits::secret) {
        throw LedgerError("No password is as long as this. Nothing was changed.");
    }
    return *std::move(password);
}

void readPassword(StoreCommand& command, const ProgramPlatform& platform)
{
    if (needsPassword(command)) {
        auto& signIn = std::get<SyncSignInCommand>(command);
        signIn.password = passwordOf(signIn, platform);
    }
}

/// Throws a `LedgerError` unless a person answers yes.
void requireYes(const std::string& question, const std::string& refusal, Console& console)
{
    if (!console.readsFromTerminal()) {
        throw LedgerError(refusal + " Nobody can be asked here; add --yes to do it all the same.");
    }
    console.writeError(printable(question) + " [y/N] ");
    const std::string answer = console.readLine().value_or("");
    if (answer != "y" && answer != "Y" && answer != "yes") {
        throw LedgerError(refusal);
    }
}

/// The ID of the session that a person has confirmed to delete.
KestryCore::Uuid confirmedDeletion(
    const std::string& session, const KestryCore::TimeStore& store, Console& console)
{
    requireSaving(store);
    try {
        const KestryCore::Uuid id = findEntry(*store.data(), session);
        requireYes(deletionQuestion(*store.data(), id), "Nothing was deleted.", console);
        return id;
    } catch (const LookupError& failure) {
        throw explained(failure, store);
    }
}

} // namespace

bool needsConfirmation(const StoreCommand& command)
{
    return std::visit(
        [](const auto& chosen) {
            if constexpr (requires { chosen.isConfirmed; }) {
                return !chosen.isConfirmed;
            } else {
                return false;
            }
        },
        command);
}

bool needsPreparation(const StoreCommand& command)
{
    return needsConfirmation(command) || namesUnreadLogo(command) || needsPassword(command);
}

StoreCommand preparedCommand(StoreCommand command, const std::string& directory,
    const FilesKeeper& files, const ProgramPlatform& platform)
{
    if (auto* deletion = std::get_if<DeleteCommand>(&command); deletion && !deletion->isConfirmed) {
        const auto store = files.openToRead(directory);
        deletion->session = confirmedDeletion(deletion->session, *store, platform.console).text();
        deletion->isConfirmed = true;
    }
    if (auto* restore = std::get_if<RestoreCommand>(&command); restore && !restore->isConfirmed) {
        requireYes("Put the backup in the place of the ledger? The damaged file will be kept.",
            "Nothing was restored.", platform.console);
        restore->isConfirmed = true;
    }
    if (auto* upload = std::get_if<SyncUploadAgainCommand>(&command);
        upload && !upload->isConfirmed) {
        requireYes(
            "Upload this device's records again? What the record store has otherwise becomes "
            "a conflict.",
            "Nothing was uploaded.", platform.console);
        upload->isConfirmed = true;
    }
    readLogo(command, platform);
    readPassword(command, platform);
    return command;
}

void describePreparation(LocalCommand& message, const ReadyCommand& command)
{
    message.isPrepared = true;
    message.isConfirmed = command.isConfirmed;
    std::visit(
        [&](const auto& chosen) {
            if constexpr (requires {
                              chosen.isConfirmed;
                              chosen.session;
                          }) {
                if (command.isConfirmed) {
                    message.session = chosen.session;
                }
            }
            if constexpr (requires { chosen.logo; }) {
                message.logo = chosen.logo;
            }
            if constexpr (requires { chosen.password; }) {
                message.secret = chosen.password;
            }
        },
        command.command);
}

void applyPreparation(StoreCommand& command, const LocalCommand& message)
{
    std::visit(
        [&](auto& chosen) {
            if constexpr (requires { chosen.isConfirmed; }) {
                chosen.isConfirmed = chosen.isConfirmed || message.isConfirmed;
            }
            if constexpr (requires { chosen.session; }) {
                chosen.session = message.session.value_or(chosen.session);
            }
            if constexpr (requires { chosen.logo; }) {
                chosen.logo = message.logo;
            }
            if constexpr (requires { chosen.password; }) {
                chosen.password = message.secret;
            }
        },
        command);
}

} // namespace Kestry
