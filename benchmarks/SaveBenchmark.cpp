// What one change of the ledger costs, from the call to the synced file, beside the least that
// any durable write of as many bytes could cost on the same disk. The two take turns, so that
// whatever else the disk is doing meets both alike.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "LedgerCoding.h"
#include "LedgerGenerator.h"
#include "PosixFileSystem.h"
#include "TimeStore.h"

namespace KestryCore {
namespace {

/// A new directory below the temporary directory, removed with all that is in it at the end.
class ScratchDirectory {
public:
    ScratchDirectory()
    {
        std::string path = std::filesystem::temp_directory_path() / "kestry-save-XXXXXX";
        if (mkdtemp(path.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), path);
        }
        path_ = path;
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    ~ScratchDirectory() { std::filesystem::remove_all(path_); }

    [[nodiscard]] std::string file(const std::string& name) const { return path_ / name; }
    [[nodiscard]] std::string path() const { return path_; }

private:
    std::filesystem::path path_;
};

void require(bool success, const char* call)
{
    if (!success) {
        throw std::system_error(errno, std::generic_category(), call);
    }
}

/// The least that makes bytes durable under a name that always holds a whole file.
void writePlainly(const ScratchDirectory& directory, const std::string& bytes)
{
    const std::string temporary = directory.file("plain.new");
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    require(file >= 0, "open");
    require(
        ::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "write");
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
    Workday(const ScratchDirectory& directory, std::size_t sessions)
        : directory_(directory), moment_(currentDate() + -86'400.0)
    {
        const LedgerData ledger = generateLedger({.sessions = sessions});
        std::ofstream(directory.file("ledger.json")) << encodeLedger(ledger);
        StoreOptions options;
        options.directory = directory.path();
        options.lock = std::make_shared<WriterLock>(files_, directory.path());
        require(options.lock->acquire(), "lock");
        store_ = std::make_unique<TimeStore>(StorePlatform{files_}, std::move(options));
        store_->start(ledger.projects.front().id, "Timed work", moment_);
    }

    /// One whole change: pauses the session, or resumes it.
    void takeTurn()
    {
        moment_ = moment_ + 1.0;
        if (store_->data()->active->isPaused()) {
            store_->resume(moment_);
        } else {
            store_->pause(moment_);
        }
    }

    /// The ledger's file as it stands.
    [[nodiscard]] std::string savedBytes() const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(directory_.file("ledger.json")).rdbuf();
        return bytes.str();
    }

private:
    const ScratchDirectory& directory_;
    PosixFileSystem files_;
    std::unique_ptr<TimeStore> store_;
    Date moment_;
};

template <class Action>
double secondsOf(Action action)
{
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

void oneChangeBesidePlainWrite(benchmark::State& state)
{
    const ScratchDirectory directory;
    Workday workday(directory, static_cast<std::size_t>(state.range(0)));
    workday.takeTurn(); // The first backup is made here, so that every measured turn replaces one.
    const std::string bytes = workday.savedBytes();

    std::vector<double> changes;
    std::vector<double> plainWrites;
    for ([[maybe_unused]] auto turn : state) {
        changes.push_back(secondsOf([&] { workday.takeTurn(); }));
        plainWrites.push_back(secondsOf([&] { writePlainly(directory, bytes); }));
        state.SetIterationTime(changes.back());
    }
    state.counters["sessions"] = static_cast<double>(state.range(0));
    state.counters["bytes"] = static_cast<double>(bytes.size());
    state.counters["changeSeconds"] = median(changes);
    state.counters["plainWriteSeconds"] = median(plainWrites);
}

BENCHMARK(oneChangeBesidePlainWrite)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Iterations(51)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// One line for each size of ledger, in place of a column for each counter.
class Table : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& /*context*/) override
    {
        fmt::print("Medians of changes and plain writes that take turns\n"
                   "{:>10}{:>12}{:>16}{:>17}{:>8}\n",
            "sessions", "ledger MB", "one change ms", "plain write ms", "ratio");
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            const double change = run.counters.at("changeSeconds");
            const double plainWrite = run.counters.at("plainWriteSeconds");
            fmt::print("{:>10}{:>12.2f}{:>16.2f}{:>17.2f}{:>8.1f}\n",
                run.counters.at("sessions").value, run.counters.at("bytes").value / 1e6,
                change * 1e3, plainWrite * 1e3, change / plainWrite);
            std::fflush(stdout);
        }
    }
};

} // namespace
} // namespace KestryCore

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    KestryCore::Table table;
    benchmark::RunSpecifiedBenchmarks(&table);
}
