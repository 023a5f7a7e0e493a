// What starting and stopping the clock costs from the command line, as whole processes, beside
// timewarrior with as many intervals, as its package comes. The two take turns, and so does a plain
// durable write of our ledger's bytes: no program that keeps the ledger in one file can do with
// less.

#include <fcntl.h>
#include <fmt/core.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
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
};

/// Runs a program to its end with its output thrown away; returns the seconds it took.
double secondsToRun(std::vector<std::string> words)
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
    int status = -1;
    // Nobody is to wait for bytes that the other one has left behind in memory.
    sync();
    const double seconds = secondsOf([&] {
        pid_t child = 0;
        errno =
            posix_spawnp(&child, words[0].c_str(), &actions, nullptr, arguments.data(), environ);
        require(errno == 0, words[0].c_str());
        require(waitpid(child, &status, 0) == child, "waitpid");
    });
    posix_spawn_file_actions_destroy(&actions);
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

/// Both programs over equally many sessions.
class Contest {
public:
    Contest(const std::string& kestryctl, std::size_t sessions) : kestryctl_(kestryctl)
    {
        const LedgerData ledger = generateLedger({.sessions = sessions});
        std::filesystem::create_directories(ledgerDirectory());
        std::ofstream(ledgerDirectory() + "/ledger.json") << encodeLedger(ledger);
        client_ = ledger.clients.front().name;
        project_ = ledger.projects.front().name;
        const std::string intervals = directory_.file("timewarrior");
        writeIntervals(intervals, ledger);
        setenv("TIMEWARRIORDB", intervals.c_str(), 1);
    }

    double start() { return ours({"start", client_, project_, "--title", "Timed work"}); }
    double stop() { return ours({"stop"}); }
    /// What the disk alone takes for the bytes that each of our changes writes.
    double plainWrite()
    {
        const std::string bytes = readFile(files_, ledgerDirectory() + "/ledger.json");
        sync();
        return secondsOf([&] {
            DurableFiles(files_).write(directory_.file("plain.json"), std::string_view(bytes));
        });
    }
    static double theirStart() { return secondsToRun({"timew", "start", "project00"}); }
    static double theirStop() { return secondsToRun({"timew", "stop"}); }

private:
    [[nodiscard]] std::string ledgerDirectory() const { return directory_.file("kestry"); }

    double ours(std::vector<std::string> words)
    {
        words.insert(words.begin(), {kestryctl_, "--data-directory", ledgerDirectory()});
        return secondsToRun(std::move(words));
    }

    PosixFileSystem files_;
    ScratchDirectory directory_;
    std::string kestryctl_;
    std::string client_;
    std::string project_;
};

void print(std::size_t sessions, const char* command, const Turns& turns, double plainWrite,
    double limit, Limits& limits)
{
    fmt::print("{:>9}  {:<8}{:>14.2f}{:>16.2f}{:>16.2f}{:>7.2f}{:>7.1f}  {}\n", sessions, command,
        median(turns.ours) * 1e3, plainWrite * 1e3, median(turns.theirs) * 1e3, turns.ratio(),
        limit, limits.judge(turns, limit));
    std::fflush(stdout);
}

void measureCommands(const std::string& kestryctl, const Size& size, Limits& limits)
{
    constexpr std::size_t turnCount = 15;
    Contest contest(kestryctl, size.sessions);
    Turns starts;
    Turns stops;
    std::vector<double> plainWrites;
    for (std::size_t turn = 0; turn < turnCount; ++turn) {
        starts.ours.push_back(contest.start());
        starts.theirs.push_back(Contest::theirStart());
        // Timewarrior counts whole seconds, and refuses an interval of none.
        std::this_thread::sleep_for(std::chrono::milliseconds(1'100));
        stops.ours.push_back(contest.stop());
        stops.theirs.push_back(Contest::theirStop());
        plainWrites.push_back(contest.plainWrite());
        std::this_thread::sleep_for(std::chrono::milliseconds(1'100));
    }
    print(size.sessions, "start", starts, median(plainWrites), size.limit, limits);
    print(size.sessions, "stop", stops, median(plainWrites), size.limit, limits);
}

} // namespace
} // namespace KestryCore

int main()
{
    using namespace KestryCore;
    const auto programs = std::filesystem::canonical("/proc/self/exe").parent_path();
    fmt::print("Medians of whole processes that take turns, with as many sessions each.\n"
               "{:>9}  {:<8}{:>14}{:>16}{:>16}{:>7}{:>7}\n",
        "sessions", "command", "kestryctl ms", "plain write ms", "timewarrior ms", "ratio",
        "limit");
    Limits limits;
    for (const Size& size : {Size{1'000, 1.5}, Size{100'000, 0.5}}) {
        measureCommands(programs / "kestryctl", size, limits);
    }
    return limits.exitStatus();
}
