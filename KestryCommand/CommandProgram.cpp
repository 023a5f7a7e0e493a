#include "CommandProgram.h"

#include "CommandExecution.h"
#include "CommandOnFiles.h"
#include "CommandParser.h"
#include "HandedCommand.h"
#include "JsonWriter.h"
#include "OutputFile.h"
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
    return visibleJson(json.take()) + "\n";
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
        const std::string prefix = hasChanged ? changeNotShown : std::string();
        console.writeError(printableLines(prefix + failure.what()) + "\n");
        return ExitStatus::refused;
    }
}

/// Writes the file of an answer, or has it kept. False when it took the place of whatever else
/// there was to say.
bool writeFile(FileToWrite file, const CommandRequest& request, const ProgramPlatform& platform)
{
    if (platform.keepFile) {
        platform.keepFile(std::move(file));
        return true;
    }
    return writeOutputFile(file, dataDirectoryOf(request.options, platform)) == FileWritten::beside;
}

ExitStatus execute(const CommandRequest& request, const ProgramPlatform& platform)
{
    CommandAnswer answer = executeCommand(request, platform);
    if (answer.file && !writeFile(std::move(*answer.file), request, platform)) {
        return ExitStatus::done;
    }
    const std::string text =
        request.options.json ? visibleJson(std::move(answer.json)) + "\n" : std::move(answer.text);
    const ExitStatus told = tell(text, changesLedger(request.command), platform.console);
    return answer.isSound ? told : ExitStatus::refused;
}

/// Tells what the application answered.
ExitStatus relay(LocalAnswer answer, const CommandRequest& request, const ProgramPlatform& platform)
{
    platform.console.writeError(answer.errors);
    if (answer.file && !writeFile(std::move(*answer.file), request, platform)) {
        return ExitStatus::done;
    }
    const ExitStatus told = answer.output.empty()
        ? ExitStatus::done
        : tell(answer.output, answer.hasChanged, platform.console);
    return told == ExitStatus::done ? static_cast<ExitStatus>(answer.status) : told;
}

/// The time zone where the command was typed, when it has neither name nor rule: as one whose
/// clocks always show what they show now.
std::string ruleOfNow(const ProgramPlatform& platform)
{
    const KestryCore::Date now = platform.now();
    const auto calendar = KestryCore::ZoneCalendar::withSystemTimeZone(
        {}, KestryCore::systemTimeZone(platform.environment));
    return KestryCore::fixedRule(dateInUtc(calendar.wallTime(now)) - now);
}

/// The command as the application is to carry it out.
LocalCommand handed(const std::vector<std::string>& arguments, const CommandRequest& request,
    bool isAgreed, const ProgramPlatform& platform)
{
    LocalCommand command = commandToHandOver(
        arguments, dataDirectoryOf(request.options, platform), platform.environment);
    command.namedDirectory = request.options.dataDirectory;
    command.writesToTerminal = platform.console.writesToTerminal();
    if (command.timeZone.empty()) {
        command.timeZone = ruleOfNow(platform);
    }
    command.isPrepared = true;
    command.isAgreed = isAgreed;
    const auto* deletion = std::get_if<DeleteCommand>(&request.command);
    if (isAgreed && deletion != nullptr) {
        command.session = deletion->session;
    }
    command.logo = readLogo(request.command);
    return command;
}

/// What stands in for an answer that did not come. None when the files can be worked on instead.
std::optional<std::string> refusalOf(const LocalReply& reply, const Command& command)
{
    if (!changesLedger(command)) {
        return std::nullopt;
    }
    if (reply.outcome == LocalReply::Outcome::silent) {
        return "Kestry (process " + std::to_string(reply.process)
            + ") is using this data directory and does not answer. Nothing was changed.";
    }
    if (reply.outcome == LocalReply::Outcome::lost) {
        return lostCommandText(reply);
    }
    return std::nullopt;
}

/// Has the application carry out a command, or does it on the files when there is none. One that
/// has the directory and does not listen yet is only starting, or only just ending.
ExitStatus runWhereTheStoreIs(
    const CommandRequest& request, LocalCommand command, const ProgramPlatform& platform)
{
    constexpr double mostSeconds = 5.0;
    constexpr double pause = 0.05;
    double waited = 0.0;
    const bool isHanded = isWithinLimits(command);
    while (true) {
        LocalReply reply = isHanded ? platform.handOver(command) : LocalReply{};
        if (reply.outcome == LocalReply::Outcome::answered) {
            return relay(std::move(reply.answer), request, platform);
        }
        if (reply.outcome == LocalReply::Outcome::declined && !command.session) {
            // Looking through a long ledger for a name would keep the application busy.
            command.session = sessionMeant(request, platform);
            if (command.session) {
                continue;
            }
        }
        if (const auto refusal = refusalOf(reply, request.command)) {
            throw KestryCore::LedgerError(*refusal);
        }
        try {
            return execute(request, platform);
        } catch (const DirectoryInUse& held) {
            const bool mayListenSoon = held.holder().starts_with("kestry (");
            if (mayListenSoon && !isHanded) {
                throw KestryCore::LedgerError("Kestry is running, and takes no command line with "
                                              "words as long as these. Nothing was changed.");
            }
            if (!mayListenSoon || waited >= mostSeconds) {
                throw;
            }
        }
        platform.sleep(pause);
        waited += pause;
    }
}

ExitStatus runRequestOf(const std::vector<std::string>& arguments, CommandRequest request,
    const ProgramPlatform& platform)
{
    const bool isAsked = needsAgreement(request.command);
    request = preparedRequest(std::move(request), platform);
    if (!platform.handOver || !isForStore(request.command)) {
        return execute(request, platform);
    }
    return runWhereTheStoreIs(request, handed(arguments, request, isAsked, platform), platform);
}

/// Does something and tells why it can't be done.
template <class Action>
ExitStatus reporting(bool asJson, Console& console, Action action)
{
    try {
        return action();
    } catch (const UsageError& failure) {
        report(failure.what(), asJson, console);
        return ExitStatus::unusable;
    } catch (const std::exception& failure) {
        report(KestryCore::failureText(failure), asJson, console);
        return ExitStatus::refused;
    }
}

} // namespace

ExitStatus runProgram(const std::vector<std::string>& arguments, const ProgramPlatform& platform)
{
    return reporting(asksForJson(arguments), platform.console, [&] {
        auto parsed = parseCommandLine(arguments);
        if (const auto* information = std::get_if<InformationText>(&parsed)) {
            return tell(information->text, false, platform.console);
        }
        return runRequestOf(arguments, std::get<CommandRequest>(std::move(parsed)), platform);
    });
}

ExitStatus runRequest(const CommandRequest& request, const ProgramPlatform& platform)
{
    return reporting(
        request.options.json, platform.console, [&] { return execute(request, platform); });
}

} // namespace Kestry
