#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Tally.h"

namespace KestryCore {

/// How a run went.
struct SimulationOutcome {
    std::optional<std::string> violation;
    std::vector<std::string> history; ///< Empty unless it was asked for.
    Tally tally;
};

enum class HistoryPolicy { drop, keep };

/// Some weeks in the life of a few devices with one account. Equal seeds give equal runs.
[[nodiscard]] SimulationOutcome simulate(std::uint64_t seed, HistoryPolicy history);

} // namespace KestryCore
