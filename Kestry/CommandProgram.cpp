#include "CommandProgram.h"

#include "CommandExecution.h"
#include "CommandParser.h"
#include "JsonWriter.h"
#include "PlainText.h"
#include "UsageError.h"

namespace Kestry {

namespace {

std::string errorJson(const std::string& message)
{
    KestryCore::JsonWriter json;
    json.beginObject();
    json.member("error", wellFormed(message));
    json.endObject();
    return json.take() + "\n";
}

/// Tells a failure on the standard error and, where JSON was asked for, on the standard output.
void report(const std::string& message, bool asJson, Console& console)
{
    console.writeError(printableLines(message) + "\n");
    if (!asJson) {
        return;
    }
    try {
        console.write(errorJson(message));
    } catch (const std::exception& failure) {
        console.writeError(printableLines(failure.what()) + "\n");
    }
}

/// Writes what a command has to say. A change that can't be told has happened all the same, and
/// whoever repeated the command would book the time twice.
ExitStatus tell(const std::string& text, bool hasChanged, Console& console)
{
    try {
        console.write(text);
        return ExitStatus::done;
    } catch (const std::exception& failure) {
        const std::string prefix = hasChanged
            ? "The change has been made and saved; only its result can't be shown. "
            : "";
        console.writeError(printableLines(prefix + failure.what()) + "\n");
        return ExitStatus::refused;
    }
}

ExitStatus execute(const CommandRequest& request, const ProgramPlatform& platform)
{
    CommandAnswer answer = executeCommand(request, platform);
    std::string text = std::move(request.options.json ? answer.json : answer.text);
    text += request.options.json ? "\n" : "";
    const ExitStatus told = tell(text, changesLedger(request.command), platform.console);
    return answer.isSound ? told : ExitStatus::refused;
}

} // namespace

ExitStatus runProgram(const std::vector<std::string>& arguments, const ProgramPlatform& platform)
{
    const bool asJson = asksForJson(arguments);
    try {
        const auto parsed = parseCommandLine(arguments);
        if (const auto* information = std::get_if<InformationText>(&parsed)) {
            return tell(information->text, false, platform.console);
        }
        return execute(std::get<CommandRequest>(parsed), platform);
    } catch (const UsageError& failure) {
        report(failure.what(), asJson, platform.console);
        return ExitStatus::unusable;
    } catch (const std::exception& failure) {
        report(failure.what(), asJson, platform.console);
        return ExitStatus::refused;
    }
}

} // namespace Kestry
