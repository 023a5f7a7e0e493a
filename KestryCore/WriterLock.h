#pragma once

#include <memory>
#include <string>

#include "FileSystem.h"

namespace KestryCore {

/// Whether a claim was there already or has only just been made.
enum class ClaimAge { heldBefore, takenNow };

/// The claim of this process to be the one writer of a data directory. Take it before the ledger
/// is read and keep it for as long as it may be written; it is let go with the object.
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

    /// The claim as it must stand before a write, when the directory is there. Where it is taken
    /// only now, what was read before may have been written since by others. Fails with
    /// `refusal()` when another process holds it.
    [[nodiscard]] ClaimAge acquireForWrite();

    /// The process that was in the way of the last attempt, as in "kestry (process 4711)"; empty
    /// when it is not known.
    [[nodiscard]] const std::string& holder() const { return holder_; }

    /// The sentence for a person whose change another program stands in the way of.
    [[nodiscard]] std::string refusal() const;

private:
    FileSystem& files_;
    std::string directory_;
    std::unique_ptr<DirectoryLock> lock_;
    std::string holder_;
};

} // namespace KestryCore
