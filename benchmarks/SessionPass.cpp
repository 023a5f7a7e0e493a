// The milliseconds of one pass over so many sessions in memory that looks at each of their spans:
// what any figure of all sessions costs at least.
//
// Usage: kestry_session_pass COUNT

#include <fmt/core.h>

#include <string>

#include "LedgerGenerator.h"
#include "Measurement.h"

namespace {

/// Where sums go, so that none of the work that leads to them can be left out.
volatile double sink = 0.0;

} // namespace

int main(int argc, char* argv[])
{
    constexpr int passes = 21;
    const std::size_t sessions = argc > 1 ? std::stoul(argv[1]) : 0;
    const KestryCore::LedgerData ledger =
        KestryCore::generateLedger({.sessions = sessions, .clients = 200, .projects = 600});
    std::vector<double> seconds;
    for (int pass = 0; pass < passes; ++pass) {
        seconds.push_back(KestryCore::secondsOf([&] {
            double sum = 0.0;
            for (const KestryCore::TimeEntry& entry : ledger.entries) {
                sum += KestryCore::totalDuration(entry.spans);
            }
            sink = sum;
        }));
    }
    fmt::print("{:.4f}\n", 1000.0 * KestryCore::median(seconds));
}
