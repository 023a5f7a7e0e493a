#include "CommandService.h"

#include <utility>

#include "CommandExecution.h"
#include "CommandOnFiles.h"
#include "CommandParser.h"
#include "CommandSyntax.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::ZoneCalendar;

namespace {

/// Keeps what a command writes for whoever asked for it.
class AnswerConsole final : public Console {
public:
    explicit AnswerConsole(bool writesToTerminal) : writesToTerminal_(writesToTerminal) { }

    [[nodiscard]] bool readsFromTerminal() const override { return false; }
    [[nodiscard]] bool writesToTerminal() const override { return writesToTerminal_; }
    [[nodiscard]] std::optional<std::string> readLine() override { return std::nullopt; }
    void write(std::string_view text) override { answer.output += text; }
    void writeError(std::string_view text) override { answer.errors += text; }

    LocalAnswer answer;

private:
    bool writesToTerminal_;
};

/// Puts into a command what its caller has found out, read and asked.
void complete(Command& command, const LocalCommand& caller)
{
    std::visit(
        [&](auto& chosen) {
            if constexpr (requires { chosen.isConfirmed; }) {
                chosen.isConfirmed = chosen.isConfirmed || caller.isAgreed;
            }
            if constexpr (requires { chosen.session; }) {
                chosen.session = caller.session.value_or(chosen.session);
            }
            if constexpr (requires { chosen.logo; }) {
                chosen.logo = caller.logo;
            }
        },
        command);
}

/// Whether a command reads a file of the caller, or writes one.
bool namesFile(const Command& command)
{
    const auto* exporting = std::get_if<ExportCommand>(&command);
    return namesLogo(command) || (exporting != nullptr && exporting->file);
}

/// Whether a ledger holds more sessions than this, where one with a long title counts for several.
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

/// How many saved sessions there may be for a command to be over in a moment, in which nobody
/// notices that the application does nothing else; none when their number does not matter.
std::optional<std::size_t> mostSessions(const Command& command)
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

/// The calendar of where a command was typed. This program may have been started in another zone.
ZoneCalendar callersCalendar(const std::string& timeZone, const std::string& locale)
{
    const auto files = KestryCore::ZoneFiles::ofSystem(KestryCore::processEnvironment);
    // "Etc/GMT+3" would make a rule too.
    if (!files.read(timeZone)) {
        if (auto ruled = ZoneCalendar::withRule(timeZone, locale)) {
            return std::move(*ruled);
        }
    }
    return {timeZone, locale, files};
}

} // namespace

CommandService::CommandService(KestryCore::TimeStore& store, Platform platform)
    : store_(store), platform_(std::move(platform))
{
}

CommandService::~CommandService() = default;

std::optional<LocalAnswer> CommandService::run(
    const LocalCommand& command, const std::function<bool()>& take)
{
    auto request = requestOf(command.words);
    // A caller that reads its words in another way may have come to the wrong place.
    if (!request || request->options.dataDirectory != command.namedDirectory) {
        return std::nullopt;
    }
    complete(request->command, command);
    if (isForCaller(request->command, command)) {
        return std::nullopt;
    }
    return take() ? std::optional(carryOut(*request, command)) : std::nullopt;
}

/// Whether a command is the caller's to carry out, or to prepare.
bool CommandService::isForCaller(const Command& command, const LocalCommand& caller) const
{
    if (needsAgreement(command) || namesLogo(command)
        || (namesFile(command) && !caller.isPrepared)) {
        return true;
    }
    // A damaged ledger is whole nowhere but here.
    if (!changesLedger(command) && store_.blocked()) {
        return false;
    }
    const auto most = mostSessions(command);
    return most && holdsMore(*store_.data(), *most);
}

/// The request that words mean; none for anything but a command to a store.
std::optional<CommandRequest> CommandService::requestOf(const std::vector<std::string>& words)
{
    try {
        if (!syntax_) {
            syntax_ = std::make_unique<CommandSyntax>();
        }
        auto parsed = parseCommandLine(*syntax_, words);
        auto* request = std::get_if<CommandRequest>(&parsed);
        if (request == nullptr || !isForStore(request->command)) {
            return std::nullopt;
        }
        return std::move(*request);
    } catch (const UsageError&) {
        return std::nullopt;
    }
}

LocalAnswer CommandService::carryOut(const CommandRequest& request, const LocalCommand& command)
{
    AnswerConsole console(command.writesToTerminal);
    const LiveStore live{store_,
        [&](const std::string& locale) { return callersCalendar(command.timeZone, locale); },
        command.dataDirectory};
    const ProgramPlatform platform{
        .files = platform_.files,
        .console = console,
        .environment =
            [&](const std::string& name) {
                const auto found = command.environment.find(name);
                return found != command.environment.end() ? std::optional(found->second)
                                                          : std::nullopt;
            },
        .now = platform_.now,
        .sleep = {},
        .newUuid = platform_.newUuid,
        .live = &live,
        .keepFile = [&](FileToWrite file) { console.answer.file = std::move(file); },
    };
    const ExitStatus status = runRequest(request, platform);
    console.answer.status = static_cast<int>(status);
    console.answer.hasChanged = status == ExitStatus::done && changesLedger(request.command);
    return std::move(console.answer);
}

} // namespace Kestry
