#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Kestry {

/// Where at the top of which screen the user wants the strip.
struct PanelPlace {
    enum class Screen { primary, pointer, named };
    enum class Side { left, center, right };

    Screen screen = Screen::primary;
    std::string screenName{}; ///< Of a named screen, also while it is not there.
    Side side = Side::center;

    bool operator==(const PanelPlace&) const = default;
};

// The texts by which a place is stored.

[[nodiscard]] std::string screenText(const PanelPlace& place);
[[nodiscard]] std::string sideText(const PanelPlace& place);

/// The place that was stored. An absent or unknown text counts as the primary screen, and as the
/// center.
[[nodiscard]] PanelPlace panelPlaceFrom(
    const std::optional<std::string>& screen, const std::optional<std::string>& side);

} // namespace Kestry
