// Lets several devices share a cloud store, with crashes, lost and late deliveries, old copies and
// whatever else goes wrong, and checks that nothing a user saved is lost and that all devices come
// to rest with equal ledgers.
//
//     kestry_simulation [--runs N] [--first SEED]   so many runs, with seeds from the first on
//     kestry_simulation --seed N                    one run, told step by step
//
// Without a first seed, one is drawn. Ends with 1 when a rule did not hold.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <span>
#include <string>

#include "Simulation.h"

namespace KestryCore {
namespace {

/// With so many runs, an event that never happened shows a mistake of the simulation.
constexpr std::uint64_t enoughRuns = 300;

struct Arguments {
    std::uint64_t runs = enoughRuns;
    std::uint64_t first = std::random_device{}();
    std::optional<std::uint64_t> only;
};

std::optional<Arguments> parse(std::span<char*> words)
{
    Arguments arguments;
    for (std::size_t index = 1; index + 1 < words.size(); index += 2) {
        const std::string word = words[index];
        const std::uint64_t value = std::strtoull(words[index + 1], nullptr, 10);
        if (word == "--runs") {
            arguments.runs = value;
        } else if (word == "--first") {
            arguments.first = value;
        } else if (word == "--seed") {
            arguments.only = value;
        } else {
            return std::nullopt;
        }
    }
    return words.size() % 2 == 1 ? std::optional(arguments) : std::nullopt;
}

void printHistory(const SimulationOutcome& outcome, std::size_t mostLines)
{
    const std::size_t count = outcome.history.size();
    const std::size_t skipped = count > mostLines ? count - mostLines : 0;
    if (skipped > 0) {
        std::printf("  (%zu lines before)\n", skipped);
    }
    for (std::size_t index = skipped; index < count; ++index) {
        std::printf("  %s\n", outcome.history[index].c_str());
    }
}

bool tellOne(std::uint64_t seed, std::size_t mostLines)
{
    const SimulationOutcome outcome = simulate(seed, HistoryPolicy::keep);
    printHistory(outcome, mostLines);
    std::printf("seed %llu: %s\n", static_cast<unsigned long long>(seed),
        outcome.violation ? ("VIOLATED: " + *outcome.violation).c_str() : "all rules hold");
    return !outcome.violation;
}

int simulateMany(const Arguments& arguments)
{
    constexpr std::size_t shortHistory = 40;
    constexpr int enoughFailures = 5;
    const auto begin = std::chrono::steady_clock::now();
    std::printf("%llu runs, seeds from %llu on\n", static_cast<unsigned long long>(arguments.runs),
        static_cast<unsigned long long>(arguments.first));
    std::fflush(stdout);
    Tally tally;
    int failures = 0;
    for (std::uint64_t run = 0; run < arguments.runs && failures < enoughFailures; ++run) {
        const SimulationOutcome outcome = simulate(arguments.first + run, HistoryPolicy::drop);
        tally.add(outcome.tally);
        if (outcome.violation) {
            ++failures;
            (void)tellOne(arguments.first + run, shortHistory);
        }
    }
    tally.print();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::printf("%d runs failed, %.1f seconds\n", failures, taken.count());
    for (const std::string_view word : tally.missing()) {
        if (arguments.runs >= enoughRuns) {
            std::printf("NEVER HAPPENED: %s\n", word.data());
            ++failures;
        }
    }
    return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace
} // namespace KestryCore

int main(int count, char** words)
{
    using namespace KestryCore;
    std::setvbuf(stdout, nullptr, _IOLBF, 0); // so that nothing is lost should a run crash
    const auto arguments = parse(std::span(words, static_cast<std::size_t>(count)));
    if (!arguments) {
        std::fputs("Usage: kestry_simulation [--runs N] [--first SEED] | --seed N\n", stderr);
        return 2;
    }
    if (arguments->only) {
        constexpr std::size_t wholeHistory = 1'000'000;
        return tellOne(*arguments->only, wholeHistory) ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    return simulateMany(*arguments);
}
