#pragma once

#include "FilesKeeper.h"
#include "LedgerKeeper.h"
#include "ProgramPlatform.h"

namespace Kestry {

/// Hands commands over to the application that has the data directory. Without one, or when it
/// leaves a command to the caller, the files are used.
class ApplicationKeeper final : public LedgerKeeper {
public:
    /// `platform`, whose `handOver` must not be empty, and `files` must outlive the keeper.
    ApplicationKeeper(const ProgramPlatform& platform, FilesKeeper& files)
        : platform_(platform), files_(files)
    {
    }

    /// Waits up to five seconds for an application that has the directory and does not listen.
    /// Throws a `LedgerError` when the application does not answer to a change, which is not tried
    /// on the files then. Otherwise fails as `FilesKeeper` does.
    [[nodiscard]] LocalAnswer carryOut(const ReadyCommand& command) override;

private:
    [[nodiscard]] LocalCommand messageOf(const ReadyCommand& command) const;

    const ProgramPlatform& platform_;
    FilesKeeper& files_;
};

} // namespace Kestry
