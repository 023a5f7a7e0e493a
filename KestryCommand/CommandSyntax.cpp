#include "CommandSyntax.h"

#include "CommandWords.h"

namespace Kestry {

CommandSyntax::CommandSyntax()
    : root_("Tracks time from a terminal or a script, on the ledger of Kestry.", "kestryctl")
{
    root_.set_help_flag();
    root_.allow_extras();
    root_.require_subcommand(0, 1);
    root_.footer("kestryctl client add \"Aster Studio\" --rate 150\n"
                 "kestryctl start aster --title \"First sketches\"\n"
                 "kestryctl stop --at -5m");
    addStatus();
    addSessionCommands();
    addClientCommands();
    addProjectCommands();
    addEntryCommands();
    addEdit();
    addSessions();
    addReport();
    addExportAndSuggest();
    addFileCommands();
    addSyncCommands();
    addCompletion();
    addCommonOptions();
}

void CommandSyntax::addCommonOptions()
{
    dataDirectory_ = addValue(&root_, "--data-directory", "PATH",
        "The ledger folder; else KESTRY_DATA_DIR, else your own");
    at_ = addValue(&root_, "--at", "INSTANT", "Work at 10:26, \"yesterday 14:30\", -15m, not now");
    timeZone_ =
        addValue(&root_, "--time-zone", "NAME", "The zone of local times, as Europe/Berlin");
    locale_ = addValue(&root_, "--locale", "NAME", "The locale of text, as de_DE");
    json_ = addFlag(&root_, "--json", "Print one JSON document instead of text");
    help_ = addFlag(&root_, "-h,--help", "Explain the program, or one command");
    version_ = addFlag(&root_, "--version", "Print the version");
}

void CommandSyntax::addStatus()
{
    const CLI::App* status = addCommand(root_, "status",
        "Shows the current session and the condition of the ledger", "kestryctl status --json");
    readers_[status] = [] { return StatusCommand{}; };
}

void CommandSyntax::addSessionCommands()
{
    CLI::App* start = addCommand(root_, "start", "Starts a session",
        "kestryctl start \"Aster Studio\" Website --title \"First sketches\"");
    const auto* client = addValue(start, "CLIENT", "CLIENT", "The client, by name or UUID");
    const auto* project =
        addValue(start, "PROJECT", "[PROJECT]", "One of its projects; else \"Unassigned\"");
    const auto* title = addValue(start, "--title", "TITLE", "What is being worked on");
    readers_[start] = [=] {
        return StartCommand{required(client), given(project), given(title).value_or("")};
    };
    readers_[addCommand(root_, "pause", "Pauses the running session", "kestryctl pause --at -5m")] =
        [] { return PauseCommand{}; };
    readers_[addCommand(root_, "resume", "Resumes the paused session", "kestryctl resume")] = [] {
        return ResumeCommand{};
    };
    readers_[addCommand(root_, "stop", "Stops the session and saves it", "kestryctl stop")] = [] {
        return StopCommand{};
    };
    readers_[addCommand(root_, "checkpoint",
        "Notes that the session is still running, in case it breaks off", "kestryctl checkpoint")] =
        [] { return CheckpointCommand{}; };
    CLI::App* rename = addCommand(root_, "rename", "Gives the current session another title",
        "kestryctl rename \"Second sketches\"");
    const auto* newTitle = addValue(rename, "TITLE", "TITLE", "The new title; may be empty");
    readers_[rename] = [=] { return RenameCommand{required(newTitle)}; };
    CLI::App* move = addCommand(root_, "move",
        "Moves the current session to another project of its client", "kestryctl move Website");
    const auto* target = addValue(move, "PROJECT", "PROJECT", "The project, by name or UUID");
    readers_[move] = [=] { return MoveCommand{required(target)}; };
}

void CommandSyntax::addFileCommands()
{
    const CLI::App* check = addCommand(root_, "check",
        "Reads and validates the ledger and its backup, changes nothing", "kestryctl check");
    readers_[check] = [] { return CheckCommand{}; };
    CLI::App* restore = addCommand(root_, "restore",
        "Puts the backup in the place of a ledger that cannot be read", "kestryctl restore --yes");
    const auto* yes = addFlag(restore, "--yes", "Don't ask");
    readers_[restore] = [=] { return RestoreCommand{yes->count() > 0}; };
}

const CLI::App& CommandSyntax::chosen() const
{
    const CLI::App* innermost = &root_;
    while (!innermost->get_subcommands().empty()) {
        innermost = innermost->get_subcommands().front();
    }
    return *innermost;
}

CommonOptions CommandSyntax::commonOptions() const
{
    return {
        given(dataDirectory_), given(at_), given(timeZone_), given(locale_), json_->count() > 0};
}

Command CommandSyntax::command() const
{
    return readers_.at(&chosen())();
}

} // namespace Kestry
