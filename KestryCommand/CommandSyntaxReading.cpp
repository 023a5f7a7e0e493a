#include "CommandSyntax.h"
#include "CommandWords.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::allSessionSortFields;
using KestryCore::SessionSort;

namespace {

std::vector<std::string> sortFieldNames()
{
    std::vector<std::string> names;
    for (const auto field : allSessionSortFields) {
        names.emplace_back(sessionSortFieldName(field));
    }
    return names;
}

/// The requested order. A field without a direction gets the one of a first click on its column.
SessionSort givenSort(const CLI::Option* field, std::optional<bool> ascending)
{
    SessionSort sort;
    if (const auto index = givenChoice(field);
        index && allSessionSortFields[*index] != sort.field) {
        sort.select(allSessionSortFields[*index]);
    }
    sort.ascending = ascending.value_or(sort.ascending);
    return sort;
}

} // namespace

void CommandSyntax::addSessions()
{
    CLI::App* sessions = addCommand(root_, "sessions", "Lists the saved sessions, newest first",
        "kestryctl sessions --client aster --month 2026-03 --sort value");
    const auto* client = addValue(sessions, "--client", "CLIENT", "Only those of this client");
    const auto* month = addValue(sessions, "--month", "YYYY-MM", "Only those worked on in a month");
    const auto* search =
        addValue(sessions, "--search", "TEXT", "Only those with it in title, project, client");
    const auto* sort =
        addChoice(sessions, "--sort", sortFieldNames(), "Sort by this, titles from A, else down");
    const auto* ascending = addFlag(sessions, "--ascending", "The lowest first");
    const auto* descending = addFlag(sessions, "--descending", "The highest first");
    readers_[sessions] = [=] {
        return SessionsCommand{given(client), givenMonth(month), given(search).value_or(""),
            givenSort(sort, choice(ascending, descending))};
    };
}

void CommandSyntax::addReport()
{
    CLI::App* report =
        addCommand(root_, "report", "Shows what a month has earned, and where it is heading",
            "kestryctl report --month 2026-03 --client aster\n"
            "kestryctl report --client aster --all-time");
    const auto* month = addValue(report, "--month", "YYYY-MM", "Another month than this one");
    const auto* client =
        addValue(report, "--client", "CLIENT", "Only what was done for this client");
    const auto* allTime = addFlag(report, "--all-time", "The client's figures of all time");
    readers_[report] = [=]() -> Command {
        if (allTime->count() == 0) {
            return ReportCommand{givenMonth(month), given(client)};
        }
        (void)choice(month, allTime);
        if (client->count() == 0) {
            throw UsageError("--all-time needs --client.");
        }
        return ClientReportCommand{required(client)};
    };
}

void CommandSyntax::addExportAndSuggest()
{
    CLI::App* exporting = addCommand(root_, "export",
        "Writes all saved sessions as comma-separated values", "kestryctl export sessions.csv");
    const auto* file = addValue(exporting, "FILE", "[FILE]", "Where to; else the standard output");
    readers_[exporting] = [=] {
        const auto name = given(file);
        if (name && name->empty()) {
            throw UsageError("FILE needs a name.");
        }
        return ExportCommand{name == "-" ? std::nullopt : name};
    };
    CLI::App* suggest = addCommand(root_, "suggest",
        "Suggests titles from those of earlier sessions", "kestryctl suggest sket");
    const auto* prefix = addValue(suggest, "PREFIX", "PREFIX", "What the title begins with");
    readers_[suggest] = [=] { return SuggestCommand{required(prefix)}; };
}

void CommandSyntax::addCompletion()
{
    CLI::App* completion = addCommand(root_, "completion",
        "Prints a script that completes commands in a shell", "kestryctl completion fish | source");
    const auto* shell = addChoice(
        completion, "SHELL", {shellNames.begin(), shellNames.end()}, "The shell to complete in");
    readers_[completion] = [=] {
        (void)required(shell);
        return CompletionCommand{static_cast<Shell>(givenChoice(shell).value())};
    };
}

} // namespace Kestry
