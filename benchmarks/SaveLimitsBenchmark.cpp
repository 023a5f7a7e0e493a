// What one change of the ledger costs, from the call to the synced file, beside the least that
// any durable write of as many bytes could cost on the same disk. The two take turns.

#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "LedgerCoding.h"
#include "LedgerGenerator.h"
#include "Measurement.h"
#include "PosixFileSystem.h"
#include "SyncStates.h"
#include "TimeStore.h"

namespace KestryCore {
namespace {

constexpr double changeLimit = 1.25;
constexpr double userShareLimit = 0.15;
constexpr std::size_t leastJudgedSessions = 10'000;

void writeWhole(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        require(count > 0, "write");
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

/// The least that makes bytes durable under a name that always holds a whole file.
void writePlainly(const ScratchDirectory& directory, const std::string& bytes)
{
    const std::string temporary = directory.file("plain.new");
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    require(file >= 0, "open");
    writeWhole(file, bytes);
    require(::fsync(file) == 0, "fsync");
    require(::close(file) == 0, "close");
    require(::rename(temporary.c_str(), directory.file("plain").c_str()) == 0, "rename");
    const int parent = ::open(directory.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(parent >= 0, "open");
    require(::fsync(parent) == 0, "fsync");
    require(::close(parent) == 0, "close");
}

/// A store on real files with a session in progress, whose state changes at every turn.
class Workday {
public:
    Workday(const ScratchDirectory& directory, std::size_t sessions, bool isReplicated)
        : directory_(directory), moment_(currentDate() + -86'400.0)
    {
        LedgerData ledger = generateLedger({.sessions = sessions});
        if (isReplicated) {
            ledger.replication = inStep(ledger);
        }
        std::ofstream(directory.file("ledger.json")) << encodeLedger(ledger);
        StoreOptions options;
        options.directory = directory.path();
        options.lock = std::make_shared<WriterLock>(files_, directory.path());
        require(options.lock->acquire(), "lock");
        store_ = std::make_unique<TimeStore>(StorePlatform{files_}, std::move(options));
        store_->start(ledger.projects.front().id, "Timed work", moment_);
        store_->checkpoint(moment_); // The first change makes the first backup.
    }

    /// Measures a pause; the resumption that must follow is nobody's time.
    double pause()
    {
        if (store_->data()->active->isPaused()) {
            store_->resume(nextMoment());
        }
        return measure([&] { store_->pause(nextMoment()); });
    }

    double checkpoint()
    {
        if (store_->data()->active->isPaused()) {
            store_->resume(nextMoment());
        }
        return measure([&] { store_->checkpoint(nextMoment()); });
    }

    /// The part of the measured time that the processor spent outside system calls, since the
    /// last call. Only the sum over many changes is exact: the kernel counts in ticks.
    double takeUserShare()
    {
        return std::exchange(userSeconds_, 0.0) / std::exchange(wholeSeconds_, 0.0);
    }

    /// The ledger's file as it stands.
    [[nodiscard]] std::string savedBytes() const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(directory_.file("ledger.json")).rdbuf();
        return std::move(bytes).str();
    }

private:
    Date nextMoment() { return moment_ = moment_ + 1.0; }

    template <class Change>
    double measure(Change change)
    {
        const double before = userSeconds();
        const double seconds = secondsOf(change);
        userSeconds_ += userSeconds() - before;
        wholeSeconds_ += seconds;
        return seconds;
    }

    const ScratchDirectory& directory_;
    PosixFileSystem files_;
    std::unique_ptr<TimeStore> store_;
    Date moment_;
    double userSeconds_ = 0.0;
    double wholeSeconds_ = 0.0;
};

struct Row {
    std::size_t sessions;
    bool isReplicated;
    std::size_t bytes;
    const char* change;
};

void print(const Row& row, const Turns& turns, double userShare, Limits& limits)
{
    const bool isJudged = row.sessions >= leastJudgedSessions;
    fmt::print("{:>9}  {:<12}{:<12}{:>8.2f}{:>11.2f}{:>11.2f}{:>7.2f} {:<8}{:>6.1f}% {}\n",
        row.sessions, row.isReplicated ? "connected" : "none", row.change,
        static_cast<double>(row.bytes) / 1e6, median(turns.ours) * 1e3, median(turns.theirs) * 1e3,
        turns.ratio(), isJudged ? limits.judge(turns, changeLimit) : "", userShare * 100.0,
        isJudged ? limits.judge(userShare, userShareLimit) : "");
    std::fflush(stdout);
}

void measureSaving(std::size_t sessions, bool isReplicated, Limits& limits)
{
    constexpr std::size_t mostTurns = 51;
    constexpr double secondsForEach = 10.0;
    const ScratchDirectory directory;
    Workday workday(directory, sessions, isReplicated);
    const std::string bytes = workday.savedBytes();
    const auto plainly = [&] { return secondsOf([&] { writePlainly(directory, bytes); }); };

    const Turns pauses =
        takeTurns([&] { return workday.pause(); }, plainly, mostTurns, secondsForEach);
    print({sessions, isReplicated, bytes.size(), "pause"}, pauses, workday.takeUserShare(), limits);
    const Turns checkpoints =
        takeTurns([&] { return workday.checkpoint(); }, plainly, mostTurns, secondsForEach);
    print({sessions, isReplicated, bytes.size(), "checkpoint"}, checkpoints,
        workday.takeUserShare(), limits);
}

} // namespace
} // namespace KestryCore

/// Takes the numbers of sessions to measure; the usual ones without any.
int main(int argc, char** argv)
{
    using namespace KestryCore;
    std::vector<std::size_t> sizes;
    for (int index = 1; index < argc; ++index) {
        sizes.push_back(std::stoul(argv[index]));
    }
    if (sizes.empty()) {
        sizes = {1'000, 10'000, 100'000, 1'000'000};
    }
    fmt::print("Medians of changes and of plain durable writes of as many bytes, in turns.\n"
               "Limits from {} sessions on: {} times the plain write, {}% outside system calls.\n"
               "{:>9}  {:<12}{:<12}{:>8}{:>11}{:>11}{:>7} {:<8}{:>6}\n",
        leastJudgedSessions, changeLimit, userShareLimit * 100.0, "sessions", "replication",
        "change", "file MB", "change ms", "plain ms", "ratio", "", "user");
    Limits limits;
    for (const std::size_t sessions : sizes) {
        for (const bool isReplicated : {false, true}) {
            measureSaving(sessions, isReplicated, limits);
        }
    }
    return limits.exitStatus();
}
