#include <gmock/gmock.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "CommandSyntax.h"

namespace Kestry {
namespace {

using testing::Contains;
using testing::HasSubstr;

/// The next line of the manual page, with those that continue it.
bool readLine(std::istream& page, std::string& line)
{
    if (!std::getline(page, line)) {
        return false;
    }
    for (std::string more; line.ends_with('\\') && std::getline(page, more);) {
        line.pop_back();
        line += more;
    }
    return true;
}

/// A line of the manual page without its fonts and escapes, and without the brackets around what
/// may be left out.
std::string plain(std::string line)
{
    line = std::regex_replace(line, std::regex(R"(\\f[BIRP])"), "");
    line = std::regex_replace(line, std::regex(R"(\\\(dq|[\[\]])"), "");
    return std::regex_replace(line, std::regex(R"(\\([-&]))"), "$1");
}

/// The paragraphs of the manual page that explain something, by their first lines.
std::map<std::string, std::string> entries()
{
    std::ifstream page(KESTRY_MANUAL);
    std::map<std::string, std::string> result;
    std::string* entry = nullptr;
    bool isTitle = false;
    for (std::string line; readLine(page, line);) {
        if (isTitle) {
            entry = &result[plain(line)];
        } else if (line.starts_with(".S")) {
            entry = nullptr;
        } else if (entry != nullptr) {
            *entry += plain(line) + "\n";
        }
        isTitle = line == ".TP";
    }
    return result;
}

/// Looks at every command that can be carried out, with the words that name it.
template <class Look>
void forEachCommand(const CLI::App& command, const std::string& name, Look look)
{
    const auto children = command.get_subcommands([](const CLI::App*) { return true; });
    for (const CLI::App* child : children) {
        forEachCommand(
            *child, name.empty() ? child->get_name() : name + " " + child->get_name(), look);
    }
    if (children.empty()) {
        look(command, name);
    }
}

/// The first line that the manual page should have for a command: its words and options.
std::string synopsis(const CLI::App& command, const std::string& name)
{
    std::string words = name;
    std::string options;
    for (const CLI::Option* option : command.get_options()) {
        const std::string shape = option->get_type_name();
        if (option->get_positional()) {
            words += " " + shape;
        } else {
            options += " [" + option->get_name()
                + (option->get_expected_max() > 0 ? " " + shape : "") + "]";
        }
    }
    return plain(words + options);
}

TEST(Manual, HasEveryCommandWithItsWordsAndOptions)
{
    const auto all = entries();
    const CommandSyntax syntax;
    forEachCommand(syntax.root(), "", [&](const CLI::App& command, const std::string& name) {
        EXPECT_THAT(all, Contains(testing::Key(synopsis(command, name))));
    });
}

TEST(Manual, ExplainsEveryOptionOfEveryCommandWhereItStands)
{
    const auto all = entries();
    const CommandSyntax syntax;
    forEachCommand(syntax.root(), "", [&](const CLI::App& command, const std::string& name) {
        const auto entry = all.find(synopsis(command, name));
        for (const CLI::Option* option : command.get_options()) {
            if (!option->get_positional() && entry != all.end()) {
                EXPECT_THAT(entry->second, HasSubstr(option->get_name())) << name;
            }
        }
    });
}

TEST(Manual, HasEveryOptionOfAllCommands)
{
    const auto all = entries();
    const CommandSyntax syntax;
    for (const CLI::Option* option : syntax.root().get_options()) {
        const std::string shape =
            option->get_expected_max() > 0 ? " " + option->get_type_name() : "";
        const std::string name = option->get_name(false, true);
        const std::string spaced = std::regex_replace(name, std::regex(","), ", ");
        EXPECT_THAT(all, Contains(testing::Key(spaced + shape)));
    }
}

TEST(Manual, NamesNoOptionThatThereIsNot)
{
    std::set<std::string> known;
    const CommandSyntax syntax;
    const auto note = [&](const CLI::App& command, const std::string&) {
        for (const CLI::Option* option : command.get_options()) {
            for (const std::string& name : option->get_lnames()) {
                known.insert("--" + name);
            }
        }
    };
    note(syntax.root(), "");
    forEachCommand(syntax.root(), "", note);
    std::ifstream page(KESTRY_MANUAL);
    for (std::string line; readLine(page, line);) {
        const std::string text = plain(line);
        const std::regex option("--[a-z][-a-z]*");
        for (std::sregex_iterator found(text.begin(), text.end(), option), end; found != end;
             ++found) {
            EXPECT_THAT(known, Contains(found->str()));
        }
    }
}

} // namespace
} // namespace Kestry
