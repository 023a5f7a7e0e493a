#pragma once

#include <string_view>

namespace Kestry {

/// Keeps the descriptors 0 to 2 occupied. In a process that was started without one of them, the
/// next file to be opened would get its number, and text for a person would be written into the
/// ledger. They are opened in the wrong direction, so that using them still fails.
void holdStandardStreams();

/// Writes all of a text to a descriptor; returns 0, or the system's error number.
[[nodiscard]] int writeAll(int descriptor, std::string_view text);

} // namespace Kestry
