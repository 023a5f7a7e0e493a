#include "CommandParser.h"

#include <algorithm>

#include "CommandHelp.h"
#include "CommandSyntax.h"
#include "CommandWords.h"
#include "Spelling.h"
#include "Text.h"
#include "UsageError.h"

namespace Kestry {

namespace {

bool isOption(const std::string& word)
{
    return word.size() > 1 && word.starts_with('-');
}

std::string fullName(const CLI::App& command)
{
    const CLI::App* parent = command.get_parent();
    return parent == nullptr ? command.get_name() : fullName(*parent) + " " + command.get_name();
}

std::string helpHint(const CLI::App& command)
{
    return "\"" + fullName(command) + " --help\" tells more.";
}

std::vector<std::string> commandNames(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::App* child : command.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(child->get_name());
    }
    return names;
}

std::vector<std::string> optionNames(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::App* level = &command; level != nullptr; level = level->get_parent()) {
        for (const CLI::Option* option : level->get_options()) {
            if (!option->get_positional()) {
                names.push_back(option->get_name());
            }
        }
    }
    return names;
}

std::string didYouMean(const std::string& word, const std::vector<std::string>& names)
{
    const auto near = KestryCore::nearestWord(word, names);
    return near ? " Did you mean \"" + *near + "\"?" : "";
}

std::string unknownOption(const std::string& word, const CLI::App& command)
{
    const std::string name = word.substr(0, word.find('='));
    std::string hint = didYouMean(name, optionNames(command));
    if (hint.empty()) {
        hint = " Put -- before words that begin with a hyphen. " + helpHint(command);
    }
    return "There is no option \"" + name + "\" here." + hint;
}

std::string unknownWord(const std::string& word, const CLI::App& command)
{
    const std::vector<std::string> names = commandNames(command);
    std::string hint = didYouMean(word, names);
    if (hint.empty()) {
        hint = " " + helpHint(command);
    }
    return names.empty() ? "\"" + word + "\" is one word too many." + hint
                         : "There is no command \"" + word + "\"." + hint;
}

/// Throws a `UsageError` when there are words that no command accepts.
void requireNothingLeft(const CommandSyntax& syntax)
{
    std::vector<std::string> left = syntax.root().remaining(true);
    std::erase(left, "--");
    if (left.empty()) {
        return;
    }
    const auto option = std::ranges::find_if(left, isOption);
    throw UsageError(option != left.end() ? unknownOption(*option, syntax.chosen())
                                          : unknownWord(left.front(), syntax.chosen()));
}

void requireCommand(const CLI::App& chosen)
{
    const std::vector<std::string> names = commandNames(chosen);
    if (names.empty()) {
        return;
    }
    throw UsageError("Say what to do: " + alternatives(names) + ". " + helpHint(chosen));
}

void requireText(const std::vector<std::string>& arguments)
{
    for (const std::string& argument : arguments) {
        if (!KestryCore::isWellFormedUtf8(argument)) {
            throw UsageError("\"" + argument + "\" is not text in UTF-8.");
        }
    }
}

/// The refusal of an option with too few values or too many. The library's own words begin with
/// the option's name, without its hyphens where that takes no value.
std::string valueMismatch(const std::string& message)
{
    const std::string name = message.substr(0, message.find_first_of(": "));
    if (message.find("flag override") != std::string::npos) {
        return "--" + name + " takes no value.";
    }
    return name + " needs a value.";
}

/// The words as the library expects them: in reverse, and with an empty value after an equals sign
/// as a separate word, because otherwise the next word would become the value.
std::vector<std::string> libraryWords(const std::vector<std::string>& arguments)
{
    std::vector<std::string> words;
    bool hasOptions = true;
    for (const std::string& argument : arguments) {
        hasOptions = hasOptions && argument != "--";
        const bool isEmptyValue =
            hasOptions && argument.starts_with("--") && argument.find('=') + 1 == argument.size();
        if (isEmptyValue) {
            words.push_back(argument.substr(0, argument.size() - 1));
            words.emplace_back();
        } else {
            words.push_back(argument);
        }
    }
    std::ranges::reverse(words);
    return words;
}

void sortWords(CommandSyntax& syntax, const std::vector<std::string>& arguments)
{
    try {
        syntax.root().parse(libraryWords(arguments));
    } catch (const CLI::ArgumentMismatch& mismatch) {
        throw UsageError(valueMismatch(mismatch.what()) + " " + helpHint(syntax.chosen()));
    } catch (const CLI::ParseError& failure) {
        throw UsageError(std::string(failure.what()) + ". " + helpHint(syntax.chosen()));
    }
}

} // namespace

std::variant<CommandRequest, InformationText> parseCommandLine(
    const std::vector<std::string>& arguments)
{
    CommandSyntax syntax;
    return parseCommandLine(syntax, arguments);
}

std::variant<CommandRequest, InformationText> parseCommandLine(
    CommandSyntax& syntax, const std::vector<std::string>& arguments)
{
    requireText(arguments);
    sortWords(syntax, arguments);
    if (syntax.asksForHelp()) {
        return InformationText{helpText(syntax.chosen())};
    }
    if (syntax.asksForVersion()) {
        return InformationText{"kestryctl " KESTRY_VERSION "\n"};
    }
    requireNothingLeft(syntax);
    requireCommand(syntax.chosen());
    try {
        return CommandRequest{syntax.commonOptions(), syntax.command()};
    } catch (const UsageError& failure) {
        throw UsageError(std::string(failure.what()) + " " + helpHint(syntax.chosen()));
    }
}

bool asksForJson(const std::vector<std::string>& arguments)
{
    const auto end = std::ranges::find(arguments, "--");
    return std::find(arguments.begin(), end, "--json") != end;
}

} // namespace Kestry
