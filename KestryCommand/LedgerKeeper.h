#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Command.h"
#include "CommandOrigin.h"
#include "LedgerError.h"
#include "LocalMessage.h"

namespace Kestry {

/// A command that can be carried out: its words are read, and a person was asked and a logo read
/// where it needs that.
struct ReadyCommand {
    std::vector<std::string> words; ///< As typed, for another process to read.
    CommonOptions options;
    StoreCommand command;
    CommandOrigin origin;
    bool isConfirmed = false; ///< A person was asked and said yes.
};

/// Another process is the one writer of the data directory.
class DirectoryInUse : public KestryCore::LedgerError {
public:
    /// `holder` names that process, as in "kestry (process 4711)"; empty when it is not known.
    DirectoryInUse(const std::string& message, std::string holder)
        : LedgerError(message), holder_(std::move(holder))
    {
    }

    /// Whether the application has the directory. One that is starting or ending does not listen,
    /// and soon will, or is gone.
    [[nodiscard]] bool isApplication() const { return holder_.starts_with("kestry ("); }

private:
    std::string holder_;
};

/// Whoever has the ledger open or can open it, and so can carry out commands.
class LedgerKeeper {
public:
    LedgerKeeper() = default;
    LedgerKeeper(const LedgerKeeper&) = delete;
    LedgerKeeper& operator=(const LedgerKeeper&) = delete;
    virtual ~LedgerKeeper() = default;

    /// Carries the command out. A refusal is an answer, or a `LedgerError` with the message to
    /// show; a `UsageError` tells of options that can't be read. Nothing has changed then.
    [[nodiscard]] virtual LocalAnswer carryOut(const ReadyCommand& command) = 0;
};

} // namespace Kestry
