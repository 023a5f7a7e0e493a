#include "CommandProgram.h"

#include <utility>
#include <variant>

#include "ApplicationKeeper.h"
#include "CommandParser.h"
#include "CommandPreparation.h"
#include "CommandSyntax.h"
#include "CompletionScript.h"
#include "DataDirectory.h"
#include "FilesKeeper.h"
#include "HandedCommand.h"
#include "JsonWriter.h"
#include "LedgerCheck.h"
#include "LedgerError.h"
#include "OutputFile.h"
#include "PlainText.h"
#include "SystemTimeZone.h"

namespace Kestry {

using KestryCore::ZoneCalendar;

namespace {

/// Where a command comes from that was typed to this process.
CommandOrigin originHere(const CommonOptions& options, const ProgramPlatform& platform)
{
    return {.dataDirectory =
                [&platform, named = options.dataDirectory] {
                    return KestryCore::resolveDataDirectory(named, platform.environment,
                        [&] { return platform.files.applicationSupportDirectory(); });
                },
        .environment = platform.environment,
        .calendar =
            [&platform](const std::string& locale) {
                return ZoneCalendar::withSystemTimeZone(
                    locale, KestryCore::systemTimeZone(platform.environment));
            },
        .writesToTerminal = platform.console.writesToTerminal()};
}

CommandContext contextOf(
    const CommonOptions& options, const CommandOrigin& origin, const ProgramPlatform& platform)
{
    return commandContext(options, origin, {platform.files, platform.now, platform.newUuid});
}

CommandAnswer answerTo(const CompletionCommand& command, const CommandContext&)
{
    const std::string script = completionScript(CommandSyntax().root(), command.shell);
    KestryCore::JsonWriter json;
    json.beginObject();
    json.member("shell", shellNames.at(static_cast<std::size_t>(command.shell)));
    json.member("script", script);
    json.endObject();
    return {script, json.take()};
}

CommandAnswer answerTo(const CheckCommand&, const CommandContext& context)
{
    return checkLedgers(context.dataDirectory, context);
}

/// Asks and reads what the command needs, has it carried out where the ledger is, and writes the
/// file of its answer.
LocalAnswer answerTo(ReadyCommand command, const ProgramPlatform& platform)
{
    FilesKeeper files(platform);
    if (needsPreparation(command.command)) {
        command.isConfirmed = needsConfirmation(command.command);
        // Options that can't be read are refused before a person is asked.
        const CommandContext context = contextOf(command.options, command.origin, platform);
        command.command =
            preparedCommand(std::move(command.command), context.dataDirectory, files, platform);
    }
    ApplicationKeeper application(platform, files);
    LedgerKeeper& keeper = platform.handOver ? static_cast<LedgerKeeper&>(application) : files;
    LocalAnswer answer = keeper.carryOut(command);
    // Warnings come first: the file may be the terminal that shows them.
    platform.console.writeError(std::exchange(answer.errors, {}));
    if (answer.file
        && writeOutputFile(*answer.file, command.origin.dataDirectory())
            == FileWritten::asStandardOutput) {
        return {};
    }
    return answer;
}

LocalAnswer answerTo(const std::vector<std::string>& words, const ProgramPlatform& platform)
{
    auto parsed = parseCommandLine(words);
    if (auto* information = std::get_if<InformationText>(&parsed)) {
        LocalAnswer answer;
        answer.output = std::move(information->text);
        return answer;
    }
    auto [options, command] = std::get<CommandRequest>(std::move(parsed));
    CommandOrigin origin = originHere(options, platform);
    if (auto* onStore = std::get_if<StoreCommand>(&command)) {
        return answerTo(
            ReadyCommand{words, options, std::move(*onStore), std::move(origin)}, platform);
    }
    const CommandContext context = contextOf(options, origin, platform);
    const auto* completion = std::get_if<CompletionCommand>(&command);
    return shownAnswer(
        completion ? answerTo(*completion, context) : answerTo(CheckCommand{}, context),
        context.asJson);
}

ExitStatus show(const LocalAnswer& answer, Console& console)
{
    console.writeError(answer.errors);
    const auto status = static_cast<ExitStatus>(answer.status);
    try {
        if (!answer.output.empty()) {
            console.write(answer.output);
        }
        return status;
    } catch (const std::exception& failure) {
        // A change that can't be shown has been made all the same. Repeating the command would
        // record the time twice.
        const std::string prefix = answer.hasChanged ? changeNotShown : std::string();
        console.writeError(printableLines(prefix + failure.what()) + "\n");
        return status == ExitStatus::done ? ExitStatus::refused : status;
    }
}

} // namespace

ExitStatus runProgram(const std::vector<std::string>& words, const ProgramPlatform& platform)
{
    const LocalAnswer answer =
        answerOrFailure(asksForJson(words), [&] { return answerTo(words, platform); });
    return show(answer, platform.console);
}

} // namespace Kestry
