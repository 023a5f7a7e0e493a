#pragma once

#include <string>

namespace Kestry {

/// Seconds for listening to: "1 hour, 2 minutes, 3 seconds". Zero parts are left out, fractions
/// cut off, and a negative length counts as zero.
[[nodiscard]] std::string spokenDuration(double seconds);

} // namespace Kestry
