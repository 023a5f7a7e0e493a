#include "CommandService.h"

#include <utility>

#include "CommandAnswers.h"
#include "CommandOrigin.h"
#include "CommandParser.h"
#include "CommandPreparation.h"
#include "CommandSyntax.h"
#include "LiveSyncCommands.h"
#include "StoreCommands.h"
#include "UsageError.h"
#include "ZoneCalendar.h"
#include "ZoneFiles.h"

namespace Kestry {

using KestryCore::ZoneCalendar;

namespace {

/// Whether the answer of a command includes a file for the caller to write.
bool writesFile(const StoreCommand& command)
{
    const auto* exporting = std::get_if<ExportCommand>(&command);
    return exporting != nullptr && exporting->file;
}

/// Whether a ledger has more sessions than this. One with a long title counts as several.
bool holdsMore(const KestryCore::LedgerData& ledger, std::size_t mostSessions)
{
    constexpr std::size_t usualTitle = 64;
    std::size_t weight = ledger.entries.size();
    for (auto entry = ledger.entries.begin();
         weight <= mostSessions && entry != ledger.entries.end(); ++entry) {
        weight += entry->title.size() / usualTitle;
    }
    return weight > mostSessions;
}

/// The most saved sessions with which a command takes so little time that nobody notices how the
/// application does nothing else meanwhile; nullopt when their number does not matter.
std::optional<std::size_t> mostSessions(const StoreCommand& command)
{
    constexpr std::size_t listed = 2'000;   // one line for each
    constexpr std::size_t summed = 200'000; // looked at, and no more
    const bool lists = std::holds_alternative<SessionsCommand>(command)
        || std::holds_alternative<ExportCommand>(command);
    const bool sums = std::holds_alternative<ReportCommand>(command)
        || std::holds_alternative<ClientReportCommand>(command)
        || std::holds_alternative<ProjectListCommand>(command)
        || std::holds_alternative<SuggestCommand>(command);
    const std::string* session = sessionWords(command);
    const bool seeks = session != nullptr && !KestryCore::Uuid::parse(*session);
    return lists || seeks ? std::optional(listed) : sums ? std::optional(summed) : std::nullopt;
}

/// The calendar of the caller's time zone, which may not be this process's.
ZoneCalendar callersCalendar(const std::string& timeZone, const std::string& locale)
{
    const auto files = KestryCore::ZoneFiles::ofSystem(KestryCore::processEnvironment);
    // A name such as "Etc/GMT+3" could be read as a rule too.
    if (!files.read(timeZone)) {
        if (auto ruled = ZoneCalendar::withRule(timeZone, locale)) {
            return std::move(*ruled);
        }
    }
    return {timeZone, locale, files};
}

/// The origin of a caller's command, which must outlive it.
CommandOrigin originOf(const LocalCommand& caller)
{
    return {.dataDirectory = [&caller] { return caller.dataDirectory; },
        .environment =
            [&caller](const std::string& name) {
                const auto found = caller.environment.find(name);
                return found != caller.environment.end() ? std::optional(found->second)
                                                         : std::nullopt;
            },
        .calendar =
            [&caller](
                const std::string& locale) { return callersCalendar(caller.timeZone, locale); },
        .writesToTerminal = caller.writesToTerminal};
}

} // namespace

CommandService::CommandService(
    KestryCore::TimeStore& store, LiveSync& sync, KestryCore::StorePlatform platform)
    : store_(store), sync_(sync), platform_(std::move(platform))
{
}

CommandService::~CommandService() = default;

bool CommandService::run(const LocalCommand& caller, const std::function<bool()>& take,
    const std::function<void(LocalAnswer)>& give)
{
    auto request = requestOf(caller.words);
    // The caller finds the data directory by a quick look at its words, which may be wrong.
    if (!request || request->options.dataDirectory != caller.namedDirectory) {
        return false;
    }
    auto& command = std::get<StoreCommand>(request->command);
    applyPreparation(command, caller);
    if (isForCaller(command, caller) || !take()) {
        return false;
    }
    std::optional<CommandContext> context;
    LocalAnswer answer = answerOrFailure(request->options.json, [&] {
        context.emplace(contextOf(caller, request->options));
        return isForLiveSync(command) ? LocalAnswer{} : carryOut(command, store_, *context);
    });
    if (context && isForLiveSync(command)) {
        carryOut(command, sync_, *context, give);
    } else {
        give(std::move(answer));
    }
    return true;
}

CommandContext CommandService::contextOf(
    const LocalCommand& caller, const CommonOptions& options) const
{
    CommandContext context = commandContext(options, originOf(caller), platform_);
    context.sync = sync_.condition();
    return context;
}

/// Whether the caller has to carry the command out, or to prepare it.
bool CommandService::isForCaller(const StoreCommand& command, const LocalCommand& caller) const
{
    const auto* signIn = std::get_if<SyncSignInCommand>(&command);
    if (signIn != nullptr && needsPreparation(command) && !sync_.canTry(*signIn)) {
        return false; // It fails in words that say why, and needs no password for that.
    }
    if (needsPreparation(command) || (writesFile(command) && !caller.isPrepared)) {
        return true;
    }
    // While the files are damaged, only the open store has the whole ledger.
    if (!changesLedger(command) && store_.blocked()) {
        return false;
    }
    const auto most = mostSessions(command);
    return most && holdsMore(*store_.data(), *most);
}

/// Reads the words; nullopt unless they mean a store command.
std::optional<CommandRequest> CommandService::requestOf(const std::vector<std::string>& words)
{
    try {
        if (!syntax_) {
            syntax_ = std::make_unique<CommandSyntax>();
        }
        auto parsed = parseCommandLine(*syntax_, words);
        auto* request = std::get_if<CommandRequest>(&parsed);
        const bool isForStore =
            request != nullptr && std::holds_alternative<StoreCommand>(request->command);
        return isForStore ? std::optional(std::move(*request)) : std::nullopt;
    } catch (const UsageError&) {
        return std::nullopt;
    }
}

} // namespace Kestry
