// Runs every operation of the store against power cuts and failing calls, and counts them.
//
//     kestry_crash_explorer [--sample] [--seed N] [--operation NAME]
//
// Every first crash is tried; second crashes and, with --sample, errors are drawn from the seed,
// which is printed. Ends with 1 when a rule did not hold.

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

constexpr ExplorationDepth whole{.secondCrashStarts = 60, .fatesPerMoment = 2, .errorsPerCall = 12};
constexpr ExplorationDepth sample{.secondCrashStarts = 3, .fatesPerMoment = 1, .errorsPerCall = 1};

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
    std::printf("%-36s %8zu %10zu %10zu %8zu\n", name.c_str(), report.moments, report.firstCrashes,
        report.secondCrashes, report.faults);
    for (const std::string& violation : report.violations) {
        std::printf("  VIOLATED: %s\n", violation.c_str());
    }
    std::fflush(stdout);
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
    std::printf(
        "%-36s %8s %10s %10s %8s\n", "operation", "moments", "crashes", "crashes^2", "faults");
    ExplorationReport total;
    for (const StoreOperation& operation : exploredOperations()) {
        if (arguments.operation && *arguments.operation != operation.name) {
            continue;
        }
        const std::uint64_t seed = seedOf(operation, arguments.seed);
        ExplorationReport report = exploreCrashes(operation, seed, arguments.depth);
        report.add(exploreFaults(operation, seed, arguments.depth));
        printRow(operation.name, report);
        total.add(report);
    }
    const std::size_t violations = total.violations.size();
    total.violations.clear();
    printRow("total", total);
    std::printf("%zu crash points and faults, %zu violations\n",
        total.firstCrashes + total.secondCrashes + total.faults, violations);
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
