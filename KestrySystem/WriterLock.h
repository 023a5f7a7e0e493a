#pragma once

#include <memory>
#include <string>

#include "FileSystem.h"

namespace KestryCore {

/// Whether a claim existed before the call or was made by it.
enum class ClaimAge { heldBefore, takenNow };

/// The claim of this process to be the only writer of a data directory. Acquire it before the
/// ledger is read, and keep it for as long as the ledger may be written. It ends with this object.
///
/// The claim is on the directory, not on its path: later the path may lead to another directory,
/// after a move, a copy, a new link or a mount. So a writer calls `acquireForWrite` before each
/// write, and reads and writes at `place()`. If the directory is exchanged between the two, the
/// write goes to the claimed directory, as if it had come before the exchange.
class WriterLock {
public:
    WriterLock(FileSystem& files, std::string directory)
        : files_(files), directory_(std::move(directory))
    {
    }

    /// Claims the directory. Returns true when it is claimed, or does not exist yet so that there
    /// is nothing to claim; false when another process has it. Throws LedgerError when the
    /// directory cannot be looked at or locked.
    [[nodiscard]] bool acquire();

    /// Makes sure, before a write to an existing directory, that it is claimed. Returns `takenNow`
    /// when it was not claimed before the call: what was read earlier may have been overwritten
    /// since. Throws LedgerError with `refusal()` when another process has the claim, and with
    /// another sentence when the path does not lead to the claimed directory. Once it does so
    /// again, writing is possible again.
    [[nodiscard]] ClaimAge acquireForWrite();

    /// Whether a directory is claimed.
    [[nodiscard]] bool isHeld() const { return lock_ != nullptr; }

    /// Whether a directory is claimed and the path no longer leads to it. False when that cannot be
    /// found out.
    [[nodiscard]] bool isAstray() const;

    /// The path for reading and writing: one that leads to the claimed directory itself, or the
    /// given path while none is claimed.
    [[nodiscard]] std::string place() const { return lock_ ? lock_->place() : directory_; }

    /// The process that had the claim at the last attempt, as in "kestry (process 4711)"; empty
    /// when it is not known.
    [[nodiscard]] const std::string& holder() const { return holder_; }

    /// The sentence that tells a person which other program prevents a change.
    [[nodiscard]] std::string refusal() const;

private:
    FileSystem& files_;
    std::string directory_;
    std::unique_ptr<DirectoryLock> lock_; // null while no directory is claimed
    std::string holder_;
};

} // namespace KestryCore
