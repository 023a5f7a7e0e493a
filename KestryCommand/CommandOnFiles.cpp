#include "CommandOnFiles.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "LedgerCheck.h"
#include "LedgerError.h"
#include "PlainText.h"
#include "PrivateDirectories.h"
#include "RecordCommands.h"
#include "RecordLookup.h"
#include "StoreCommands.h"
#include "WriterLock.h"

namespace Kestry {

using KestryCore::LedgerError;
using KestryCore::TimeStore;
using KestryCore::WriterLock;

namespace {

/// Opens the store as a command does: a running session stays as it is in the ledger.
std::unique_ptr<TimeStore> openStore(
    const std::string& directory, std::shared_ptr<WriterLock> lock, const ProgramPlatform& platform)
{
    KestryCore::StoreOptions options;
    options.directory = directory;
    options.runningSession = KestryCore::RunningSessionPolicy::keep;
    options.lock = std::move(lock);
    return std::make_unique<TimeStore>(
        KestryCore::StorePlatform{platform.files, platform.now, platform.newUuid},
        std::move(options));
}

void dispose(std::unique_ptr<TimeStore> store, const ProgramPlatform& platform)
{
    if (platform.dispose) {
        platform.dispose(std::move(store));
    }
}

/// Claims the directory. Another `kestryctl` is gone in a moment and is waited for, and so is a
/// program that let go before its name could be found out; any other program stays.
void claim(WriterLock& lock, const ProgramPlatform& platform)
{
    constexpr double mostSeconds = 5.0;
    constexpr double shortestPause = 0.004;
    constexpr double longestPause = 0.05;
    const KestryCore::Date start = platform.now();
    double pause = shortestPause;
    double waited = 0.0;
    while (!lock.acquire()) {
        const bool isPassing = lock.holder().empty() || lock.holder().starts_with("kestryctl");
        // The pauses are counted too, so that a clock that is set back ends the wait as well.
        if (!isPassing || waited >= mostSeconds || platform.now() - start >= mostSeconds) {
            throw DirectoryInUse(lock.refusal(), lock.holder());
        }
        platform.sleep(pause);
        waited += pause;
        pause = std::min(pause * 2.0, longestPause);
    }
}

void askToAgree(const std::string& question, const std::string& refusal, Console& console)
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

/// Carries out a change as the one writer. None when the directory came into being while this was
/// looking at an empty place: then nothing has been changed, and another program may have made a
/// first ledger that the change has to be judged by.
std::optional<CommandAnswer> tryChange(
    const Command& command, const CommandContext& context, const ProgramPlatform& platform)
{
    const std::string& directory = context.dataDirectory;
    const bool wasThere = exists(platform.files, directory);
    const auto lock = std::make_shared<WriterLock>(platform.files, directory);
    claim(*lock, platform);
    try {
        auto store = openStore(directory, lock, platform);
        auto answer = runOnStore(command, *store, context);
        dispose(std::move(store), platform);
        return answer;
    } catch (const LedgerError&) {
        if (wasThere || !exists(platform.files, directory)) {
            throw;
        }
        return std::nullopt;
    }
}

CommandAnswer change(
    const Command& command, const CommandContext& context, const ProgramPlatform& platform)
{
    // A directory that the user has named may be shared on purpose.
    if (!context.isDirectoryGiven && platform.closeToOthers
        && platform.closeToOthers(context.dataDirectory)) {
        platform.console.writeError(
            printable(KestryCore::closedText(context.dataDirectory)) + "\n");
    }
    if (auto answer = tryChange(command, context, platform)) {
        return *answer;
    }
    // The directory is there now, so that this time it is claimed before it is looked at.
    return tryChange(command, context, platform).value();
}

CommandAnswer readStore(
    const Command& command, const CommandContext& context, const ProgramPlatform& platform)
{
    if (std::holds_alternative<CheckCommand>(command)) {
        // Reads both files by itself; a store would hold one of them in memory meanwhile.
        return checkLedgers(context.dataDirectory, context);
    }
    auto store = openStore(context.dataDirectory, nullptr, platform);
    requireReadable(command, *store, platform.console);
    CommandAnswer answer = runOnStore(command, *store, context);
    dispose(std::move(store), platform);
    return answer;
}

/// The saved session that the words of a deletion mean, once a person has agreed to it.
KestryCore::Uuid agreedDeletion(
    const std::string& session, const std::string& directory, const ProgramPlatform& platform)
{
    const auto store = openStore(directory, nullptr, platform);
    requireSaving(*store);
    try {
        const KestryCore::Uuid id = findEntry(*store->data(), session);
        askToAgree(deletionQuestion(*store->data(), id), "Nothing was deleted.", platform.console);
        return id;
    } catch (const LookupError& failure) {
        throw explained(failure, *store);
    }
}

} // namespace

CommandAnswer runOnFiles(
    const Command& command, const CommandContext& context, const ProgramPlatform& platform)
{
    return changesLedger(command) ? change(command, context, platform)
                                  : readStore(command, context, platform);
}

bool needsAgreement(const Command& command)
{
    const auto* deletion = std::get_if<DeleteCommand>(&command);
    const auto* restore = std::get_if<RestoreCommand>(&command);
    return (deletion != nullptr && !deletion->isConfirmed)
        || (restore != nullptr && !restore->isConfirmed);
}

Command agreed(Command command, const std::string& directory, const ProgramPlatform& platform)
{
    if (auto* deletion = std::get_if<DeleteCommand>(&command); deletion && !deletion->isConfirmed) {
        deletion->session = agreedDeletion(deletion->session, directory, platform).text();
        deletion->isConfirmed = true;
    }
    if (auto* restore = std::get_if<RestoreCommand>(&command); restore && !restore->isConfirmed) {
        askToAgree("Put the backup in the place of the ledger? The damaged file will be kept.",
            "Nothing was restored.", platform.console);
        restore->isConfirmed = true;
    }
    return command;
}

bool namesLogo(const Command& command)
{
    const auto* adding = std::get_if<ClientAddCommand>(&command);
    const auto* editing = std::get_if<ClientEditCommand>(&command);
    return (adding != nullptr && adding->logoFile && !adding->logo)
        || (editing != nullptr && editing->logoFile && !editing->logo);
}

void readLogo(Command& command, KestryCore::FileSystem& files)
{
    std::visit(
        [&](auto& chosen) {
            if constexpr (requires { chosen.logoFile; }) {
                if (chosen.logoFile && !chosen.logo) {
                    chosen.logo = readFile(files, *chosen.logoFile);
                    // What is longer is no logo, and its beginning is none either.
                    chosen.logo->resize(std::min(chosen.logo->size(), LocalMessageLimits::file));
                }
            }
        },
        command);
}

std::optional<std::string> readLogo(const Command& command)
{
    return std::visit(
        [](const auto& chosen) -> std::optional<std::string> {
            if constexpr (requires { chosen.logo; }) {
                return chosen.logo;
            } else {
                return std::nullopt;
            }
        },
        command);
}

std::optional<std::string> sessionOnFiles(
    const Command& command, const std::string& directory, const ProgramPlatform& platform)
{
    const std::string* words = sessionWords(command);
    if (words == nullptr) {
        return std::nullopt;
    }
    const auto store = openStore(directory, nullptr, platform);
    try {
        return (std::holds_alternative<GapCommand>(command) ? findSession(*store->data(), *words)
                                                            : findEntry(*store->data(), *words))
            .text();
    } catch (const LookupError& failure) {
        throw explained(failure, *store);
    }
}

} // namespace Kestry
