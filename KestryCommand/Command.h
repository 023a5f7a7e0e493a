#pragma once

#include <optional>
#include <string>
#include <variant>

#include "Calendar.h"
#include "Ledger.h"
#include "LedgerEditing.h"
#include "SessionSort.h"
#include "Shell.h"
#include "SyncConflicts.h"

namespace Kestry {

// A command line as plain values. Clients, projects, sessions and instants are still the words that
// were typed, because their meaning depends on the ledger and on the calendar. Everything else has
// been checked.
//
// `changesLedger` is true for commands that must be the one writer of the data directory.
// `needsApplication` is there for those that only the running application can carry out.

struct StatusCommand {
    static constexpr bool changesLedger = false;
};

struct StartCommand {
    static constexpr bool changesLedger = true;
    std::string client;
    std::optional<std::string> project;
    std::string title;
};

struct PauseCommand {
    static constexpr bool changesLedger = true;
};

struct ResumeCommand {
    static constexpr bool changesLedger = true;
};

struct StopCommand {
    static constexpr bool changesLedger = true;
};

struct CheckpointCommand {
    static constexpr bool changesLedger = true;
};

struct RenameCommand {
    static constexpr bool changesLedger = true;
    std::string title;
};

struct MoveCommand {
    static constexpr bool changesLedger = true;
    std::string project;
};

struct ClientListCommand {
    static constexpr bool changesLedger = false;
};

struct ClientAddCommand {
    static constexpr bool changesLedger = true;
    std::string name;
    KestryCore::Rate rate{0, false};
    std::string colorHex;
    std::optional<std::string> logoFile;
    bool projectsEnabled = true;
    std::optional<std::string> logo{}; ///< Made of `logoFile`; nullopt until it is read.
};

/// A field that is nullopt leaves its value unchanged.
struct ClientEditCommand {
    static constexpr bool changesLedger = true;
    std::string client;
    std::optional<std::string> name;
    std::optional<KestryCore::Rate> rate;
    std::optional<std::string> colorHex;
    std::optional<std::string> logoFile;
    bool removesLogo = false;
    std::optional<bool> projectsEnabled;
    std::optional<std::string> logo{}; ///< Made of `logoFile`; nullopt until it is read.
};

struct ProjectListCommand {
    static constexpr bool changesLedger = false;
    std::optional<std::string> client;
};

struct ProjectAddCommand {
    static constexpr bool changesLedger = true;
    std::string client;
    std::string name;
    KestryCore::Rate rate{0, false};
};

/// A field that is nullopt leaves its value unchanged.
struct ProjectEditCommand {
    static constexpr bool changesLedger = true;
    std::string project;
    std::optional<std::string> name;
    std::optional<KestryCore::Rate> rate;
};

struct AddCommand {
    static constexpr bool changesLedger = true;
    std::string client;
    std::optional<std::string> project;
    std::string start;
    double duration = 0.0; ///< Seconds.
    std::string title;
};

/// A field that is nullopt leaves its value unchanged.
struct EditCommand {
    static constexpr bool changesLedger = true;
    std::string session;
    std::optional<std::string> title;
    std::optional<std::string> start;
    std::optional<double> duration; ///< Seconds.
    std::optional<bool> isBillable;
    std::optional<std::string> project;
};

struct GapCommand {
    static constexpr bool changesLedger = true;
    std::string session;
    std::string start;
    std::string end;
};

struct DeleteCommand {
    static constexpr bool changesLedger = true;
    std::string session;
    bool isConfirmed = false;
};

struct CheckCommand { };

struct RestoreCommand {
    static constexpr bool changesLedger = true;
    bool isConfirmed = false;
};

/// Lists the saved sessions that match every filter given here.
struct SessionsCommand {
    static constexpr bool changesLedger = false;
    std::optional<std::string> client;
    std::optional<KestryCore::CalendarDay> month; ///< Its first day.
    std::string search;
    KestryCore::SessionSort sort;
};

struct ReportCommand {
    static constexpr bool changesLedger = false;
    std::optional<KestryCore::CalendarDay> month; ///< Its first day; nullopt: the current month.
    std::optional<std::string> client;
};

/// A client's figures over all time.
struct ClientReportCommand {
    static constexpr bool changesLedger = false;
    std::string client;
};

struct ExportCommand {
    static constexpr bool changesLedger = false;
    std::optional<std::string> file; ///< Nullopt: the standard output.
};

struct SuggestCommand {
    static constexpr bool changesLedger = false;
    std::string prefix;
};

struct CompletionCommand {
    Shell shell = Shell::bash;
};

struct SyncStatusCommand {
    static constexpr bool changesLedger = false;
};

struct SyncConflictsCommand {
    static constexpr bool changesLedger = false;
};

struct SyncResolveCommand {
    static constexpr bool changesLedger = true;
    std::string conflict; ///< Its ID, as `sync conflicts` shows it.
    KestryCore::ConflictChoice choice = KestryCore::ConflictChoice::keepLocal;
};

/// Signs in to a record store. Those in a file have neither users nor passwords.
struct SyncSignInCommand {
    static constexpr bool changesLedger = true;
    static constexpr bool needsApplication = true;
    std::string address;
    std::string user;
    bool readsPassword = false;            ///< From the standard input, whatever else there is.
    std::optional<std::string> password{}; ///< Never one of the words; nullopt until it is read.
};

/// Whether the store at the address asks for one.
[[nodiscard]] inline bool needsPassword(const SyncSignInCommand& command)
{
    return !command.address.starts_with("sqlite:");
}

struct SyncSignOutCommand {
    static constexpr bool changesLedger = true;
    static constexpr bool needsApplication = true;
};

struct SyncOnCommand {
    static constexpr bool changesLedger = true;
    static constexpr bool needsApplication = true;
};

struct SyncOffCommand {
    static constexpr bool changesLedger = true;
};

struct SyncNowCommand {
    static constexpr bool changesLedger = true;
    static constexpr bool needsApplication = true;
};

/// Delivers all records of this device anew.
struct SyncUploadAgainCommand {
    static constexpr bool changesLedger = true;
    static constexpr bool needsApplication = true;
    bool isConfirmed = false;
};

/// A command that works on an open store, in this process or in the application's.
using StoreCommand = std::variant<StatusCommand, StartCommand, PauseCommand, ResumeCommand,
    StopCommand, CheckpointCommand, RenameCommand, MoveCommand, ClientListCommand, ClientAddCommand,
    ClientEditCommand, ProjectListCommand, ProjectAddCommand, ProjectEditCommand, AddCommand,
    EditCommand, GapCommand, DeleteCommand, SessionsCommand, ReportCommand, ClientReportCommand,
    ExportCommand, SuggestCommand, RestoreCommand, SyncStatusCommand, SyncConflictsCommand,
    SyncResolveCommand, SyncSignInCommand, SyncSignOutCommand, SyncOnCommand, SyncOffCommand,
    SyncNowCommand, SyncUploadAgainCommand>;

/// `CheckCommand` reads the ledger files without a store; `CompletionCommand` needs no ledger.
using Command = std::variant<StoreCommand, CheckCommand, CompletionCommand>;

/// The options that every command accepts.
struct CommonOptions {
    std::optional<std::string> dataDirectory;
    std::optional<std::string> at; ///< An instant, as typed.
    std::optional<std::string> timeZone;
    std::optional<std::string> locale;
    bool json = false;
};

struct CommandRequest {
    CommonOptions options;
    Command command;
};

/// Whether the command may write, and so needs the data directory to itself.
[[nodiscard]] inline bool changesLedger(const StoreCommand& command)
{
    return std::visit([](const auto& chosen) { return chosen.changesLedger; }, command);
}

/// Whether only the running application can carry the command out.
[[nodiscard]] inline bool needsApplication(const StoreCommand& command)
{
    return std::visit(
        [](const auto& chosen) {
            return requires
            {
                chosen.needsApplication;
            };
        },
        command);
}

/// The words by which the command names a session; null when it names none.
[[nodiscard]] inline const std::string* sessionWords(const StoreCommand& command)
{
    return std::visit(
        [](const auto& chosen) -> const std::string* {
            if constexpr (requires { chosen.session; }) {
                return &chosen.session;
            } else {
                return nullptr;
            }
        },
        command);
}

} // namespace Kestry
