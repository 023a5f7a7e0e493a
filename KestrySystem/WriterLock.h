#pragma once

#include <memory>
#include <string>

#include "FileSystem.h"

namespace KestryCore {

/// Whether a claim was there already or has only just been made.
enum class ClaimAge { heldBefore, takenNow };

/// The claim of this process to be the one writer of a data directory. Take it before the ledger
/// is read and keep it for as long as it may be written; it is let go with the object.
///
/// What is claimed is one directory, not its path: another may stand there at any later time, when
/// somebody moves, copies, links or mounts. So whoever holds the claim asks for it again before
/// each write, and reads and writes in `place()`. Should the directory be exchanged between the
/// two, the write goes to where it was meant for all the same, as if it had come just before.
class WriterLock {
public:
    WriterLock(FileSystem& files, std::string directory)
        : files_(files), directory_(std::move(directory))
    {
    }

    /// Claims the directory. True when it is claimed, or when it does not exist yet and there is
    /// nothing to claim; false when another process holds it. Fails when it cannot be looked at or
    /// locked.
    [[nodiscard]] bool acquire();

    /// The claim as it must stand before a write to a directory that is there. Where it is taken
    /// only now, what was read before may have been written since by others. Fails with
    /// `refusal()` when another process holds it, and in words of its own when the path does not
    /// lead to the claimed directory any more; once it does again, so may be written again.
    [[nodiscard]] ClaimAge acquireForWrite();

    /// Whether there is a directory that is claimed.
    [[nodiscard]] bool isHeld() const { return lock_ != nullptr; }

    /// Whether a claimed directory is not what its path leads to any more.
    [[nodiscard]] bool isAstray() const;

    /// The path to read and write at: that of the claimed directory itself, whatever stands in its
    /// place meanwhile; the given one while nothing is claimed.
    [[nodiscard]] std::string place() const { return lock_ ? lock_->place() : directory_; }

    /// The process that was in the way of the last attempt, as in "kestry (process 4711)"; empty
    /// when it is not known.
    [[nodiscard]] const std::string& holder() const { return holder_; }

    /// The sentence for a person whose change another program stands in the way of.
    [[nodiscard]] std::string refusal() const;

private:
    FileSystem& files_;
    std::string directory_;
    std::unique_ptr<DirectoryLock> lock_; // none while there is no directory
    std::string holder_;
};

} // namespace KestryCore
