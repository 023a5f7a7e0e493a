#include "CommandPreparation.h"

#include <optional>
#include <string>
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
    return needsConfirmation(command) || namesUnreadLogo(command);
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
    readLogo(command, platform);
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
        },
        command);
}

} // namespace Kestry
