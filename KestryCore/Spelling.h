#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace KestryCore {

/// How many letters must be added, removed, replaced or swapped with their neighbour to turn one
/// word into the other; the case of ASCII letters is ignored. Counts bytes.
[[nodiscard]] std::size_t editDistance(std::string_view left, std::string_view right);

/// The word that was probably meant: the nearest candidate, the first of equally near ones; nullopt
/// when none is near enough for a typing error.
[[nodiscard]] std::optional<std::string> nearestWord(
    std::string_view word, const std::vector<std::string>& candidates);

} // namespace KestryCore
