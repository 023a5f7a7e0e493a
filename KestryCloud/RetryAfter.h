#pragma once

#include <optional>
#include <string>

#include "Date.h"

namespace Kestry {

/// For how many seconds a server wishes to be left alone, by the value of its Retry-After header: a
/// number of seconds, or a date, which is held against `now`. Nullopt for anything else; 0 for a
/// date that has passed.
[[nodiscard]] std::optional<double> retryAfterSeconds(
    const std::string& value, KestryCore::Date now);

} // namespace Kestry
