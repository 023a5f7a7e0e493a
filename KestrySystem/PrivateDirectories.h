#pragma once

#include <string>
#include <vector>

namespace KestryCore {

/// Whether a folder is there, and no link to one, that belongs to this user and that nobody else
/// can write to.
[[nodiscard]] bool isPrivateDirectory(const std::string& path);

/// Takes all access away from others to a directory that is this user's, and no link to one. True
/// when there was some to take; false also where that is not possible.
[[nodiscard]] bool closeToOthers(const std::string& path);

/// The words for people whose data directory was closed so.
[[nodiscard]] std::string closedText(const std::string& directory);

// Where this user's processes find each other. All of them are private, and in this order:
//
// - `$XDG_RUNTIME_DIR`, which follows the environment;
// - `/run/user/<uid>`, which comes and goes with the log-in;
// - `/tmp/kestry-<uid>`, which another user may have taken first;
// - `.cache/kestry` in the home directory of the user's account, whatever the environment says: a
//   program that cron has started finds the same.

/// Those of the places that are there. The last counts only where the one below `/tmp` cannot be
/// had, because nobody listens there otherwise. Makes nothing.
[[nodiscard]] std::vector<std::string> meetingPlaces();

/// The place at which a process waits for others.
struct ListeningPlace {
    std::string path;
    std::string notice; ///< What people should know of the choice; empty mostly.
};

/// The first of the places, made when it is missing. Fails when there is none.
[[nodiscard]] ListeningPlace listeningPlace();

/// All places but the first, made when they are missing: those that do not depend on a process's
/// environment. None of them is there at all times, so who locks must lock them all: then any two
/// processes have one in common.
[[nodiscard]] std::vector<std::string> lastingPlaces();

} // namespace KestryCore
