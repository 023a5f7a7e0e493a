#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "Uuid.h"

namespace Kestry {

/// One step on the way from one list to another. Rows are counted in the list as the steps before
/// have left it.
struct ListStep {
    enum class Kind { remove, move, insert };

    Kind kind = Kind::remove;
    int row = 0;   ///< The first row removed or inserted, or the row that moves.
    int count = 1; ///< How many rows; 1 for a move.
    int to = 0;    ///< Where a moved row is afterwards.

    friend bool operator==(const ListStep&, const ListStep&) = default;
};

/// The steps that make `before` into `after`: removals from the end, then moves of single rows,
/// then insertions from the front, whose rows are those of the new list. No list may have an
/// identifier twice. Returns nullopt when there would be more than `mostSteps`, so that a view is
/// better shown the new list as a whole.
[[nodiscard]] std::optional<std::vector<ListStep>> listSteps(
    const std::vector<KestryCore::Uuid>& before, const std::vector<KestryCore::Uuid>& after,
    std::size_t mostSteps);

} // namespace Kestry
