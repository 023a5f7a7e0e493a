#include "CommandHelp.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>
#include <vector>

#include "CommandSyntax.h"
#include "PlainText.h"

namespace Kestry {
namespace {

/// Every command and group, the program itself included.
void collect(const CLI::App& command, std::vector<const CLI::App*>& into)
{
    into.push_back(&command);
    for (const CLI::App* child : command.get_subcommands([](const CLI::App*) { return true; })) {
        collect(*child, into);
    }
}

std::vector<std::string> lines(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> result;
    for (std::string line; std::getline(stream, line);) {
        result.push_back(line);
    }
    return result;
}

class Help : public testing::Test {
protected:
    Help() { collect(syntax_.root(), commands_); }

    CommandSyntax syntax_;
    std::vector<const CLI::App*> commands_;
};

TEST_F(Help, ShowsEveryCommandItsUsageAndAnExampleOfItself)
{
    for (const CLI::App* command : commands_) {
        const std::string text = helpText(*command);
        EXPECT_THAT(text, testing::HasSubstr("\n\nUsage: kestryctl")) << command->get_name();
        const std::size_t example = text.find("\nExample:\n  kestryctl ");
        ASSERT_NE(example, std::string::npos) << command->get_name();
        if (command != commands_.front()) {
            EXPECT_NE(text.find(" " + command->get_name(), example), std::string::npos)
                << command->get_name();
        }
    }
}

TEST_F(Help, ExplainsEveryWordAndOption)
{
    for (const CLI::App* command : commands_) {
        for (const CLI::Option* option : command->get_options()) {
            EXPECT_FALSE(option->get_description().empty())
                << command->get_name() << " " << option->get_name(true, true);
        }
    }
}

TEST_F(Help, FitsATerminalAndEndsNoLineInBlanks)
{
    for (const CLI::App* command : commands_) {
        for (const std::string& line : lines(helpText(*command))) {
            EXPECT_LE(columnWidth(line), 80U) << line;
            EXPECT_FALSE(line.ends_with(' ')) << line;
        }
    }
}

TEST_F(Help, AlignsTheDescriptionsOfOptions)
{
    const std::string text = helpText(syntax_.root());
    const auto all = lines(text);
    const auto column = [&](const std::string& option, const std::string& description) {
        const auto line = std::ranges::find_if(
            all, [&](const std::string& found) { return found.starts_with("  " + option + " "); });
        return line != all.end() ? line->find(description) : std::string::npos;
    };
    EXPECT_EQ(column("--json", "Print"), column("--data-directory", "The ledger"));
    EXPECT_EQ(column("-h, --help", "Explain"), column("--version", "Print the version"));
}

} // namespace
} // namespace Kestry
