#pragma once

#include <string>

namespace Kestry {

/// A duration as a screen reader should say it: "1 hour, 2 minutes, 3 seconds". Parts of zero are
/// omitted and fractions cut off. A negative duration counts as zero.
[[nodiscard]] std::string spokenDuration(double seconds);

} // namespace Kestry
