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

/// What to tell where only the answer to a change got lost: whoever repeated the command would
/// book the time twice.
inline const std::string changeNotShown =
    "The change has been made and saved; only its result can't be shown. ";

/// A command line with all that decides what it means in this process. The time zone stays empty
/// where it has no name and no rule.
[[nodiscard]] LocalCommand commandToHandOver(const std::vector<std::string>& words,
    const std::string& dataDirectory, const KestryCore::EnvironmentLookup& environment);

/// The same for words that nobody has read yet, as far as their meaning shows at a glance; none
/// where it takes a closer look. Whoever reads them finds out when the glance was wrong.
[[nodiscard]] std::optional<LocalCommand> unreadCommandToHandOver(
    const std::vector<std::string>& words, const KestryCore::EnvironmentLookup& environment);

/// Writes what the application has answered to the standard output and the standard error. The
/// exit status is that of the answer, or that of a refusal when it can't be shown.
[[nodiscard]] int showAnswer(const LocalAnswer& answer, int outputDescriptor, int errorDescriptor);

} // namespace Kestry
