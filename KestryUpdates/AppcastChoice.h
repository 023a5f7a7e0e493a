#pragma once

#include <optional>
#include <vector>

#include "AppcastFeed.h"

namespace Kestry {

/// The largest archive that is downloaded, in bytes. It is held in memory once while it is
/// verified.
inline constexpr std::int64_t maximumArchiveBytes = std::int64_t{512} << 20U;

/// What a version must suit.
struct UpdateTarget {
    UpdateVersion running;               ///< The version that asks.
    std::optional<UpdateVersion> system; ///< The kernel; nullopt when that is not known.
};

/// The newest of the items that is newer than the running version, runs on this system and is not
/// too large; of equal versions the first. Nullopt when there is none.
[[nodiscard]] std::optional<AppcastItem> newestSuitable(
    const std::vector<AppcastItem>& items, const UpdateTarget& target);

} // namespace Kestry
