#include "CompletionTable.h"

#include <gmock/gmock.h>

#include <sstream>

#include "CommandSyntax.h"
#include "CommandWords.h"
#include "CompletionScript.h"

namespace Kestry {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::StartsWith;

std::vector<std::string> tableLines()
{
    std::istringstream table(completionTable(CommandSyntax().root()));
    std::vector<std::string> lines;
    for (std::string line; std::getline(table, line);) {
        lines.push_back(line);
    }
    return lines;
}

/// Looks at every command and group, the program itself included.
template <class Look>
void forEachCommand(const CLI::App& command, const std::string& path, Look look)
{
    look(command, path);
    for (const CLI::App* child : command.get_subcommands([](const CLI::App*) { return true; })) {
        forEachCommand(
            *child, path.empty() ? child->get_name() : path + " " + child->get_name(), look);
    }
}

TEST(CompletionTable, HasEveryCommandAndOptionThatTheParserKnows)
{
    const auto lines = tableLines();
    const CommandSyntax syntax;
    forEachCommand(syntax.root(), "", [&](const CLI::App& command, const std::string& path) {
        for (const CLI::App* child :
            command.get_subcommands([](const CLI::App*) { return true; })) {
            EXPECT_THAT(lines, Contains(StartsWith(path + "|command|" + child->get_name() + "||")));
        }
        for (const CLI::Option* option : command.get_options()) {
            for (const std::string& name : option->get_lnames()) {
                const std::string kind = option->get_expected_max() > 0 ? "|option|" : "|flag|";
                EXPECT_THAT(lines, Contains(StartsWith(path + kind + "--" + name + "|")));
            }
        }
    });
}

TEST(CompletionTable, TellsWhatAValueCanBe)
{
    const auto lines = tableLines();
    for (const char* line : {"sessions|option|--sort|=title,date,duration,value|",
             "completion|place|1|=bash,zsh,fish|", "start|place|1|client|",
             "start|place|2|project|", "export|place|1|file|", "client add|option|--logo|file|",
             "|option|--data-directory|directory|", "rename|place|1||", "|option|--at||"}) {
        EXPECT_THAT(lines, Contains(StartsWith(line)));
    }
}

TEST(CompletionTable, HasFiveFieldsInEveryLine)
{
    for (const std::string& line : tableLines()) {
        EXPECT_EQ(std::ranges::count(line, '|'), 4) << line;
    }
}

TEST(CompletionScript, QuotesTheTableForItsShell)
{
    CLI::App program("", "kestryctl");
    program.set_help_flag();
    addFlag(&program, "--yes", "Don't \\ask|or\nwait");
    EXPECT_THAT(completionScript(program, Shell::bash),
        HasSubstr("_kestryctl_table='|flag|--yes||Don'\\''t \\ask/or wait'\n"));
    EXPECT_THAT(completionScript(program, Shell::zsh),
        HasSubstr("_kestryctl_table='|flag|--yes||Don'\\''t \\ask/or wait'\n"));
    EXPECT_THAT(completionScript(program, Shell::fish),
        HasSubstr("'|flag|--yes||Don\\'t \\\\ask/or wait')\n"));
}

} // namespace
} // namespace Kestry
