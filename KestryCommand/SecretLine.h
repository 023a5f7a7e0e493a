#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Kestry {

/// The most bytes that are taken of a line.
inline constexpr std::size_t longestSecretLine = 16'384;

/// Reads a line, without its line feed and of at most `longestSecretLine` bytes, and not a byte
/// beyond it; nullopt when there is none.
///
/// A terminal shows nothing of what is typed meanwhile, and the prompt goes to `promptDescriptor`.
/// It shows everything again before a signal ends or stops the process.
[[nodiscard]] std::optional<std::string> readSecretLine(
    int descriptor, int promptDescriptor, std::string_view prompt);

} // namespace Kestry
