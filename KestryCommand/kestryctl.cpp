// What people start as kestryctl. While the application runs, most commands are its to carry out,
// and then this is all there is to do: so it links nothing that takes long to load. For everything
// else the whole program takes its place.

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <exception>
#include <string>
#include <vector>

#include "Environment.h"
#include "FileSystem.h"
#include "HandedCommand.h"
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

/// Tells that nobody knows what became of the command. It must not be tried once more.
int tellLoss(const LocalReply& reply, const std::vector<std::string>& words)
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

/// Lets the whole program, which stands in a folder of its own near this one's, take this process
/// over. Returns when it can't, with the system's error number.
int becomeWholeProgram(char** arguments)
{
    std::string path(PATH_MAX, '\0');
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length > 0) {
        path.resize(static_cast<std::size_t>(length));
        path = path.substr(0, path.find_last_of('/') + 1) + KESTRY_WHOLE_PROGRAM;
        execv(path.c_str(), arguments);
    }
    return errno;
}

/// Has the running application carry the command out, or lets the whole program do it.
int run(int count, char** arguments)
{
    const std::vector<std::string> words(arguments + (count > 0 ? 1 : 0), arguments + count);
    if (auto command = Kestry::unreadCommandToHandOver(words, KestryCore::processEnvironment)) {
        command->writesToTerminal = isatty(STDOUT_FILENO) != 0;
        // Whoever does not answer at once is for the whole program to wait for.
        constexpr Kestry::LocalPatience patience{.untilTaken = 0.25};
        const LocalReply reply =
            Kestry::handOver(command->dataDirectory, Kestry::encodeMessage(*command), patience);
        if (reply.outcome == LocalReply::Outcome::answered) {
            return showAnswer(reply.answer, STDOUT_FILENO, STDERR_FILENO);
        }
        if (reply.outcome == LocalReply::Outcome::lost) {
            return tellLoss(reply, words);
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
    // A reader that went away is a failed write, not the end of the program.
    std::signal(SIGPIPE, SIG_IGN);
    // So is a file that has reached the size that this user's files may have.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return run(count, arguments);
    } catch (const std::exception& failure) {
        // What this has no memory for, the next may have none for either: there is nothing to try.
        (void)Kestry::writeAll(STDERR_FILENO, "kestryctl could not be started: ");
        (void)Kestry::writeAll(STDERR_FILENO, failure.what());
        (void)Kestry::writeAll(STDERR_FILENO, ".\n");
        return 1;
    }
}
