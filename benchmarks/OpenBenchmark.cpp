// What opening a ledger costs, until it is ready to show, beside what the general parser takes to
// turn the same file into its own document: in time, both in turns, and in memory beside the size
// of the file.

#include <fmt/core.h>
#include <simdjson.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "LedgerCoding.h"
#include "LedgerGenerator.h"
#include "Measurement.h"
#include "PosixFileSystem.h"
#include "TimeStore.h"

namespace KestryCore {
namespace {

constexpr double timeLimit = 3.0;
constexpr double memoryLimit = 3.0;
/// Below, the memory of the program itself hides that of the ledger.
constexpr std::size_t leastJudgedMemory = 10'000;

StoreOptions optionsFor(const std::string& directory)
{
    StoreOptions options;
    options.directory = directory;
    return options;
}

/// A field of this process's status, as "VmHWM", in bytes.
double ownMemory(std::string_view field)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(field)) {
            return std::stod(line.substr(field.size() + 1)) * 1024.0;
        }
    }
    throw std::runtime_error("The kernel does not tell the memory of a process.");
}

struct Memory {
    double peak = 0.0;   ///< Bytes that opening needed at once.
    double steady = 0.0; ///< Bytes that stay for as long as the ledger is open.
};

/// What the child process does: opens a directory and prints the memory it took.
int reportMemory(const std::string& directory)
{
    PosixFileSystem files;
    const double before = ownMemory("VmRSS");
    const TimeStore store(StorePlatform{files}, optionsFor(directory));
    fmt::print("{} {} {}\n", ownMemory("VmHWM") - before, ownMemory("VmRSS") - before,
        store.data()->entries.size());
    return store.errorMessage()->has_value() ? 1 : 0;
}

Memory memoryOfOpening(const std::string& directory)
{
    const std::string command =
        "/proc/" + std::to_string(getpid()) + "/exe --memory '" + directory + "'";
    FILE* child = popen(command.c_str(), "r");
    require(child != nullptr, "popen");
    Memory memory;
    std::size_t sessions = 0;
    const int fields = fscanf(child, "%lf %lf %zu", &memory.peak, &memory.steady, &sessions);
    if (pclose(child) != 0 || fields != 3) {
        throw std::runtime_error("The measured process could not open the ledger.");
    }
    return memory;
}

double secondsToOpen(PosixFileSystem& files, const std::string& directory, std::size_t sessions)
{
    std::unique_ptr<TimeStore> store;
    const double seconds = secondsOf(
        [&] { store = std::make_unique<TimeStore>(StorePlatform{files}, optionsFor(directory)); });
    if (store->data()->entries.size() != sessions) {
        throw std::runtime_error("The ledger was not opened.");
    }
    return seconds;
}

double secondsToParse(const std::string& path)
{
    simdjson::dom::parser parser;
    simdjson::dom::element document;
    simdjson::error_code error = simdjson::SUCCESS;
    const double seconds = secondsOf([&] { error = parser.load(path).get(document); });
    if (error != simdjson::SUCCESS) {
        throw std::runtime_error(simdjson::error_message(error));
    }
    return seconds;
}

void measureOpening(std::size_t sessions, Limits& limits)
{
    const ScratchDirectory directory;
    const std::string path = directory.file("ledger.json");
    std::ofstream(path) << encodeLedger(generateLedger({.sessions = sessions}));
    const auto bytes = static_cast<double>(std::filesystem::file_size(path));
    PosixFileSystem files;
    const Turns turns = takeTurns([&] { return secondsToOpen(files, directory.path(), sessions); },
        [&] { return secondsToParse(path); }, 51, 15.0);
    const Memory memory = memoryOfOpening(directory.path());
    const bool isJudged = sessions >= leastJudgedMemory;
    fmt::print("{:>9}{:>9.2f}{:>10.2f}{:>10.2f}{:>7.2f} {:<8}{:>8.2f} {:<8}{:>8.2f} {}\n", sessions,
        bytes / 1e6, median(turns.ours) * 1e3, median(turns.theirs) * 1e3, turns.ratio(),
        limits.judge(turns, timeLimit), memory.peak / bytes,
        isJudged ? limits.judge(memory.peak / bytes, memoryLimit) : "", memory.steady / bytes,
        isJudged ? limits.judge(memory.steady / bytes, memoryLimit) : "");
    std::fflush(stdout);
}

} // namespace
} // namespace KestryCore

/// Takes the numbers of sessions to measure; the usual ones without any.
int main(int argc, char** argv)
{
    using namespace KestryCore;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 2 && arguments.front() == "--memory") {
        return reportMemory(arguments.back());
    }
    fmt::print("Medians of opening and of the general parser on the same file, in turns, and the\n"
               "memory of opening beside the size of the file. Limits: {} times in time, {} times\n"
               "in memory.\n"
               "{:>9}{:>9}{:>10}{:>10}{:>7} {:<8}{:>8} {:<8}{:>8}\n",
        timeLimit, memoryLimit, "sessions", "file MB", "open ms", "parse ms", "ratio", "", "peak",
        "", "steady");
    Limits limits;
    for (const std::size_t size : sessionCounts(arguments)) {
        measureOpening(size, limits);
    }
    return limits.exitStatus();
}
