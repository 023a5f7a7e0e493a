#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Command.h"

namespace Kestry {

/// All commands and options with their descriptions, and how a request is read from them once they
/// have parsed a command line.
class CommandSyntax {
public:
    CommandSyntax();

    [[nodiscard]] CLI::App& root() { return root_; }
    [[nodiscard]] const CLI::App& root() const { return root_; }

    /// The innermost command that was given; the root when none was.
    [[nodiscard]] const CLI::App& chosen() const;
    [[nodiscard]] bool asksForHelp() const { return help_->count() > 0; }
    [[nodiscard]] bool asksForVersion() const { return version_->count() > 0; }

    /// The options that every command accepts. Throws a `UsageError` when one is given twice.
    [[nodiscard]] CommonOptions commonOptions() const;
    /// The chosen command, which must not be a group of commands. Throws a `UsageError` when words
    /// are missing, contradict each other or can't be read.
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
    void addSyncAccount(CLI::App* group);
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
