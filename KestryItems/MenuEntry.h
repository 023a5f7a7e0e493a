#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Kestry {

/// One line of a menu as its rules decide it, before any window shows it.
struct MenuEntry {
    enum class Kind { command, separator, heading };

    Kind kind = Kind::command;
    std::string text{};
    std::string symbol{};   ///< Name of the program's symbol beside it; empty without.
    std::string shortcut{}; ///< As "Ctrl+N"; empty without.
    bool isEnabled = true;
    std::optional<bool> isChosen{}; ///< None: not one of several to choose from.
    std::function<void()> action{};
    std::vector<MenuEntry> entries{}; ///< Of the menu that it opens; empty for all others.

    [[nodiscard]] static MenuEntry separator() { return {.kind = Kind::separator}; }
    [[nodiscard]] static MenuEntry heading(std::string text)
    {
        return {.kind = Kind::heading, .text = std::move(text)};
    }
};

using Menu = std::vector<MenuEntry>;

} // namespace Kestry
