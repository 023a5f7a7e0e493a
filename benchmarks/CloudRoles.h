#pragma once

#include <map>
#include <string>
#include <vector>

#include "CloudDesk.h"

namespace Kestry {

/// What a process of the benchmark has measured, by name; seconds, bytes and numbers.
using Figures = std::map<std::string, double>;

/// What a process of the benchmark does. Each is a process of its own, so that none inherits the
/// memory of another. The words are the role and what it works on:
///
///     connect DIRECTORY ADDRESS   a machine connects, exchanges everything, and idles
///     idle DIRECTORY ADDRESS      a machine that has exchanged everything starts anew, and idles
///     alone DIRECTORY             a machine that does not replicate starts, and saves
///     send DIRECTORY SERVER DATABASE     the bare client sends what `connect` would
///     read SERVER DATABASE        the bare client reads the feed
///     press DIRECTORY DIRECTORY SERVER DATABASE   one change goes from a machine to another
///     append DIRECTORY FILE       what `connect` would send is appended to a plain file
[[nodiscard]] Figures playRole(const std::vector<std::string>& words, WatchedApplication& loop);

} // namespace Kestry
