// Runs every operation of the store against power cuts, failing calls and a data directory that
// is exchanged meanwhile, and counts them.
//
//     kestry_crash_explorer [--sample] [--seed N] [--operation NAME]
//
// Every first crash is tried. With --sample, second crashes and errors are drawn from the seed,
// which is printed, but for a few short operations of which all is tried. Ends with 1 when a rule
// did not hold, or when files were written but never torn at one of the units.

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <random>
#include <span>
#include <string>

#include "Exploration.h"

namespace KestryCore {
namespace {

constexpr ExplorationDepth whole{
    .secondCrashStarts = 40, .fatesPerMoment = 1000, .errorsPerCall = 28};
constexpr ExplorationDepth sample{.secondCrashStarts = 3, .fatesPerMoment = 10, .errorsPerCall = 1};

struct Arguments {
    std::uint64_t seed = std::random_device{}();
    ExplorationDepth depth = whole;
    std::optional<std::string> operation;
};

std::optional<Arguments> parse(std::span<char*> words)
{
    Arguments arguments;
    for (std::size_t index = 1; index < words.size(); ++index) {
        const std::string word = words[index];
        const bool hasValue = index + 1 < words.size();
        if (word == "--sample") {
            arguments.depth = sample;
        } else if (word == "--seed" && hasValue) {
            arguments.seed = std::strtoull(words[++index], nullptr, 10);
        } else if (word == "--operation" && hasValue) {
            arguments.operation = words[++index];
        } else {
            return std::nullopt;
        }
    }
    return arguments;
}

void printRow(const std::string& name, const ExplorationReport& report)
{
    std::printf("%-36s %8zu %8zu", name.c_str(), report.moments, report.firstCrashes);
    for (const std::size_t unit : Disk::units) {
        const auto found = report.tears.find(unit);
        std::printf(" %7zu", found != report.tears.end() ? found->second : 0);
    }
    std::printf(" %8zu %7zu %9zu %7zu %9zu\n", report.secondMoments, report.cappedMoments,
        report.secondCrashes, report.faults, report.exchanges);
    for (const std::string& violation : report.violations) {
        std::printf("  VIOLATED: %s\n", violation.c_str());
    }
    std::fflush(stdout);
}

/// An operation that writes must have been caught with its files torn in every way.
void requireAllTears(ExplorationReport& report, const std::string& name)
{
    if (!report.tears.empty() && report.tears.size() < Disk::units.size()) {
        report.violations.push_back(name + ": files are too short to be torn at every unit");
    }
}

/// Over so soon that nothing of it need be left out of a sample.
bool isShort(const StoreOperation& operation)
{
    return operation.name.starts_with("FirstSave") || operation.name.starts_with("TakeOver")
        || operation.name == "AddClientAfterASave";
}

/// Each operation has a seed of its own, so that it can be tried again alone.
std::uint64_t seedOf(const StoreOperation& operation, std::uint64_t seed)
{
    std::uint64_t mixed = seed;
    for (const char letter : operation.name) {
        mixed = (mixed ^ static_cast<unsigned char>(letter)) * 0x100000001B3;
    }
    return mixed;
}

int explore(const Arguments& arguments)
{
    std::printf("seed %llu\n", static_cast<unsigned long long>(arguments.seed));
    std::printf("%-36s %8s %8s %7s %7s %7s %8s %7s %9s %7s %9s\n", "operation", "moments",
        "crashes", "torn 1", "512", "4096", "moments2", "capped", "crashes2", "faults",
        "exchanges");
    ExplorationReport total;
    for (const StoreOperation& operation : exploredOperations()) {
        if (arguments.operation && *arguments.operation != operation.name) {
            continue;
        }
        const std::uint64_t seed = seedOf(operation, arguments.seed);
        const ExplorationDepth& depth = isShort(operation) ? whole : arguments.depth;
        ExplorationReport report = exploreCrashes(operation, seed, depth);
        report.add(exploreFaults(operation, seed, depth));
        report.add(exploreExchanges(operation, seed));
        requireAllTears(report, operation.name);
        printRow(operation.name, report);
        total.add(report);
    }
    const std::size_t violations = total.violations.size();
    total.violations.clear();
    printRow("total", total);
    std::printf("%zu crash points, faults and exchanges, %zu violations\n",
        total.firstCrashes + total.secondCrashes + total.faults + total.exchanges, violations);
    return violations == 0 && total.moments > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace
} // namespace KestryCore

int main(int count, char** words)
{
    const auto arguments = KestryCore::parse(std::span(words, static_cast<std::size_t>(count)));
    if (!arguments) {
        std::fputs(
            "Usage: kestry_crash_explorer [--sample] [--seed N] [--operation NAME]\n", stderr);
        return 2;
    }
    return KestryCore::explore(*arguments);
}
