#include "CommandExecution.h"

#include <memory>
#include <optional>

#include "CommandOnFiles.h"
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

namespace Kestry {

using KestryCore::LedgerError;
using KestryCore::TimeStore;
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

CommandAnswer run(const CheckCommand&, TimeStore&, const CommandContext& context)
{
    return checkLedgers(context.dataDirectory, context);
}

CommandAnswer run(const RestoreCommand&, TimeStore& store, const CommandContext&)
{
    store.restoreBackup();
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

ZoneCalendar calendarOf(const CommonOptions& options, const ProgramPlatform& platform)
{
    const std::string locale = options.locale ? KestryCore::requireLocale(*options.locale)
                                              : KestryCore::userLocale(platform.environment);
    if (options.timeZone) {
        return {*options.timeZone, locale};
    }
    return platform.live != nullptr ? platform.live->systemCalendar(locale)
                                    : ZoneCalendar::withSystemTimeZone(
                                        locale, KestryCore::systemTimeZone(platform.environment));
}

/// The calendar and the moment that a request names, read from its words.
CommandContext commandContext(const CommonOptions& options, const ProgramPlatform& platform)
{
    try {
        const ZoneCalendar calendar = calendarOf(options, platform);
        const KestryCore::Date now = platform.now();
        const bool isTerminal = platform.console.writesToTerminal();
        const bool isColored = isTerminal && !platform.environment("NO_COLOR")
            && platform.environment("TERM") != "dumb";
        return {platform.files, calendar,
            options.at ? readInstant(*options.at, now, calendar) : now, now, isTerminal, isColored,
            options.json, platform.newUuid, dataDirectoryOf(options, platform),
            KestryCore::isDataDirectoryGiven(options.dataDirectory, platform.environment)};
    } catch (const LedgerError& failure) {
        throw UsageError(failure.what());
    }
}

} // namespace

CommandAnswer runOnStore(const Command& command, TimeStore& store, const CommandContext& context)
{
    CommandAnswer answer;
    if (changesLedger(command) && !std::holds_alternative<RestoreCommand>(command)) {
        requireSaving(store);
    }
    try {
        store.performForCaller([&] {
            answer = std::visit(
                [&](const auto& chosen) { return run(chosen, store, context); }, command);
        });
    } catch (const LookupError& failure) {
        throw explained(failure, store);
    }
    return answer;
}

LedgerError explained(const LookupError& failure, const TimeStore& store)
{
    const auto& condition = *store.errorMessage();
    return LedgerError{
        failure.what() + (store.blocked() && condition ? " " + *condition : std::string())};
}

std::string dataDirectoryOf(const CommonOptions& options, const ProgramPlatform& platform)
{
    return platform.live != nullptr
        ? platform.live->dataDirectory
        : KestryCore::resolveDataDirectory(options.dataDirectory, platform.environment,
            [&] { return platform.files.applicationSupportDirectory(); });
}

CommandAnswer executeCommand(const CommandRequest& request, const ProgramPlatform& platform)
{
    const CommandContext context = commandContext(request.options, platform);
    // Shells ask for it when they start, whatever has become of the ledger.
    if (const auto* chosen = std::get_if<CompletionCommand>(&request.command)) {
        return completion(*chosen);
    }
    if (platform.live == nullptr) {
        return runOnFiles(request.command, context, platform);
    }
    if (!changesLedger(request.command)) {
        requireReadable(request.command, platform.live->store, platform.console);
    }
    return runOnStore(request.command, platform.live->store, context);
}

CommandRequest preparedRequest(CommandRequest request, const ProgramPlatform& platform)
{
    if (needsAgreement(request.command) || namesLogo(request.command)) {
        const CommandContext context = commandContext(request.options, platform);
        request.command = agreed(std::move(request.command), context.dataDirectory, platform);
        readLogo(request.command, platform.files);
    }
    return request;
}

std::optional<std::string> sessionMeant(
    const CommandRequest& request, const ProgramPlatform& platform)
{
    return sessionOnFiles(request.command, dataDirectoryOf(request.options, platform), platform);
}

} // namespace Kestry
