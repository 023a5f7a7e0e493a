// The program that people start as kestryctl. It hands a command over to the running application,
// and links nothing that takes long to load. For everything else it is replaced by the whole
// program. docs/two-programs.md says why there are two.

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <exception>
#include <string>
#include <vector>

#include "Environment.h"
#include "FileSystem.h"
#include "HandedCommand.h"
#include "HelperProgram.h"
#include "LocalClient.h"
#include "StandardStreams.h"

namespace {

using Kestry::LocalReply;

std::string json(const std::string& message)
{
    std::string text = "{\"error\":\"";
    for (const char letter : message) {
        text += letter == '"' ? std::string("\\\"") : std::string(1, letter);
    }
    return text + "\"}\n";
}

/// Reports that the result of the command is unknown. It must not be tried again.
int reportLoss(const LocalReply& reply, const std::vector<std::string>& words)
{
    const std::string message = lostCommandText(reply);
    (void)Kestry::writeAll(STDERR_FILENO, message + "\n");
    for (const std::string& word : words) {
        if (word == "--json") {
            (void)Kestry::writeAll(STDOUT_FILENO, json(message));
        }
    }
    return 1;
}

/// Replaces this process with the whole program, which is installed in a folder near this one's.
/// Returns only on failure, with the system's error number.
int becomeWholeProgram(char** arguments)
{
    execv(Kestry::programNear(KESTRY_WHOLE_PROGRAM).c_str(), arguments);
    return errno;
}

/// Hands the command over to the running application, or else to the whole program.
int run(int count, char** arguments)
{
    const std::vector<std::string> words(arguments + (count > 0 ? 1 : 0), arguments + count);
    if (auto command = Kestry::unreadCommandToHandOver(words, KestryCore::processEnvironment)) {
        command->writesToTerminal = isatty(STDOUT_FILENO) != 0;
        // The whole program waits longer.
        constexpr Kestry::ClientTimeouts timeouts{.untilTaken = 0.25};
        const LocalReply reply =
            Kestry::handOver(command->dataDirectory, Kestry::encodeMessage(*command), timeouts);
        if (reply.outcome == LocalReply::Outcome::answered) {
            return showAnswer(reply.answer, STDOUT_FILENO, STDERR_FILENO);
        }
        if (reply.outcome == LocalReply::Outcome::lost) {
            return reportLoss(reply, words);
        }
    }
    const int code = becomeWholeProgram(arguments);
    const std::string reason = KestryCore::fileError(KESTRY_WHOLE_PROGRAM, "started", code).what();
    (void)Kestry::writeAll(STDERR_FILENO, reason + "\n");
    return 1;
}

} // namespace

int main(int count, char** arguments)
{
    Kestry::holdStandardStreams();
    // Writing to a closed pipe is an error, not the end of the program.
    std::signal(SIGPIPE, SIG_IGN);
    // So is exceeding the size limit of files.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return run(count, arguments);
    } catch (const std::exception& failure) {
        // Probably out of memory, so the whole program would fail too.
        (void)Kestry::writeAll(STDERR_FILENO, "kestryctl could not be started: ");
        (void)Kestry::writeAll(STDERR_FILENO, failure.what());
        (void)Kestry::writeAll(STDERR_FILENO, ".\n");
        return 1;
    }
}
