#pragma once

#include <memory>
#include <optional>
#include <string>

#include "CommandContext.h"
#include "LedgerKeeper.h"
#include "ProgramPlatform.h"
#include "TimeStore.h"
#include "WriterLock.h"

namespace Kestry {

/// Carries out commands on the files of the data directory. A change makes this process the one
/// writer first; a command that only reads takes no lock and writes nothing. A running session
/// stays as it is in the ledger.
class FilesKeeper final : public LedgerKeeper {
public:
    /// The platform must outlive the keeper.
    explicit FilesKeeper(const ProgramPlatform& platform) : platform_(platform) { }

    /// Waits up to five seconds for another `kestryctl`. Throws `DirectoryInUse` when any other
    /// process has the directory, or when that time is over.
    [[nodiscard]] LocalAnswer carryOut(const ReadyCommand& command) override;

    /// Opens the ledger of a directory without a lock.
    [[nodiscard]] std::unique_ptr<KestryCore::TimeStore> openToRead(
        const std::string& directory) const;

    /// The ID of the session that the words of the command mean; nullopt when they name none.
    /// Throws a `LedgerError` when no session matches, or several do.
    [[nodiscard]] std::optional<std::string> findSession(const ReadyCommand& command) const;

private:
    [[nodiscard]] LocalAnswer read(const ReadyCommand& command, const CommandContext& context);
    [[nodiscard]] LocalAnswer change(const ReadyCommand& command, const CommandContext& context);
    [[nodiscard]] std::optional<LocalAnswer> tryChange(
        const ReadyCommand& command, const CommandContext& context);
    [[nodiscard]] std::unique_ptr<KestryCore::TimeStore> open(
        const std::string& directory, std::shared_ptr<KestryCore::WriterLock> lock) const;
    void claim(KestryCore::WriterLock& lock) const;
    void closeToOthers(const ReadyCommand& command, const std::string& directory) const;
    void dispose(std::unique_ptr<KestryCore::TimeStore> store) const;

    const ProgramPlatform& platform_;
};

} // namespace Kestry
