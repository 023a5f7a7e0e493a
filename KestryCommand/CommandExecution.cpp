#include "CommandExecution.h"

#include "CommandOnFiles.h"
#include "DataDirectory.h"
#include "Instants.h"
#include "LedgerError.h"
#include "StoreCommands.h"
#include "UsageError.h"
#include "UserLocale.h"

namespace Kestry {

using KestryCore::LedgerError;
using KestryCore::ZoneCalendar;

namespace {

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
        return completionAnswer(*chosen);
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
