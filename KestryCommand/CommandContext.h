#pragma once

#include <optional>
#include <string>

#include "Date.h"
#include "FileSystem.h"
#include "LocalMessage.h"
#include "Uuid.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// What a command works with beside the ledger.
struct CommandContext {
    KestryCore::FileSystem& files;
    KestryCore::ZoneCalendar calendar; ///< Also carries the locale for text.
    KestryCore::Date at;               ///< The command's "now".
    KestryCore::Date now;              ///< By the clock, whatever the command's "now" is.
    bool writesToTerminal = false;
    bool isColored = false;
    bool asJson = false; ///< Which form will be shown; an answer may leave the other one out.
    KestryCore::UuidSource newUuid = KestryCore::Uuid::random;
    std::string dataDirectory{};  ///< As the command's user names it.
    bool isDirectoryGiven = true; ///< Whether the user has named the data directory.
};

/// What a command has to say, in both of the forms in which it may be asked for, or in the one
/// that is asked for where there is much to say. The text ends with a line feed unless it is empty;
/// the JSON is one document without one.
struct CommandAnswer {
    std::string text;
    std::string json;
    bool isSound = true;               ///< False makes the program's exit status that of a refusal.
    std::optional<FileToWrite> file{}; ///< To be written before anything is said.
};

/// The answer of a command that has changed the ledger: one line, and what was made or changed.
[[nodiscard]] CommandAnswer changeAnswer(
    const std::string& sentence, const std::optional<KestryCore::Uuid>& id);

} // namespace Kestry
