#include "HelperProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>

// The header of this C library does not say it for C++.
extern "C" {
#include <sys/pidfd.h>
}

#include "Descriptor.h"
#include "FileSystem.h"
#include "StandardStreams.h"

namespace Kestry {

using KestryCore::fileError;

namespace {

/// A file in memory. Unlike a pipe it takes everything at once, so that neither side ever waits for
/// the other.
Descriptor memoryFile(const std::string& program)
{
    Descriptor file(memfd_create("kestry", MFD_CLOEXEC));
    if (!file) {
        throw fileError(program, "started", errno);
    }
    return file;
}

std::string content(const Descriptor& file)
{
    struct stat status { };
    std::string bytes;
    if (fstat(file.number(), &status) == 0 && status.st_size > 0) {
        bytes.resize(static_cast<std::size_t>(status.st_size));
        const ssize_t count = pread(file.number(), bytes.data(), bytes.size(), 0);
        bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return bytes;
}

/// Which file is which standard stream of a new process.
class StreamActions {
public:
    StreamActions(const Descriptor& input, const Descriptor& output)
    {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_adddup2(&actions_, input.number(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions_, output.number(), STDOUT_FILENO);
        posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
    }
    StreamActions(const StreamActions&) = delete;
    StreamActions& operator=(const StreamActions&) = delete;
    ~StreamActions() { posix_spawn_file_actions_destroy(&actions_); }

    [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

/// Waits until a process has ended, by itself or at one of the limits.
void awaitEnd(const Descriptor& process, const HelperLimits& limits)
{
    using std::chrono::milliseconds;
    using Clock = std::chrono::steady_clock;
    const auto kill = [&] { pidfd_send_signal(process.number(), SIGKILL, nullptr, 0); };
    const std::stop_callback stopping(limits.stop, kill);
    const auto end = Clock::now() + limits.most;
    pollfd waiting{process.number(), POLLIN, 0};
    int ended = 0;
    do {
        const auto left = std::chrono::ceil<milliseconds>(end - Clock::now()).count();
        ended = poll(&waiting, 1, static_cast<int>(std::max<decltype(left)>(left, 0)));
    } while (ended < 0 && errno == EINTR);
    if (ended == 0) {
        kill();
    }
}

/// Waits until the process has ended. How it ended is not asked: the system keeps that from a
/// process that was started with SIGCHLD ignored.
void awaitEnd(pid_t process, const HelperLimits& limits)
{
    // Unlike its number, this never comes to mean another process.
    if (const Descriptor same(pidfd_open(process, 0)); same) {
        awaitEnd(same, limits);
    }
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) { }
}

} // namespace

std::string programNear(std::string_view relativePath)
{
    std::string path(PATH_MAX, '\0');
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length < 0) {
        throw fileError(std::string(relativePath), "found", errno);
    }
    path.resize(static_cast<std::size_t>(length));
    return path.substr(0, path.find_last_of('/') + 1).append(relativePath);
}

std::string helperOutput(
    const std::string& program, std::string_view input, const HelperLimits& limits)
{
    const Descriptor in = memoryFile(program);
    const Descriptor out = memoryFile(program);
    if (const int code = writeAll(in.number(), input); code != 0) {
        throw fileError(program, "started", code);
    }
    lseek(in.number(), 0, SEEK_SET);
    const StreamActions streams(in, out);
    std::string name = program;
    const std::array<char*, 2> words{name.data(), nullptr};
    pid_t process = 0;
    const int code =
        posix_spawn(&process, program.c_str(), streams.get(), nullptr, words.data(), environ);
    if (code != 0) {
        throw fileError(program, "started", code);
    }
    awaitEnd(process, limits);
    return content(out);
}

} // namespace Kestry
