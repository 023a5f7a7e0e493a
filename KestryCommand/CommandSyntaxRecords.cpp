#include "ClientColor.h"
#include "CommandSyntax.h"
#include "CommandWords.h"
#include "Durations.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::Rate;

void CommandSyntax::addClientCommands()
{
    CLI::App* group =
        addCommand(root_, "client", "Lists, adds and changes clients", "kestryctl client list");
    readers_[addCommand(*group, "list", "Lists the clients", "kestryctl client list --json")] = [] {
        return ClientListCommand{};
    };
    CLI::App* add = addCommand(*group, "add", "Adds a client",
        "kestryctl client add \"Aster Studio\" --rate 150.00 --color B7A5FF");
    const auto* name = addValue(add, "NAME", "NAME", "The client's name");
    const auto* rate = addValue(add, "--rate", "RATE", "Dollars per hour; unknown when left out");
    const auto* color = addValue(add, "--color", "HEX", "Six hexadecimal digits");
    const auto* logo =
        addValue(add, "--logo", "FILE", "A PNG, JPEG, HEIC, WebP or GIF image of up to 20 MB");
    const auto* projects = addFlag(add, "--projects", "File sessions under projects");
    const auto* noProjects =
        addFlag(add, "--no-projects", "File all sessions under the client itself");
    readers_[add] = [=] {
        // With projects a client's own rate would bill nothing.
        const std::optional<Rate> known = givenRate(rate);
        return ClientAddCommand{required(name), known.value_or(Rate{0, false}),
            givenColor(color).value_or(std::string(KestryCore::ClientColor::initialHex)),
            given(logo), choice(projects, noProjects).value_or(!known)};
    };
    addClientEdit(group);
}

void CommandSyntax::addClientEdit(CLI::App* group)
{
    CLI::App* edit = addCommand(*group, "edit", "Changes a client; what is not given stays",
        "kestryctl client edit aster --rate 160");
    const auto* client = addValue(edit, "CLIENT", "CLIENT", "The client, by name or UUID");
    const auto* name = addValue(edit, "--name", "NAME", "Another name");
    const auto* rate =
        addValue(edit, "--rate", "RATE", "Dollars per hour, for sessions started from now on");
    const auto* noRate = addFlag(edit, "--no-rate", "The rate is not known");
    const auto* color = addValue(edit, "--color", "HEX", "Six hexadecimal digits");
    const auto* logo =
        addValue(edit, "--logo", "FILE", "A PNG, JPEG, HEIC, WebP or GIF image of up to 20 MB");
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
    const auto* owner = addValue(list, "CLIENT", "[CLIENT]", "The client, by name or UUID");
    readers_[list] = [=] { return ProjectListCommand{given(owner)}; };

    CLI::App* add = addCommand(*group, "add", "Adds a project to a client",
        "kestryctl project add aster Website --rate 150.00");
    const auto* client = addValue(add, "CLIENT", "CLIENT", "The client, by name or UUID");
    const auto* name = addValue(add, "NAME", "NAME", "The project's name");
    const auto* rate = addValue(add, "--rate", "RATE", "Dollars per hour; unknown when left out");
    readers_[add] = [=] {
        return ProjectAddCommand{
            required(client), required(name), givenRate(rate).value_or(Rate{0, false})};
    };

    CLI::App* edit = addCommand(*group, "edit", "Changes a project; what is not given stays",
        "kestryctl project edit Website --rate 175");
    const auto* project = addValue(edit, "PROJECT", "PROJECT", "The project, by name or UUID");
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
    const auto* client = addValue(add, "CLIENT", "CLIENT", "The client, by name or UUID");
    const auto* project =
        addValue(add, "PROJECT", "[PROJECT]", "One of its projects; else \"Unassigned\"");
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
        addValue(gap, "SESSION", "SESSION", "The session, by title or UUID; may be in progress");
    const auto* from = addValue(gap, "--start", "INSTANT", "Where the interval begins");
    const auto* to = addValue(gap, "--end", "INSTANT", "Where it ends");
    readers_[gap] = [=] { return GapCommand{required(session), required(from), required(to)}; };

    CLI::App* remove = addCommand(
        root_, "delete", "Deletes a saved session", "kestryctl delete \"First sketches\" --yes");
    const auto* doomed = addValue(remove, "SESSION", "SESSION", "The session, by title or UUID");
    const auto* yes = addFlag(remove, "--yes", "Don't ask");
    readers_[remove] = [=] { return DeleteCommand{required(doomed), yes->count() > 0}; };
}

void CommandSyntax::addEdit()
{
    CLI::App* edit = addCommand(root_, "edit", "Changes a saved session; what is not given stays",
        "kestryctl edit \"First sketches\" --duration 1h45m");
    const auto* session = addValue(edit, "SESSION", "SESSION", "The session, by title or UUID");
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

} // namespace Kestry
