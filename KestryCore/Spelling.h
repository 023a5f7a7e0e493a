#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KestryCore {

/// How many letters must be added, left out, replaced or swapped with their neighbour to turn one
/// word into the other, the case of ASCII letters aside. Counts bytes.
[[nodiscard]] std::size_t editDistance(std::string_view left, std::string_view right);

/// The word that was probably meant: the nearest of the candidates, the first one among equally
/// near; none when all are too far away for a slip of the finger.
[[nodiscard]] std::optional<std::string> nearestWord(
    std::string_view word, const std::vector<std::string>& candidates);

} // namespace KestryCore
