#pragma once

#include <optional>
#include <string_view>

namespace Kestry {

/// Reads a length, in seconds: "1h30m", "90m", "1.5h", "45s", "1:30" (hours and minutes),
/// "1:30:15". A bare number is refused, because it has no unit. Throws a `UsageError`.
[[nodiscard]] double readDuration(std::string_view text);

/// The seconds in "1h30m", "90m", "1.5h", "45s": units from the largest down, each once, a
/// fraction only in the last part, and less than 60 of a unit that follows a larger one. Returns
/// nullopt for anything else.
[[nodiscard]] std::optional<double> unitDuration(std::string_view words);

} // namespace Kestry
