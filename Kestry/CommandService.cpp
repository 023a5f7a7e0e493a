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

/// What the caller's person has agreed to.
void agree(Command& command, const std::string& agreed)
{
    if (auto* deletion = std::get_if<DeleteCommand>(&command)) {
        deletion->session = agreed;
        deletion->isConfirmed = true;
    }
    if (auto* restore = std::get_if<RestoreCommand>(&command)) {
        restore->isConfirmed = true;
    }
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
    if (command.agreed) {
        agree(request->command, *command.agreed);
    }
    if (needsAgreement(request->command)) {
        return std::nullopt;
    }
    return take() ? std::optional(carryOut(*request, command)) : std::nullopt;
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
    // A folder that is gone holds no files, least of all those where this program was started.
    const std::string nowhere = "/dev/null";
    const LiveStore live{store_,
        [&](const std::string& locale) { return callersCalendar(command.timeZone, locale); },
        command.dataDirectory,
        command.workingDirectory.empty() ? nowhere : command.workingDirectory};
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
    };
    const ExitStatus status = runRequest(request, platform);
    console.answer.status = static_cast<int>(status);
    console.answer.hasChanged = status == ExitStatus::done && changesLedger(request.command);
    return std::move(console.answer);
}

} // namespace Kestry
