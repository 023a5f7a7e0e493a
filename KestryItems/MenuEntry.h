#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Kestry {

/// One line of a menu, as plain values.
struct MenuEntry {
    enum class Kind { command, separator, heading };

    Kind kind = Kind::command;
    std::string text{};
    std::string symbol{};   ///< Name of one of the program's symbols; empty for none.
    std::string colorHex{}; ///< Of a dot in place of the symbol, as "B7A5FF"; empty for none.
    std::string shortcut{}; ///< As "Ctrl+N"; empty for none.
    bool isEnabled = true;
    std::optional<bool> isChosen{}; ///< Whether it is checked; nullopt when it cannot be.
    std::function<void()> action{};
    std::vector<MenuEntry> entries{}; ///< Of its submenu; empty for all others.

    [[nodiscard]] static MenuEntry separator() { return {.kind = Kind::separator}; }
    [[nodiscard]] static MenuEntry heading(std::string text)
    {
        return {.kind = Kind::heading, .text = std::move(text)};
    }
};

using Menu = std::vector<MenuEntry>;

} // namespace Kestry
