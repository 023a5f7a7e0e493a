#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "StoreOperations.h"

namespace KestryCore {

/// How much of what can be tried is tried.
struct ExplorationDepth {
    /// Disks after a first crash, of one operation, from which the second crashes start; the
    /// number of first crashes is not limited.
    std::size_t secondCrashStarts = 0;
    /// At a second crash, so many fates of what was not synced are all tried. Where there are
    /// more, those are that differ from all kept or from nothing kept in one point, and as many
    /// drawn from the seed.
    std::size_t fatesPerMoment = 0;
    /// System errors for each call, of those that are tried, each once and lasting.
    std::size_t errorsPerCall = 0;
};

/// What was tried, and what did not hold.
struct ExplorationReport {
    /// With so many violations, the rest of an operation is counted but not judged.
    static constexpr std::size_t enoughViolations = 20;

    std::size_t moments = 0;       ///< Calls of the operation, and middles of calls.
    std::size_t firstCrashes = 0;  ///< Different pairs of a moment and what the disk has left.
    std::size_t secondMoments = 0; ///< The moments of the opening, restoring and saving after.
    std::size_t cappedMoments = 0; ///< Those of them at which some fates were left out.
    std::size_t secondCrashes = 0; ///< Different pairs of such a moment and what is left.
    std::size_t faults = 0;        ///< Calls that failed, each time with another error or lasting.
    std::size_t exchanges = 0;     ///< Calls before which the directory was exchanged.
    /// First crashes that tore a file, by the unit that the tear is a multiple of.
    std::map<std::size_t, std::size_t> tears;
    std::vector<std::string> violations;

    void add(const ExplorationReport& other);
    /// Runs a check, and keeps what it finds violated under these words.
    void judge(const std::string& description, const std::function<void()>& check);
};

/// Every operation that is explored: all that save, with links and without, and those that open,
/// restore and hand over.
[[nodiscard]] std::vector<StoreOperation> exploredOperations();

/// A world with files long enough to be torn in many places, ready for the operation.
void prepareLong(StoreWorld& world, const StoreOperation& operation);

/// Takes the power away at every moment of an operation, with every combination of what may be
/// left of what was not synced, and then at the moments of coming back from there.
[[nodiscard]] ExplorationReport exploreCrashes(
    const StoreOperation& operation, std::uint64_t seed, const ExplorationDepth& depth);

/// Lets every call of an operation fail, once and from then on for good.
[[nodiscard]] ExplorationReport exploreFaults(
    const StoreOperation& operation, std::uint64_t seed, const ExplorationDepth& depth);

/// Lets another program exchange the data directory before every call of an operation.
[[nodiscard]] ExplorationReport exploreExchanges(
    const StoreOperation& operation, std::uint64_t seed);

/// Whether an operation is the opening of a store, which never throws.
[[nodiscard]] bool isOpening(const StoreOperation& operation);
/// Whether an operation saves two times, so that its first save may stand alone.
[[nodiscard]] bool savesTwice(const StoreOperation& operation);

} // namespace KestryCore
