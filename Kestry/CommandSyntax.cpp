#include "CommandSyntax.h"

#include <algorithm>

#include "LedgerError.h"
#include "TextForms.h"
#include "TimeWords.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::Rate;

namespace {

constexpr const char* defaultColorHex = "A2A5AA";

/// A command with words of its own: its description, and an example to learn it from.
CLI::App* addCommand(
    CLI::App& parent, const std::string& name, const char* description, const char* example)
{
    CLI::App* command = parent.add_subcommand(name, description);
    command->set_help_flag();
    command->fallthrough();
    command->allow_extras();
    command->require_subcommand(0, 1);
    command->footer(example);
    return command;
}

CLI::Option* addValue(
    CLI::App* command, const std::string& name, const char* shape, const std::string& description)
{
    return command->add_option(name, CLI::callback_t{}, description)
        ->type_name(shape)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

CLI::Option* addFlag(CLI::App* command, const std::string& name, const std::string& description)
{
    return command->add_flag(name, description);
}

/// A word told by its place; the shape of one that may be left out is written in brackets.
CLI::Option* addWord(
    CLI::App* command, const std::string& name, const char* shape, const std::string& description)
{
    return addValue(command, name, shape, description);
}

std::string nameOf(const CLI::Option* option)
{
    return option->get_positional() ? option->get_name(true) : option->get_name();
}

std::optional<std::string> given(const CLI::Option* option)
{
    if (option->count() == 0) {
        return std::nullopt;
    }
    if (option->count() > 1) {
        throw UsageError(nameOf(option) + " can be given only once.");
    }
    return option->results().back();
}

std::string required(const CLI::Option* option)
{
    if (auto value = given(option)) {
        return *value;
    }
    throw UsageError(nameOf(option) + " is missing.");
}

/// Which of two opposite options was given: true for the first, none for neither.
std::optional<bool> choice(const CLI::Option* first, const CLI::Option* second)
{
    if (first->count() > 0 && second->count() > 0) {
        throw UsageError(nameOf(first) + " and " + nameOf(second) + " contradict each other.");
    }
    if (first->count() == 0 && second->count() == 0) {
        return std::nullopt;
    }
    return first->count() > 0;
}

Rate readRateOption(const std::string& text)
{
    try {
        const auto cents = KestryCore::readRate(text);
        return {cents.value_or(0), cents.has_value()};
    } catch (const KestryCore::LedgerError& failure) {
        throw UsageError(failure.what());
    }
}

std::optional<Rate> givenRate(const CLI::Option* rate)
{
    const auto text = given(rate);
    return text ? std::optional(readRateOption(*text)) : std::nullopt;
}

std::optional<Rate> givenRate(const CLI::Option* rate, const CLI::Option* noRate)
{
    return choice(rate, noRate) == false ? std::optional(Rate{0, false}) : givenRate(rate);
}

std::optional<std::string> givenColor(const CLI::Option* option)
{
    auto color = given(option);
    if (!color) {
        return std::nullopt;
    }
    color->erase(0, color->starts_with('#') ? 1 : 0);
    std::ranges::transform(*color, color->begin(), [](char digit) {
        return digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
    });
    if (color->size() != 6 || color->find_first_not_of("0123456789ABCDEF") != std::string::npos) {
        throw UsageError("--color needs six hexadecimal digits, as in A2A5AA.");
    }
    return color;
}

std::optional<double> givenDuration(const CLI::Option* option)
{
    const auto text = given(option);
    return text ? std::optional(readDuration(*text)) : std::nullopt;
}

} // namespace

CommandSyntax::CommandSyntax()
    : root_("The command-line companion of Kestry: tracks time from a terminal or a script, on the "
            "same ledger as the application.",
        "kestryctl")
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
    addFileCommands();
    addCommonOptions();
}

void CommandSyntax::addCommonOptions()
{
    dataDirectory_ = addValue(&root_, "--data-directory", "PATH",
        "The folder of the ledger; else KESTRY_DATA_DIR, else the user's own");
    at_ = addValue(&root_, "--at", "INSTANT",
        "The moment to work with instead of now: 10:26, \"2026-03-14 10:26\", -15m");
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
    const auto* client = addWord(start, "CLIENT", "CLIENT", "The client, by name or UUID");
    const auto* project =
        addWord(start, "PROJECT", "[PROJECT]", "One of its projects; else \"Unassigned\"");
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
        "Notes that the session is still running, as the application does every 15 seconds",
        "kestryctl checkpoint")] = [] { return CheckpointCommand{}; };
    CLI::App* rename = addCommand(root_, "rename", "Gives the current session another title",
        "kestryctl rename \"Second sketches\"");
    const auto* newTitle = addWord(rename, "TITLE", "TITLE", "The new title; may be empty");
    readers_[rename] = [=] { return RenameCommand{required(newTitle)}; };
    CLI::App* move = addCommand(root_, "move",
        "Moves the current session to another project of its client", "kestryctl move Website");
    const auto* target = addWord(move, "PROJECT", "PROJECT", "The project, by name or UUID");
    readers_[move] = [=] { return MoveCommand{required(target)}; };
}

void CommandSyntax::addClientCommands()
{
    CLI::App* group =
        addCommand(root_, "client", "Lists, adds and changes clients", "kestryctl client list");
    readers_[addCommand(*group, "list", "Lists the clients", "kestryctl client list --json")] = [] {
        return ClientListCommand{};
    };
    CLI::App* add = addCommand(*group, "add", "Adds a client",
        "kestryctl client add \"Aster Studio\" --rate 150.00 --color B7A5FF");
    const auto* name = addWord(add, "NAME", "NAME", "The client's name");
    const auto* rate = addValue(add, "--rate", "RATE", "Dollars per hour; unknown when left out");
    const auto* color = addValue(add, "--color", "HEX", "Six hexadecimal digits");
    const auto* logo = addValue(add, "--logo", "FILE", "A PNG image of up to 256 pixels");
    const auto* noProjects =
        addFlag(add, "--no-projects", "File all sessions under the client itself");
    readers_[add] = [=] {
        return ClientAddCommand{required(name), givenRate(rate).value_or(Rate{0, false}),
            givenColor(color).value_or(defaultColorHex), given(logo), noProjects->count() == 0};
    };
    addClientEdit(group);
}

void CommandSyntax::addClientEdit(CLI::App* group)
{
    CLI::App* edit = addCommand(*group, "edit", "Changes a client; what is not given stays",
        "kestryctl client edit aster --rate 160");
    const auto* client = addWord(edit, "CLIENT", "CLIENT", "The client, by name or UUID");
    const auto* name = addValue(edit, "--name", "NAME", "Another name");
    const auto* rate =
        addValue(edit, "--rate", "RATE", "Dollars per hour, for sessions started from now on");
    const auto* noRate = addFlag(edit, "--no-rate", "The rate is not known");
    const auto* color = addValue(edit, "--color", "HEX", "Six hexadecimal digits");
    const auto* logo = addValue(edit, "--logo", "FILE", "A PNG image of up to 256 pixels");
    const auto* noLogo = addFlag(edit, "--no-logo", "Remove the logo");
    const auto* projects = addFlag(edit, "--projects", "File sessions under projects");
    const auto* noProjects =
        addFlag(edit, "--no-projects", "File all sessions under the client itself");
    readers_[edit] = [=] {
        ClientEditCommand command;
        command.client = required(client);
        command.name = given(name);
        command.rate = givenRate(rate, noRate);
        command.colorHex = givenColor(color);
        command.removesLogo = choice(logo, noLogo) == false;
        command.logoFile = given(logo);
        command.projectsEnabled = choice(projects, noProjects);
        if (!command.name && !command.rate && !command.colorHex && !command.logoFile
            && !command.removesLogo && !command.projectsEnabled) {
            throw UsageError("Say what to change.");
        }
        return command;
    };
}

void CommandSyntax::addProjectCommands()
{
    CLI::App* group = addCommand(
        root_, "project", "Lists, adds and changes projects", "kestryctl project list aster");
    CLI::App* list = addCommand(*group, "list", "Lists the projects, of all clients or of one",
        "kestryctl project list aster --json");
    const auto* owner = addWord(list, "CLIENT", "[CLIENT]", "The client, by name or UUID");
    readers_[list] = [=] { return ProjectListCommand{given(owner)}; };

    CLI::App* add = addCommand(*group, "add", "Adds a project to a client",
        "kestryctl project add aster Website --rate 150.00");
    const auto* client = addWord(add, "CLIENT", "CLIENT", "The client, by name or UUID");
    const auto* name = addWord(add, "NAME", "NAME", "The project's name");
    const auto* rate = addValue(add, "--rate", "RATE", "Dollars per hour; unknown when left out");
    readers_[add] = [=] {
        return ProjectAddCommand{
            required(client), required(name), givenRate(rate).value_or(Rate{0, false})};
    };

    CLI::App* edit = addCommand(*group, "edit", "Changes a project; what is not given stays",
        "kestryctl project edit Website --rate 175");
    const auto* project = addWord(edit, "PROJECT", "PROJECT", "The project, by name or UUID");
    const auto* newName = addValue(edit, "--name", "NAME", "Another name");
    const auto* newRate =
        addValue(edit, "--rate", "RATE", "Dollars per hour, for sessions started from now on");
    const auto* noRate = addFlag(edit, "--no-rate", "The rate is not known");
    readers_[edit] = [=] {
        ProjectEditCommand command{required(project), given(newName), givenRate(newRate, noRate)};
        if (!command.name && !command.rate) {
            throw UsageError("Say what to change.");
        }
        return command;
    };
}

void CommandSyntax::addEntryCommands()
{
    CLI::App* add = addCommand(root_, "add", "Adds time that was worked already",
        "kestryctl add aster Website --start \"2026-03-14 10:00\" --duration 1h30m");
    const auto* client = addWord(add, "CLIENT", "CLIENT", "The client, by name or UUID");
    const auto* project =
        addWord(add, "PROJECT", "[PROJECT]", "One of its projects; else \"Unassigned\"");
    const auto* start = addValue(add, "--start", "INSTANT", "When it began");
    const auto* duration = addValue(add, "--duration", "TIME", "How long it was: 1h30m, 90m, 1:30");
    const auto* title = addValue(add, "--title", "TITLE", "What was worked on");
    readers_[add] = [=] {
        const std::string length = required(duration);
        return AddCommand{required(client), given(project), required(start), readDuration(length),
            given(title).value_or("")};
    };

    CLI::App* gap = addCommand(root_, "gap", "Puts a missing interval back into a session",
        "kestryctl gap \"First sketches\" --start 10:00 --end 10:30");
    const auto* session =
        addWord(gap, "SESSION", "SESSION", "The session, by title or UUID; may be in progress");
    const auto* from = addValue(gap, "--start", "INSTANT", "Where the interval begins");
    const auto* to = addValue(gap, "--end", "INSTANT", "Where it ends");
    readers_[gap] = [=] { return GapCommand{required(session), required(from), required(to)}; };

    CLI::App* remove = addCommand(
        root_, "delete", "Deletes a saved session", "kestryctl delete \"First sketches\" --yes");
    const auto* doomed = addWord(remove, "SESSION", "SESSION", "The session, by title or UUID");
    const auto* yes = addFlag(remove, "--yes", "Don't ask");
    readers_[remove] = [=] { return DeleteCommand{required(doomed), yes->count() > 0}; };
}

void CommandSyntax::addEdit()
{
    CLI::App* edit = addCommand(root_, "edit", "Changes a saved session; what is not given stays",
        "kestryctl edit \"First sketches\" --duration 1h45m");
    const auto* session = addWord(edit, "SESSION", "SESSION", "The session, by title or UUID");
    const auto* title = addValue(edit, "--title", "TITLE", "Another title; may be empty");
    const auto* start = addValue(edit, "--start", "INSTANT", "Move it to begin here");
    const auto* duration = addValue(
        edit, "--duration", "TIME", "Another length, which makes it one interval without pauses");
    const auto* billable = addFlag(edit, "--billable", "It earns money");
    const auto* noBillable = addFlag(edit, "--no-billable", "It earns nothing");
    const auto* project = addValue(edit, "--project", "PROJECT", "Another project of its client");
    readers_[edit] = [=] {
        EditCommand command{required(session), given(title), given(start), givenDuration(duration),
            choice(billable, noBillable), given(project)};
        if (!command.title && !command.start && !command.duration && !command.isBillable
            && !command.project) {
            throw UsageError("Say what to change.");
        }
        return command;
    };
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
