#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "Environment.h"
#include "LocalMessage.h"

namespace Kestry {

/// The environment variables that decide what a command line means and how its answer looks.
inline constexpr std::array commandVariables{"LC_ALL", "LC_MONETARY", "LANG", "NO_COLOR", "TERM"};

/// The user's time zone, where its name can be told without the rules of time zones: a name in the
/// usual form in `TZ`, or the file that `/etc/localtime` links to. None for everything else.
[[nodiscard]] std::optional<std::string> plainTimeZone(
    const KestryCore::EnvironmentLookup& environment);

/// A command line with all that decides what it means in this process, the time zone excepted.
[[nodiscard]] LocalCommand commandToHandOver(const std::vector<std::string>& words,
    const std::string& dataDirectory, const KestryCore::EnvironmentLookup& environment);

} // namespace Kestry
