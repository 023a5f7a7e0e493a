#include "CommandExecution.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "CommandSyntax.h"
#include "CompletionScript.h"
#include "CsvFile.h"
#include "DataDirectory.h"
#include "Instants.h"
#include "JsonWriter.h"
#include "LedgerCheck.h"
#include "LedgerError.h"
#include "Listings.h"
#include "MetricsReport.h"
#include "PlainText.h"
#include "RecordCommands.h"
#include "RecordLookup.h"
#include "SessionCommands.h"
#include "SessionListing.h"
#include "StatusReport.h"
#include "SyncCommands.h"
#include "UsageError.h"
#include "UserLocale.h"
#include "WriterLock.h"

namespace Kestry {

using KestryCore::LedgerError;
using KestryCore::TimeStore;
using KestryCore::WriterLock;
using KestryCore::ZoneCalendar;

namespace {

CommandAnswer run(const StatusCommand&, TimeStore& store, const CommandContext& context)
{
    return statusReport(store, context);
}

CommandAnswer run(const ClientListCommand&, TimeStore& store, const CommandContext& context)
{
    return clientListing(*store.data(), context);
}

CommandAnswer run(
    const ProjectListCommand& command, TimeStore& store, const CommandContext& context)
{
    std::optional<KestryCore::Uuid> client;
    if (command.client) {
        client = findClient(*store.data(), *command.client);
    }
    return projectListing(*store.data(), client, context);
}

CommandAnswer run(const SessionsCommand& command, TimeStore& store, const CommandContext& context)
{
    return sessionListing(*store.data(), command, context);
}

CommandAnswer run(const ReportCommand& command, TimeStore& store, const CommandContext& context)
{
    return monthReport(*store.data(), command, context);
}

CommandAnswer run(
    const ClientReportCommand& command, TimeStore& store, const CommandContext& context)
{
    return clientReport(*store.data(), command, context);
}

CommandAnswer run(const ExportCommand& command, TimeStore& store, const CommandContext& context)
{
    return exportSessions(store, command.file, context);
}

CommandAnswer run(const SuggestCommand& command, TimeStore& store, const CommandContext&)
{
    return titleListing(*store.data(), command.prefix);
}

CommandAnswer run(const CheckCommand&, TimeStore& store, const CommandContext& context)
{
    return checkLedgers(store.directory(), context);
}

CommandAnswer run(const RestoreCommand&, TimeStore& store, const CommandContext&)
{
    try {
        store.restoreBackup();
    } catch (const std::exception& failure) {
        throw LedgerError(store.errorMessage()->value_or(failure.what()));
    }
    return changeAnswer(*store.recoveredSession()
            ? "Restored the backup. Its running session is paused at its last checkpoint."
            : "Restored the backup.",
        std::nullopt);
}

CommandAnswer completion(const CompletionCommand& command)
{
    const std::string script = completionScript(CommandSyntax().root(), command.shell);
    KestryCore::JsonWriter json;
    json.beginObject();
    json.member("shell", shellNames.at(static_cast<std::size_t>(command.shell)));
    json.member("script", script);
    json.endObject();
    return {script, json.take()};
}

CommandAnswer run(const CompletionCommand& command, TimeStore&, const CommandContext&)
{
    return completion(command);
}

/// The calendar and the moment that a request names, read from its words.
CommandContext commandContext(const CommonOptions& options, const ProgramPlatform& platform)
{
    try {
        const std::string locale = options.locale ? KestryCore::requireLocale(*options.locale)
                                                  : KestryCore::userLocale(platform.environment);
        const ZoneCalendar calendar = options.timeZone ? ZoneCalendar(*options.timeZone, locale)
                                                       : ZoneCalendar::withSystemTimeZone(locale);
        const KestryCore::Date now = platform.now();
        const bool isColored = platform.console.writesToTerminal()
            && !platform.environment("NO_COLOR") && platform.environment("TERM") != "dumb";
        return {platform.files, calendar,
            options.at ? readInstant(*options.at, now, calendar) : now, isColored, options.json,
            platform.newUuid};
    } catch (const LedgerError& failure) {
        throw UsageError(failure.what());
    }
}

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

/// Does something with a store that is open. Where a name finds nothing because the ledger could
/// not be read, the reason is told with it.
template <class Action>
auto onStore(const TimeStore& store, Action action)
{
    try {
        return action();
    } catch (const LookupError& failure) {
        const auto& condition = *store.errorMessage();
        throw LedgerError(failure.what() + (condition ? " " + *condition : std::string()));
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
            throw LedgerError(lock.refusal());
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

/// The command as it is to be carried out once a person has agreed to it where that is needed.
/// Asked before the directory is claimed: people may think as long as they like.
Command agreed(Command command, const std::string& directory, const ProgramPlatform& platform)
{
    if (auto* deletion = std::get_if<DeleteCommand>(&command); deletion && !deletion->isConfirmed) {
        const auto store = openStore(directory, nullptr, platform);
        const KestryCore::Uuid id =
            onStore(*store, [&] { return findEntry(*store->data(), deletion->session); });
        askToAgree(deletionQuestion(*store->data(), id), "Nothing was deleted.", platform.console);
        deletion->session = id.text();
    }
    if (auto* restore = std::get_if<RestoreCommand>(&command); restore && !restore->isConfirmed) {
        askToAgree("Put the backup in the place of the ledger? The damaged file will be kept.",
            "Nothing was restored.", platform.console);
    }
    return command;
}

/// Carries out a change as the one writer. None when the directory came into being while this was
/// looking at an empty place: then nothing has been changed, and another program may have made a
/// first ledger that the change has to be judged by.
std::optional<CommandAnswer> tryChange(const Command& command, const std::string& directory,
    const CommandContext& context, const ProgramPlatform& platform)
{
    const bool wasThere = exists(platform.files, directory);
    const auto lock = std::make_shared<WriterLock>(platform.files, directory);
    claim(*lock, platform);
    try {
        auto store = openStore(directory, lock, platform);
        auto answer = onStore(*store, [&] { return runOnStore(command, *store, context); });
        dispose(std::move(store), platform);
        return answer;
    } catch (const LedgerError&) {
        if (wasThere || !exists(platform.files, directory)) {
            throw;
        }
        return std::nullopt;
    }
}

CommandAnswer change(const Command& command, const std::string& directory,
    const CommandContext& context, const ProgramPlatform& platform)
{
    if (auto answer = tryChange(command, directory, context, platform)) {
        return *answer;
    }
    // The directory is there now, so that this time it is claimed before it is looked at.
    return tryChange(command, directory, context, platform).value();
}

CommandAnswer readStore(const Command& command, const std::string& directory,
    const CommandContext& context, const ProgramPlatform& platform)
{
    if (std::holds_alternative<CheckCommand>(command)) {
        // Reads both files by itself; a store would hold one of them in memory meanwhile.
        return checkLedgers(directory, context);
    }
    auto store = openStore(directory, nullptr, platform);
    const auto& condition = *store->errorMessage();
    // The status tells of the condition by itself.
    if (condition && !std::holds_alternative<StatusCommand>(command)) {
        // An unreadable ledger is not an empty one.
        if (!*store->recoveryAvailable()) {
            throw LedgerError(*condition);
        }
        platform.console.writeError(printableLines(*condition) + "\n");
    }
    CommandAnswer answer = runOnStore(command, *store, context);
    dispose(std::move(store), platform);
    return answer;
}

} // namespace

CommandAnswer runOnStore(const Command& command, TimeStore& store, const CommandContext& context)
{
    return std::visit([&](const auto& chosen) { return run(chosen, store, context); }, command);
}

CommandAnswer executeCommand(const CommandRequest& request, const ProgramPlatform& platform)
{
    const CommandContext context = commandContext(request.options, platform);
    // Shells ask for it when they start, whatever has become of the ledger.
    if (const auto* chosen = std::get_if<CompletionCommand>(&request.command)) {
        return completion(*chosen);
    }
    const std::string directory = KestryCore::resolveDataDirectory(request.options.dataDirectory,
        platform.environment, platform.files.applicationSupportDirectory());
    if (!changesLedger(request.command)) {
        return readStore(request.command, directory, context, platform);
    }
    return change(agreed(request.command, directory, platform), directory, context, platform);
}

} // namespace Kestry
