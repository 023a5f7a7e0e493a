#pragma once

#include <string>

namespace Kestry {

/// Seconds as "07:04:09", truncated; hours have two digits or more. Negative seconds count as
/// zero, and what is not finite or beyond counting is an em dash.
[[nodiscard]] std::string elapsedText(double seconds);

/// The same for listening to: "1 hour, 2 minutes, 3 seconds". Zero parts are left out.
[[nodiscard]] std::string spokenElapsed(double seconds);

} // namespace Kestry
