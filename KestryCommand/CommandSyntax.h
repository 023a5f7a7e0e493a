#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Command.h"

namespace Kestry {

/// The commands and options there are, each with the words that explain it, and how to read a
/// request out of them once the words of a command line have been sorted into them.
class CommandSyntax {
public:
    CommandSyntax();

    [[nodiscard]] CLI::App& root() { return root_; }
    [[nodiscard]] const CLI::App& root() const { return root_; }

    /// The innermost command that was named; the root when none was.
    [[nodiscard]] const CLI::App& chosen() const;
    [[nodiscard]] bool asksForHelp() const { return help_->count() > 0; }
    [[nodiscard]] bool asksForVersion() const { return version_->count() > 0; }

    /// The options that every command takes. Fails with a `UsageError` on one given twice.
    [[nodiscard]] CommonOptions commonOptions() const;
    /// The request of the chosen command, which must not be a group of commands. Fails with a
    /// `UsageError` on missing, contradicting and unreadable words.
    [[nodiscard]] Command command() const;

private:
    void addCommonOptions();
    void addStatus();
    void addSessionCommands();
    void addClientCommands();
    void addClientEdit(CLI::App* group);
    void addProjectCommands();
    void addEntryCommands();
    void addEdit();
    void addSessions();
    void addReport();
    void addExportAndSuggest();
    void addFileCommands();
    void addSyncCommands();
    void addCompletion();

    CLI::App root_;
    CLI::Option* help_ = nullptr;
    CLI::Option* version_ = nullptr;
    CLI::Option* json_ = nullptr;
    CLI::Option* dataDirectory_ = nullptr;
    CLI::Option* at_ = nullptr;
    CLI::Option* timeZone_ = nullptr;
    CLI::Option* locale_ = nullptr;
    std::map<const CLI::App*, std::function<Command()>> readers_;
};

} // namespace Kestry
