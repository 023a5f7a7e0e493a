#pragma once

#include <sys/stat.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// Answers of the system that a test cannot bring about with real files. The functions of the C
/// library are replaced for the whole test program; without orders they do what they always do.
namespace KestryCore::SystemCalls {

/// What is answered until it is withdrawn.
struct Orders {
    /// The error of every exclusive `flock` on a directory, as on a file system that knows none;
    /// 0 for the kernel's own answer.
    int directoryLockError = 0;
    /// The errors of the next `flock`s on files, one after another.
    std::vector<int> fileLockErrors{};
    /// The home directory of the user's account, "" for an account that is not listed; none for
    /// the real one.
    std::optional<std::string> home{};
    /// Done before the next `flock` on a file.
    std::function<void()> beforeFileLock;
    /// The error of the next `fstat` and of the next `mkdir`; 0 for the kernel's own answer.
    int statusError = 0;
    int createError = 0;
    /// Whether `stat` finds nothing below `/proc`, as where that is not mounted.
    bool hidesProcesses = false;
    /// The error of every `fchown`; 0 for the kernel's own answer.
    int ownerError = 0;
    /// The functions, by name, whose next call a signal interrupts: before anything has happened,
    /// or when all of it has.
    std::set<std::string> interruptedBefore;
    std::set<std::string> interruptedAfter;
    /// Sees the answer to each `lstat`, whether 0 or -1, and may change it.
    std::function<void(const std::string& path, int& result, struct stat& found)> changeStatus;
};

/// The orders in force.
[[nodiscard]] Orders& orders();

} // namespace KestryCore::SystemCalls
