#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Command.h"
#include "CommandContext.h"
#include "LiveSync.h"
#include "LocalMessage.h"
#include "TimeStore.h"

namespace Kestry {

class CommandSyntax;

/// Carries out the command lines of other processes on the open store of this one. Answers are the
/// same, byte for byte, as those of the command carried out on the files; only of replication this
/// process does and knows more.
class CommandService {
public:
    /// The store, replication and everything in the platform must outlive the service.
    CommandService(
        KestryCore::TimeStore& store, LiveSync& sync, KestryCore::StorePlatform platform);
    CommandService(const CommandService&) = delete;
    CommandService& operator=(const CommandService&) = delete;
    ~CommandService();

    /// Calls `take`, which tells the caller that its command is being carried out now, carries it
    /// out, and gives the answer: in this call, or later when it has to wait for a record store.
    /// Returns false, with nothing done or given, when `take` returns false because the caller no
    /// longer waits, and without calling it for what the caller has to do itself:
    /// - words that can't be read, or ask for help, the version, `check` or `completion`;
    /// - words that name another data directory than the caller found in them;
    /// - a confirmation, a logo or a password that the caller has not got yet, and a file to write
    ///   unless the caller says that it is prepared for that; but nobody is asked for the password
    ///   to an address that a sign-in cannot even be tried with;
    /// - what would take long on a ledger of this size, unless the files are damaged.
    [[nodiscard]] bool run(const LocalCommand& caller, const std::function<bool()>& take,
        const std::function<void(LocalAnswer)>& give);

private:
    [[nodiscard]] bool isForCaller(const StoreCommand& command, const LocalCommand& caller) const;
    [[nodiscard]] std::optional<CommandRequest> requestOf(const std::vector<std::string>& words);

    [[nodiscard]] CommandContext contextOf(
        const LocalCommand& caller, const CommonOptions& options) const;

    KestryCore::TimeStore& store_;
    LiveSync& sync_;
    KestryCore::StorePlatform platform_;
    std::unique_ptr<CommandSyntax> syntax_; ///< Created by the first command, then kept.
};

} // namespace Kestry
