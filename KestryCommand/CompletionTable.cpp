#include "CompletionTable.h"

#include <algorithm>
#include <vector>

#include "CommandWords.h"

namespace Kestry {

namespace {

/// What can be offered for a value, by its name in the help.
std::string offeredValue(const CLI::Option* option)
{
    std::string choices;
    for (const std::string& choice : choicesOf(option)) {
        choices += (choices.empty() ? "=" : ",") + choice;
    }
    if (!choices.empty()) {
        return choices;
    }
    std::string shape = option->get_type_name();
    std::erase_if(shape, [](char letter) { return letter == '[' || letter == ']'; });
    if (shape == "CLIENT") {
        return "client";
    }
    if (shape == "PROJECT") {
        return "project";
    }
    if (shape == "FILE") {
        return "file";
    }
    return shape == "PATH" ? "directory" : "";
}

class TableWriter {
public:
    void add(const std::string& at, const CLI::App& command)
    {
        int place = 0;
        for (const CLI::Option* option : command.get_options()) {
            if (option->get_positional()) {
                addLine({at, "place", std::to_string(++place), offeredValue(option),
                    option->get_description()});
            } else {
                addOption(at, option);
            }
        }
        for (const CLI::App* child :
            command.get_subcommands([](const CLI::App*) { return true; })) {
            addLine({at, "command", child->get_name(), "", child->get_description()});
            add(at.empty() ? child->get_name() : at + " " + child->get_name(), *child);
        }
    }

    [[nodiscard]] const std::string& text() const { return text_; }

private:
    void addOption(const std::string& at, const CLI::Option* option)
    {
        const bool takesValue = option->get_expected_max() > 0;
        std::vector<std::string> names;
        for (const std::string& name : option->get_snames()) {
            names.push_back("-" + name);
        }
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
        for (const std::string& name : names) {
            addLine({at, takesValue ? "option" : "flag", name,
                takesValue ? offeredValue(option) : "", option->get_description()});
        }
    }

    void addLine(std::vector<std::string> fields)
    {
        for (std::string& field : fields) {
            // The separators of fields and lines must not occur in a field.
            std::ranges::replace(field, '|', '/');
            std::ranges::replace(field, '\n', ' ');
            text_ += (&field == &fields.front() ? "" : "|") + field;
        }
        text_ += '\n';
    }

    std::string text_;
};

} // namespace

std::string completionTable(const CLI::App& root)
{
    TableWriter table;
    table.add("", root);
    return table.text();
}

} // namespace Kestry
