#include "FilesKeeper.h"

#include <algorithm>

#include "CommandAnswers.h"
#include "DataDirectory.h"
#include "PlainText.h"
#include "PrivateDirectories.h"
#include "RecordLookup.h"
#include "StoreCommands.h"

namespace Kestry {

using KestryCore::TimeStore;
using KestryCore::WriterLock;

LocalAnswer FilesKeeper::carryOut(const ReadyCommand& command)
{
    const CommandContext context = commandContext(
        command.options, command.origin, {platform_.files, platform_.now, platform_.newUuid});
    return changesLedger(command.command) ? change(command, context) : read(command, context);
}

LocalAnswer FilesKeeper::read(const ReadyCommand& command, const CommandContext& context)
{
    auto store = openToRead(context.dataDirectory);
    LocalAnswer answer = Kestry::carryOut(command.command, *store, context);
    dispose(std::move(store));
    return answer;
}

LocalAnswer FilesKeeper::change(const ReadyCommand& command, const CommandContext& context)
{
    closeToOthers(command, context.dataDirectory);
    if (auto answer = tryChange(command, context)) {
        return std::move(*answer);
    }
    // The directory exists now, so this time it is locked before the ledger is read.
    return tryChange(command, context).value();
}

/// Makes the change as the one writer. Returns nullopt when the change was refused and the
/// directory, which was missing at first, exists now: another program may have made a first ledger,
/// and the change has to be judged by that one.
std::optional<LocalAnswer> FilesKeeper::tryChange(
    const ReadyCommand& command, const CommandContext& context)
{
    const std::string& directory = context.dataDirectory;
    const bool wasThere = exists(platform_.files, directory);
    const auto lock = std::make_shared<WriterLock>(platform_.files, directory);
    claim(*lock);
    std::unique_ptr<TimeStore> store;
    LocalAnswer answer = answerOrFailure(context.asJson, [&] {
        store = open(directory, lock);
        return Kestry::carryOut(command.command, *store, context);
    });
    const bool isRefused = answer.status == static_cast<int>(ExitStatus::refused);
    if (isRefused && !wasThere && exists(platform_.files, directory)) {
        return std::nullopt;
    }
    dispose(std::move(store));
    return answer;
}

std::unique_ptr<TimeStore> FilesKeeper::open(
    const std::string& directory, std::shared_ptr<WriterLock> lock) const
{
    KestryCore::StoreOptions options;
    options.directory = directory;
    options.runningSession = KestryCore::RunningSessionPolicy::keep;
    options.lock = std::move(lock);
    return std::make_unique<TimeStore>(
        KestryCore::StorePlatform{platform_.files, platform_.now, platform_.newUuid},
        std::move(options));
}

std::unique_ptr<TimeStore> FilesKeeper::openToRead(const std::string& directory) const
{
    return open(directory, nullptr);
}

/// Makes this process the one writer. Another `kestryctl` ends soon and is waited for, and so is a
/// process that released the lock before its name was found; any other process keeps it.
void FilesKeeper::claim(WriterLock& lock) const
{
    constexpr double mostSeconds = 5.0;
    constexpr double shortestPause = 0.004;
    constexpr double longestPause = 0.05;
    const KestryCore::Date start = platform_.now();
    double pause = shortestPause;
    double waited = 0.0;
    while (!lock.acquire()) {
        const bool endsSoon = lock.holder().empty() || lock.holder().starts_with("kestryctl");
        // Counting the pauses as well ends the wait even when the clock is set back.
        if (!endsSoon || waited >= mostSeconds || platform_.now() - start >= mostSeconds) {
            throw DirectoryInUse(lock.refusal(), lock.holder());
        }
        platform_.sleep(pause);
        waited += pause;
        pause = std::min(pause * 2.0, longestPause);
    }
}

/// Other users lose their access to the user's own directory. One that the user has named may be
/// shared on purpose.
void FilesKeeper::closeToOthers(const ReadyCommand& command, const std::string& directory) const
{
    const bool isGiven =
        KestryCore::isDataDirectoryGiven(command.options.dataDirectory, command.origin.environment);
    if (!isGiven && platform_.closeToOthers && platform_.closeToOthers(directory)) {
        // Shown at once: it has happened, whatever becomes of the command.
        platform_.console.writeError(printable(KestryCore::closedText(directory)) + "\n");
    }
}

void FilesKeeper::dispose(std::unique_ptr<TimeStore> store) const
{
    if (platform_.dispose && store) {
        platform_.dispose(std::move(store));
    }
}

std::optional<std::string> FilesKeeper::findSession(const ReadyCommand& command) const
{
    const std::string* words = sessionWords(command.command);
    if (words == nullptr) {
        return std::nullopt;
    }
    const auto store = openToRead(command.origin.dataDirectory());
    const KestryCore::LedgerData& ledger = *store->data();
    try {
        const bool mayBeActive = std::holds_alternative<GapCommand>(command.command);
        return (mayBeActive ? Kestry::findSession(ledger, *words) : findEntry(ledger, *words))
            .text();
    } catch (const LookupError& failure) {
        throw explained(failure, *store);
    }
}

} // namespace Kestry
