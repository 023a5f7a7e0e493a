#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <thread>
#include <vector>

#include "CommandProgram.h"
#include "PosixFileSystem.h"

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

    void write(std::string_view text) override
    {
        while (!text.empty()) {
            const ssize_t count = ::write(STDOUT_FILENO, text.data(), text.size());
            if (count < 0 && errno != EINTR) {
                throw KestryCore::fileError("The output", "written", errno);
            }
            text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
        }
    }

    void writeError(std::string_view text) override
    {
        while (!text.empty()) {
            const ssize_t count = ::write(STDERR_FILENO, text.data(), text.size());
            if (count < 0 && errno != EINTR) {
                return;
            }
            text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
        }
    }
};

/// Keeps the numbers of the standard streams taken. In a process started without one of them the
/// next file to be opened would get its number, and words meant for a person would end up in the
/// ledger. Opened the wrong way round, so that using them still fails.
void holdStandardStreams()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0 && errno == EBADF) {
            (void)::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
}

} // namespace

int main(int count, char** arguments)
{
    holdStandardStreams();
    // A reader that went away is a failed write, not the end of the program.
    std::signal(SIGPIPE, SIG_IGN);
    KestryCore::PosixFileSystem files;
    StandardConsole console;
    std::vector<std::unique_ptr<KestryCore::TimeStore>> stores;
    const Kestry::ProgramPlatform platform{files, console, KestryCore::processEnvironment,
        KestryCore::currentDate,
        [](double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); },
        KestryCore::Uuid::random,
        [&stores](
            std::unique_ptr<KestryCore::TimeStore> store) { stores.push_back(std::move(store)); },
        [](const Kestry::LocalCommand& command) {
            return Kestry::handOver(command.dataDirectory, encodeMessage(command));
        }};
    const std::vector<std::string> words(arguments + (count > 0 ? 1 : 0), arguments + count);
    const auto status = static_cast<int>(runProgram(words, platform));
    // All that was to be written has been; what stands in memory falls with the process.
    std::_Exit(status);
}
