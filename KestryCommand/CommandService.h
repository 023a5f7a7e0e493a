#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CommandProgram.h"
#include "LocalMessage.h"

namespace Kestry {

class CommandSyntax;

/// Carries out the command lines of other processes on the store of this one, with the code that
/// does it for files: the answers are the same to the byte.
class CommandService {
public:
    /// What the commands work with; all of it must outlive the service.
    struct Platform {
        KestryCore::FileSystem& files;
        KestryCore::Clock now;
        KestryCore::UuidSource newUuid = KestryCore::Uuid::random;
    };

    CommandService(KestryCore::TimeStore& store, Platform platform);
    CommandService(const CommandService&) = delete;
    CommandService& operator=(const CommandService&) = delete;
    ~CommandService();

    /// Carries out a command once it is taken; none, and nothing done, for what is left to the
    /// caller: words that mean no command or one that needs no store, questions to a person, other
    /// data directories, files to read or write until the caller is prepared for that, and what
    /// would take long on a ledger of this size and can be done on the files. `take` tells the
    /// caller, and whether it still waits.
    [[nodiscard]] std::optional<LocalAnswer> run(
        const LocalCommand& command, const std::function<bool()>& take);

private:
    [[nodiscard]] bool isForCaller(const Command& command, const LocalCommand& caller) const;
    [[nodiscard]] std::optional<CommandRequest> requestOf(const std::vector<std::string>& words);
    [[nodiscard]] LocalAnswer carryOut(const CommandRequest& request, const LocalCommand& command);

    KestryCore::TimeStore& store_;
    Platform platform_;
    std::unique_ptr<CommandSyntax> syntax_; ///< Made for the first command.
};

} // namespace Kestry
