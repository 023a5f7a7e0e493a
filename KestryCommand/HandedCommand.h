#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "Environment.h"
#include "LocalMessage.h"

namespace Kestry {

/// The environment variables that affect the meaning of a command line and the look of its answer.
inline constexpr std::array commandVariables{"LC_ALL", "LC_MONETARY", "LANG", "NO_COLOR", "TERM"};

/// Begins the message when a change was made and only its answer can't be shown: repeating the
/// command would record the time twice.
inline const std::string changeNotShown =
    "The change has been made and saved; only its result can't be shown. ";

/// A command line together with what affects its meaning in this process. The time zone is empty
/// when it has neither a name nor a rule.
[[nodiscard]] LocalCommand commandToHandOver(const std::vector<std::string>& words,
    const std::string& dataDirectory, const KestryCore::EnvironmentLookup& environment);

/// The same for words that have not been parsed: the data directory is found by a quick look at
/// them. Returns nullopt when that is not enough. The receiver, which parses the words, declines
/// the command when the quick look was wrong.
[[nodiscard]] std::optional<LocalCommand> unreadCommandToHandOver(
    const std::vector<std::string>& words, const KestryCore::EnvironmentLookup& environment);

/// Writes the application's answer to the two descriptors. Returns the exit status: that of the
/// answer, or 1 when the output can't be written.
[[nodiscard]] int showAnswer(const LocalAnswer& answer, int outputDescriptor, int errorDescriptor);

} // namespace Kestry
