#pragma once

#include <string>
#include <vector>

#include "UpdatePrefix.h"

namespace Kestry {

/// Becomes a program: this process goes on as that one. Throws FileError when it can't be started.
[[noreturn]] void becomeProgram(
    const std::string& program, const std::vector<std::string>& arguments);

/// Starts the version that an installation's link leads to, with these arguments.
///
/// Without a version on trial this process becomes it, and that is all.
///
/// A version on trial is started as a child of this process, which waits. It has started well once
/// it has confirmed so (see `UpdatePrefix::confirm`). Should it crash or fail before, the link goes
/// back, and this process becomes the version before. Nobody is ended by the clock: who works in it
/// may have something to lose. Should it end unconfirmed with status 0, as a second start does that
/// hands over to a running one, or with 1, as a start that is refused in words, nothing is decided,
/// and that status is returned. Whoever asks this process to end asks the version that it waits
/// for.
///
/// Throws LedgerError when nothing can be started.
[[nodiscard]] int startCurrentVersion(
    UpdatePrefix& prefix, const std::vector<std::string>& arguments);

} // namespace Kestry
