#include "CommandHelp.h"

#include <sstream>

#include "PlainText.h"

namespace Kestry {

namespace {

bool takesValue(const CLI::Option* option)
{
    return option->get_expected_max() > 0;
}

/// An option as it is typed: "--rate RATE".
std::string spelling(const CLI::Option* option)
{
    if (option->get_positional()) {
        return option->get_type_name();
    }
    const std::string name = option->get_name(false, true);
    const std::size_t comma = name.find(',');
    const std::string spaced =
        comma == std::string::npos ? name : name.substr(0, comma) + ", " + name.substr(comma + 1);
    return takesValue(option) ? spaced + " " + option->get_type_name() : spaced;
}

std::string usage(const CLI::App& command)
{
    std::string path = command.get_name();
    for (const CLI::App* parent = command.get_parent(); parent != nullptr;
         parent = parent->get_parent()) {
        path = parent->get_name() + " " + path;
    }
    std::string words = "Usage: " + path;
    bool hasOptions = command.get_parent() == nullptr;
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional()) {
            words += " " + option->get_type_name();
        } else {
            hasOptions = true;
        }
    }
    if (!command.get_subcommands([](const CLI::App*) { return true; }).empty()) {
        words += " COMMAND";
    }
    return words + (hasOptions ? " [OPTIONS]" : "") + "\n";
}

std::string section(const char* heading, const TextTable& table)
{
    const std::string rows = table.text(false);
    return rows.empty() ? "" : std::string("\n") + heading + ":\n" + rows;
}

template <class Chosen>
TextTable optionRows(const CLI::App& command, Chosen chosen)
{
    TextTable table;
    for (const CLI::Option* option : command.get_options()) {
        if (chosen(option)) {
            table.add({{"  " + spelling(option)}, {option->get_description()}});
        }
    }
    return table;
}

TextTable commandRows(const CLI::App& command)
{
    TextTable table;
    for (const CLI::App* child : command.get_subcommands([](const CLI::App*) { return true; })) {
        table.add({{"  " + child->get_name()}, {child->get_description()}});
    }
    return table;
}

std::string examples(const CLI::App& command)
{
    std::istringstream lines(command.get_footer());
    std::string result = "\nExample:\n";
    for (std::string line; std::getline(lines, line);) {
        result += "  " + line + "\n";
    }
    return result;
}

} // namespace

std::string helpText(const CLI::App& command)
{
    const auto isWord = [](const CLI::Option* option) { return option->get_positional(); };
    const auto isOption = [](const CLI::Option* option) { return !option->get_positional(); };
    std::string text = command.get_description();
    if (!text.ends_with('.')) {
        text += '.';
    }
    text += "\n\n" + usage(command) + section("Commands", commandRows(command))
        + section("Arguments", optionRows(command, isWord))
        + section("Options", optionRows(command, isOption));
    const CLI::App* root = &command;
    while (root->get_parent() != nullptr) {
        root = root->get_parent();
    }
    if (root != &command) {
        text += section("Options of every command", optionRows(*root, isOption));
    }
    return text + examples(command);
}

} // namespace Kestry
