#pragma once

#include <optional>
#include <string>

#include "Date.h"
#include "FileSystem.h"
#include "Uuid.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// What a command works with beside the ledger.
struct CommandContext {
    KestryCore::FileSystem& files;
    KestryCore::ZoneCalendar calendar; ///< Also carries the locale for text.
    KestryCore::Date at;               ///< The command's "now".
    bool isColored = false;
    bool asJson = false; ///< Which form will be shown; an answer may leave the other one out.
    KestryCore::UuidSource newUuid = KestryCore::Uuid::random;
    std::string dataDirectory{};    ///< As the command's user names it.
    std::string workingDirectory{}; ///< Of the command's user; empty for this process's own.
    bool isDirectoryGiven = true;   ///< Whether the user has named the data directory.

    /// Where a file is that the user has named.
    [[nodiscard]] std::string path(const std::string& name) const;
};

/// What a command has to say, in both of the forms in which it may be asked for, or in the one
/// that is asked for where there is much to say. The text ends with a line feed unless it is empty;
/// the JSON is one document without one.
struct CommandAnswer {
    std::string text;
    std::string json;
    bool isSound = true; ///< False makes the program's exit status that of a refusal.
};

/// The answer of a command that has changed the ledger: one line, and what was made or changed.
[[nodiscard]] CommandAnswer changeAnswer(
    const std::string& sentence, const std::optional<KestryCore::Uuid>& id);

} // namespace Kestry
