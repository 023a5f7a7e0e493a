#pragma once

#include <optional>
#include <string>

#include "Command.h"
#include "CommandOrigin.h"
#include "Date.h"
#include "FileSystem.h"
#include "LocalMessage.h"
#include "TimeStore.h"
#include "Uuid.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// What the running application knows of replication, beside what is in the ledger.
struct SyncCondition {
    struct Account {
        std::string address;
        std::string user; ///< Empty where the store has none.
    };

    /// Whether the build of the application can exchange records; nullopt where nobody knows it.
    std::optional<bool> isConfigured{};
    bool isEnabled = false;
    bool isSyncing = false;
    std::string status{}; ///< One line.
    std::optional<KestryCore::Date> lastSync{};
    std::optional<std::string> errorMessage{};
    std::optional<Account> account{};
    bool forgetsPassword = false; ///< When it ends: the desktop keeps none.
};

/// What a command works with besides the ledger.
struct CommandContext {
    KestryCore::FileSystem& files;
    KestryCore::ZoneCalendar calendar; ///< Also carries the locale for text.
    KestryCore::Date at;               ///< The moment that the command works with.
    KestryCore::Date now;              ///< The clock's time, whatever `at` is.
    bool writesToTerminal = false;
    bool isColored = false;
    bool asJson = false; ///< The form that will be shown; an answer may leave the other one empty.
    KestryCore::UuidSource newUuid = KestryCore::Uuid::random;
    std::string dataDirectory{};         ///< As the process where the command was typed names it.
    std::optional<SyncCondition> sync{}; ///< Nullopt on files, where nobody knows it.
};

/// The context of a command: reads the options and asks the clock. Throws a `UsageError` when an
/// option names no instant, time zone or locale, or when the user has no data directory.
[[nodiscard]] CommandContext commandContext(const CommonOptions& options,
    const CommandOrigin& origin, const KestryCore::StorePlatform& platform);

/// The result of a command as text and as JSON. A long result may fill only the form that
/// `CommandContext::asJson` names. The text ends with a line feed unless it is empty; the JSON is
/// one document without a line feed.
struct CommandAnswer {
    std::string text;
    std::string json;
    bool isSound = true;               ///< False: the exit status is 1.
    std::optional<FileToWrite> file{}; ///< To be written before the result is shown.
};

/// The answer of a command that has changed the ledger: one line, and the ID of the record that was
/// made or changed, if there is one.
[[nodiscard]] CommandAnswer changeAnswer(
    const std::string& sentence, const std::optional<KestryCore::Uuid>& id);

} // namespace Kestry
