#pragma once

#include <string>
#include <vector>

namespace KestryCore {

/// Whether a folder exists, is not a symbolic link, belongs to this user, and is writable for
/// nobody else.
[[nodiscard]] bool isPrivateDirectory(const std::string& path);

/// Removes the access of others to a directory that belongs to this user and is not a symbolic
/// link. Returns whether others had access and no longer have; false also when that is not
/// possible.
[[nodiscard]] bool closeToOthers(const std::string& path);

/// The sentence for people whose data directory was closed to others.
[[nodiscard]] std::string closedText(const std::string& directory);

// Where this user's processes find each other. All of them are private, and in this order:
//
// - `$XDG_RUNTIME_DIR`, which follows the environment;
// - `/run/user/<uid>`, which comes and goes with the log-in;
// - `/tmp/kestry-<uid>`, which another user may have taken first;
// - `.cache/kestry` in the home directory of the user's account, whatever the environment says: a
//   program that cron has started finds the same.

/// The places that exist. The last one counts only when the one below `/tmp` cannot be used,
/// because no process listens there otherwise. Creates nothing.
[[nodiscard]] std::vector<std::string> meetingPlaces();

/// The place at which a process waits for connections.
struct ListeningPlace {
    std::string path;
    std::string notice; ///< What people should know about the choice; mostly empty.
};

/// Returns the first usable place, which is created when it is missing. Throws LedgerError when
/// there is none.
[[nodiscard]] ListeningPlace listeningPlace();

/// All places but the first, which depends on the environment of a process; created when missing.
/// None of them exists at all times. A process that locks must lock them all, so that any two
/// processes have one in common.
[[nodiscard]] std::vector<std::string> lastingPlaces();

} // namespace KestryCore
