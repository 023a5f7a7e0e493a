// What starting and stopping the clock costs from the command line, as whole processes, beside
// timewarrior with as many intervals, as its package comes. The two take turns, and so does a plain
// durable write of our ledger's bytes: no program that keeps the ledger in one file can do with
// less. Once more beside timewarrior, with the commands handed over to the running application.

#include <fcntl.h>
#include <fmt/core.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "DurableFiles.h"
#include "LedgerCoding.h"
#include "LedgerGenerator.h"
#include "Measurement.h"
#include "PosixFileSystem.h"

namespace KestryCore {
namespace {

struct Size {
    std::size_t sessions;
    double limit;
    double handedLimit; ///< While the application runs.
};

/// Whether what a program says of its troubles is shown.
enum class Talk { shown, silenced };

/// Starts a program with its output thrown away.
pid_t spawn(std::vector<std::string> words, Talk talk = Talk::shown)
{
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    if (talk == Talk::silenced) {
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    pid_t child = 0;
    errno = posix_spawnp(&child, words[0].c_str(), &actions, nullptr, arguments.data(), environ);
    require(errno == 0, words[0].c_str());
    posix_spawn_file_actions_destroy(&actions);
    return child;
}

/// Runs a program to its end; returns the seconds it took.
double secondsToRun(const std::vector<std::string>& words)
{
    int status = -1;
    // Nobody is to wait for bytes that the other one has left behind in memory.
    sync();
    const double seconds = secondsOf([&] {
        const pid_t child = spawn(words);
        require(waitpid(child, &status, 0) == child, "waitpid");
    });
    if (status != 0) {
        throw std::runtime_error(words[0] + " " + words[1] + " failed.");
    }
    return seconds;
}

/// A moment as timewarrior writes it: 20260314T102600Z.
std::string compactInstant(Date date)
{
    const auto seconds = static_cast<std::time_t>(date.seconds + referenceDateSecondsSince1970);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    return fmt::format("{:04}{:02}{:02}T{:02}{:02}{:02}Z", parts.tm_year + 1900, parts.tm_mon + 1,
        parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
}

/// What timewarrior's journal of changes holds of an interval that was started and stopped: it
/// keeps every change for as long as the data, unless its user limits it.
std::string journalOf(const std::string& start, const std::string& end, const std::string& tag)
{
    const std::string begun = "\"start\":\"" + start + "\"";
    const std::string tags = "\"tags\":[\"" + tag + "\"]";
    const std::string change = "  type: interval\n  before: ";
    return "txn:\n" + change + "\n  after: {\"id\":0," + begun + "," + tags + "}\ntxn:\n" + change
        + "{\"id\":1," + begun + "," + tags + "}\n  after: \n" + change + "\n  after: {\"id\":1,"
        + begun + ",\"end\":\"" + end + "\"," + tags + "}\n";
}

/// Timewarrior's own files as starting and stopping one interval for each session leaves them, the
/// last of them yesterday: one file for each month, the count of each tag, and the journal.
void writeIntervals(const std::string& directory, const LedgerData& ledger)
{
    std::filesystem::create_directories(directory + "/data");
    std::ofstream(directory + "/timewarrior.cfg");
    std::ofstream journal(directory + "/data/undo.data");
    const double toYesterday = currentDate() - ledger.entries.back().endedAt() - 86'400.0;
    std::map<std::string, std::string> months;
    std::map<std::string, std::size_t> tags;
    for (const TimeEntry& entry : ledger.entries) {
        const std::string start = compactInstant(entry.startedAt() + toYesterday);
        const std::string end = compactInstant(entry.endedAt() + toYesterday);
        const std::string tag = "project" + entry.projectID.text().substr(0, 2);
        ++tags[tag];
        journal << journalOf(start, end, tag);
        months[start.substr(0, 4) + "-" + start.substr(4, 2)] +=
            "inc " + start + " - " + end + " # " + tag + "\n";
    }
    for (const auto& [month, lines] : months) {
        std::ofstream(directory + "/data/" + month + ".data") << lines;
    }
    std::ofstream counts(directory + "/data/tags.data");
    const char* separator = "{";
    for (const auto& [tag, count] : tags) {
        counts << separator << "\n  \"" << tag << "\":{\"count\":" << count << "}";
        separator = ",";
    }
    counts << "\n}\n";
}

/// The application on a data directory, without a screen, for as long as this lives.
class RunningApplication {
public:
    RunningApplication(const std::string& kestry, const std::string& directory)
        : process_(spawn({kestry, "--data-directory", directory}, Talk::silenced))
    {
    }
    RunningApplication(const RunningApplication&) = delete;
    RunningApplication& operator=(const RunningApplication&) = delete;
    ~RunningApplication()
    {
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }

private:
    pid_t process_;
};

/// Gives this process's children a desktop of their own, with nothing on it.
void useOwnDesktop(const ScratchDirectory& folder)
{
    for (const char* name : {"XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"}) {
        const std::string path = folder.file(name);
        std::filesystem::create_directory(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        setenv(name, path.c_str(), 1);
    }
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
}

/// Whether the application carries out commands for kestryctl, or kestryctl works on the files.
enum class Worker { files, application };

/// Both programs over equally many sessions.
class Contest {
public:
    Contest(const std::string& programs, std::size_t sessions) : kestryctl_(programs + "/kestryctl")
    {
        useOwnDesktop(directory_);
        const LedgerData ledger = generateLedger({.sessions = sessions});
        for (const Worker worker : {Worker::files, Worker::application}) {
            std::filesystem::create_directories(ledgerDirectory(worker));
            std::ofstream(ledgerDirectory(worker) + "/ledger.json") << encodeLedger(ledger);
        }
        client_ = ledger.clients.front().name;
        project_ = ledger.projects.front().name;
        const std::string intervals = directory_.file("timewarrior");
        writeIntervals(intervals, ledger);
        setenv("TIMEWARRIORDB", intervals.c_str(), 1);
        application_.emplace(programs + "/kestry", ledgerDirectory(Worker::application));
        // Waits for the application to be up, and makes the ledger one that it has written itself.
        start(Worker::application);
        stop(Worker::application);
        start(Worker::files);
        stop(Worker::files);
    }

    double start(Worker worker)
    {
        return ours(worker, {"start", client_, project_, "--title", "Timed work"});
    }
    double stop(Worker worker) { return ours(worker, {"stop"}); }
    /// What the disk alone takes for the bytes that each of our changes writes.
    double plainWrite()
    {
        const std::string bytes = readFile(files_, ledgerDirectory(Worker::files) + "/ledger.json");
        sync();
        return secondsOf([&] {
            DurableFiles(files_).write(directory_.file("plain.json"), std::string_view(bytes));
        });
    }
    static double theirStart() { return secondsToRun({"timew", "start", "project00"}); }
    static double theirStop() { return secondsToRun({"timew", "stop"}); }

private:
    [[nodiscard]] std::string ledgerDirectory(Worker worker) const
    {
        return directory_.file(worker == Worker::files ? "files" : "application");
    }

    double ours(Worker worker, std::vector<std::string> words)
    {
        words.insert(words.begin(), {kestryctl_, "--data-directory", ledgerDirectory(worker)});
        return secondsToRun(words);
    }

    PosixFileSystem files_;
    ScratchDirectory directory_;
    std::string kestryctl_;
    std::string client_;
    std::string project_;
    std::optional<RunningApplication> application_;
};

void print(std::size_t sessions, const std::string& command, const Turns& turns, double plainWrite,
    double limit, Limits& limits)
{
    fmt::print("{:>9}  {:<14}{:>14.2f}{:>16.2f}{:>16.2f}{:>7.2f}{:>7.1f}  {}\n", sessions, command,
        median(turns.ours) * 1e3, plainWrite * 1e3, median(turns.theirs) * 1e3, turns.ratio(),
        limit, limits.judge(turns, limit));
    std::fflush(stdout);
}

/// What one command took in turns of both programs.
struct Command {
    const char* name;
    Turns onFiles;
    Turns handedOver;

    template <class Ours, class Theirs>
    void takeTurn(Ours ours, Theirs theirs)
    {
        onFiles.ours.push_back(ours(Worker::files));
        handedOver.ours.push_back(ours(Worker::application));
        onFiles.theirs.push_back(theirs());
        handedOver.theirs.push_back(onFiles.theirs.back());
    }
};

void measureCommands(const std::string& programs, const Size& size, Limits& limits)
{
    constexpr std::size_t turnCount = 15;
    Contest contest(programs, size.sessions);
    Command starts{"start", {}, {}};
    Command stops{"stop", {}, {}};
    std::vector<double> plainWrites;
    for (std::size_t turn = 0; turn < turnCount; ++turn) {
        starts.takeTurn([&](Worker worker) { return contest.start(worker); }, Contest::theirStart);
        // Timewarrior counts whole seconds, and refuses an interval of none.
        std::this_thread::sleep_for(std::chrono::milliseconds(1'100));
        stops.takeTurn([&](Worker worker) { return contest.stop(worker); }, Contest::theirStop);
        plainWrites.push_back(contest.plainWrite());
        std::this_thread::sleep_for(std::chrono::milliseconds(1'100));
    }
    for (const Command& each : {starts, stops}) {
        const std::string name = each.name;
        print(size.sessions, name, each.onFiles, median(plainWrites), size.limit, limits);
        print(size.sessions, name + ", handed", each.handedOver, median(plainWrites),
            size.handedLimit, limits);
    }
}

} // namespace
} // namespace KestryCore

int main()
{
    using namespace KestryCore;
    const auto programs = std::filesystem::canonical("/proc/self/exe").parent_path();
    fmt::print("Medians of whole processes that take turns, with as many sessions each.\n"
               "Handed: to the running application.\n"
               "{:>9}  {:<14}{:>14}{:>16}{:>16}{:>7}{:>7}\n",
        "sessions", "command", "kestryctl ms", "plain write ms", "timewarrior ms", "ratio",
        "limit");
    Limits limits;
    for (const Size& size : {Size{1'000, 1.5, 1.0}, Size{100'000, 0.5, 1.0}}) {
        measureCommands(programs, size, limits);
    }
    return limits.exitStatus();
}
