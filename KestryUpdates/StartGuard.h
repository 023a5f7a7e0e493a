#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "UpdatePrefix.h"

namespace Kestry {

/// How long a version on trial has.
struct StartLimits {
    std::chrono::milliseconds toStart = std::chrono::minutes(2);
    std::chrono::milliseconds toEnd = std::chrono::seconds(10); ///< Once it is asked to.
    std::chrono::milliseconds betweenLooks{200};
};

/// Becomes a program: this process goes on as that one. Throws FileError when it can't be started.
[[noreturn]] void becomeProgram(
    const std::string& program, const std::vector<std::string>& arguments);

/// Starts the version that an installation's link leads to, with these arguments.
///
/// Without a version on trial this process becomes it, and that is all.
///
/// A version on trial is started as a child of this process, which waits. It has started well once
/// it has confirmed so (see `UpdatePrefix::confirm`). Should it crash, fail or be silent until the
/// limit, the link goes back, the version is ended, and this process becomes the version before.
/// Should it end well unconfirmed, as a second start does that hands over to a running one, nothing
/// is decided. When the version on trial has ended otherwise, its exit status is returned. Whoever
/// asks this process to end asks the version that it waits for.
///
/// Throws LedgerError when nothing can be started.
[[nodiscard]] int startCurrentVersion(UpdatePrefix& prefix,
    const std::vector<std::string>& arguments, const StartLimits& limits = {});

} // namespace Kestry
