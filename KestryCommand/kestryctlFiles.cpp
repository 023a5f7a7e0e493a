// The whole of kestryctl: parses the words and works on the files. The program that people start is
// replaced by this one when the running application does not carry the command out at once.

#include <sys/prctl.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

#include "CommandProgram.h"
#include "HelperProgram.h"
#include "LogoImport.h"
#include "PlainText.h"
#include "PosixFileSystem.h"
#include "PrivateDirectories.h"
#include "SecretLine.h"
#include "StandardStreams.h"

namespace {

/// The standard streams of this process.
class StandardConsole final : public Kestry::Console {
public:
    [[nodiscard]] bool readsFromTerminal() const override { return isatty(STDIN_FILENO) != 0; }
    [[nodiscard]] bool writesToTerminal() const override { return isatty(STDOUT_FILENO) != 0; }

    [[nodiscard]] std::optional<std::string> readLine() override
    {
        std::string line;
        return std::getline(std::cin, line) ? std::optional(line) : std::nullopt;
    }

    [[nodiscard]] std::optional<std::string> readSecret(std::string_view prompt) override
    {
        return Kestry::readSecretLine(STDIN_FILENO, STDERR_FILENO, prompt);
    }

    void write(std::string_view text) override
    {
        if (const int code = Kestry::writeAll(STDOUT_FILENO, text); code != 0) {
            throw KestryCore::fileError("The output", "written", code);
        }
    }

    void writeError(std::string_view text) override { (void)Kestry::writeAll(STDERR_FILENO, text); }
};

[[noreturn]] void run(const std::vector<std::string>& words)
{
    KestryCore::PosixFileSystem files;
    StandardConsole console;
    std::vector<std::unique_ptr<KestryCore::TimeStore>> stores;
    const Kestry::ProgramPlatform platform{files, console, KestryCore::processEnvironment,
        KestryCore::currentDate,
        [](double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); },
        [](std::string_view picture) {
            return Kestry::importedLogo(picture, Kestry::programNear("kestry-logo"));
        },
        KestryCore::Uuid::random,
        [&stores](
            std::unique_ptr<KestryCore::TimeStore> store) { stores.push_back(std::move(store)); },
        [](const Kestry::LocalCommand& command) {
            return Kestry::handOver(command.dataDirectory, encodeMessage(command));
        },
        KestryCore::closeToOthers};
    const auto status = static_cast<int>(runProgram(words, platform));
    // Everything is written. Destroying a large ledger would only take time.
    std::_Exit(status);
}

} // namespace

int main(int count, char** arguments)
{
    Kestry::holdStandardStreams();
    // The name that other processes show when they have to wait for this one.
    (void)prctl(PR_SET_NAME, "kestryctl");
    // Writing to a closed pipe is an error, not the end of the program.
    std::signal(SIGPIPE, SIG_IGN);
    // So is exceeding the size limit of files.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        run({arguments + (count > 0 ? 1 : 0), arguments + count});
    } catch (const std::exception& failure) {
        const std::string reason = Kestry::printableLines(failure.what());
        (void)Kestry::writeAll(STDERR_FILENO, "kestryctl could not be started: " + reason + ".\n");
        return 1;
    }
}
