#pragma once

#include <exception>
#include <string>

namespace KestryCore {

/// A failure of replication in words for people. Where the cloud store wishes to be left alone for
/// a while, they say for how long.
[[nodiscard]] std::string syncFailureText(const std::exception& failure);

} // namespace KestryCore
