#pragma once

#include <string_view>

namespace Kestry {

/// Keeps the numbers of the standard streams taken. In a process started without one of them the
/// next file to be opened would get its number, and words meant for a person would end up in the
/// ledger. Opened the wrong way round, so that using them still fails.
void holdStandardStreams();

/// Writes all of a text to a descriptor; returns 0, or the system's error number.
[[nodiscard]] int writeAll(int descriptor, std::string_view text);

} // namespace Kestry
