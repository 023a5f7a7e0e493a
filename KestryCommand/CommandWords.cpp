#include "CommandWords.h"

#include <algorithm>

#include "ClientColor.h"
#include "Durations.h"
#include "LedgerError.h"
#include "Months.h"
#include "Spelling.h"
#include "TextForms.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::Rate;

namespace {

/// Separates the choices of a value in the help.
constexpr char choiceSeparator = '|';

std::string nameOf(const CLI::Option* option)
{
    return option->get_positional() ? option->get_name(true) : option->get_name();
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

} // namespace

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

CLI::Option* addChoice(CLI::App* command, const std::string& name,
    const std::vector<std::string>& choices, const std::string& description)
{
    std::string shape;
    for (const std::string& choice : choices) {
        shape += (shape.empty() ? "" : std::string(1, choiceSeparator)) + choice;
    }
    return addValue(command, name, shape.c_str(), description);
}

std::vector<std::string> choicesOf(const CLI::Option* option)
{
    const std::string shape = option->get_type_name();
    return shape.find(choiceSeparator) != std::string::npos
        ? CLI::detail::split(shape, choiceSeparator)
        : std::vector<std::string>();
}

CLI::Option* addFlag(CLI::App* command, const std::string& name, const std::string& description)
{
    // "--yes=no" must not count as a yes.
    return command->add_flag(name, description)->disable_flag_override();
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

std::optional<std::size_t> givenChoice(const CLI::Option* option)
{
    const auto word = given(option);
    if (!word) {
        return std::nullopt;
    }
    const std::vector<std::string> choices = choicesOf(option);
    const auto found = std::ranges::find(choices, *word);
    if (found == choices.end()) {
        const auto near = KestryCore::nearestWord(*word, choices);
        throw UsageError(nameOf(option) + " can't be \"" + *word + "\"."
            + (near ? " Did you mean \"" + *near + "\"?"
                    : " It is " + alternatives(choices) + "."));
    }
    return static_cast<std::size_t>(found - choices.begin());
}

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
    const auto text = given(option);
    if (!text) {
        return std::nullopt;
    }
    auto color = KestryCore::ClientColor::normalise(*text);
    if (!color) {
        throw UsageError("--color needs six hexadecimal digits, as in A2A5AA.");
    }
    return color;
}

std::optional<KestryCore::CalendarDay> givenMonth(const CLI::Option* option)
{
    const auto text = given(option);
    return text ? std::optional(readMonth(*text)) : std::nullopt;
}

std::optional<double> givenDuration(const CLI::Option* option)
{
    const auto text = given(option);
    return text ? std::optional(readDuration(*text)) : std::nullopt;
}

std::string alternatives(const std::vector<std::string>& words)
{
    std::string list;
    for (std::size_t index = 0; index < words.size(); ++index) {
        list += (index == 0 ? "" : index + 1 == words.size() ? " or " : ", ") + words[index];
    }
    return list;
}

} // namespace Kestry
