#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// The accent colour of the user's choice, made legible. The colour as chosen is never drawn: each
/// theme has its own variant, which stands out against that theme's backgrounds. All colours are
/// six hexadecimal digits.
namespace KestryCore::AccentPalette {

enum class Theme { light, dark };

struct Preset {
    std::string_view name;
    std::string_view hex;
};

/// In the order in which they are offered; the first is the default.
inline constexpr std::array presets{Preset{"Kestry", "CBDDA5"}, Preset{"Violet", "A879FF"},
    Preset{"Blue", "48A7FF"}, Preset{"Coral", "FF785A"}, Preset{"Teal", "19D8B4"}};

inline constexpr std::string_view defaultHex = presets.front().hex;

/// What an adapted accent stands out against, at least this much.
inline constexpr double leastContrast = 4.5;
inline constexpr std::array<std::string_view, 2> lightBackgrounds{"F7F8FA", "FFFFFF"};
inline constexpr std::array<std::string_view, 2> darkBackgrounds{"101112", "1B1D1F"};

/// Upper case without "#"; none unless the text is a "#" or nothing, then six hexadecimal digits,
/// with any blanks around.
[[nodiscard]] std::optional<std::string> normalise(std::string_view text);

/// The colour nearest to the given one, on the way to white or to black, that has `leastContrast`
/// against all backgrounds of the theme; the given one, normalised, where it has that itself. What
/// is no colour counts as the default.
[[nodiscard]] std::string adapted(std::string_view hex, Theme theme);

/// How much two colours differ in brightness: 1 for not at all, 21 for black and white. What is no
/// colour counts as black.
[[nodiscard]] double contrast(std::string_view left, std::string_view right);

/// The colour of text on a fill: "000000" or "FFFFFF", whichever has more contrast, black if both
/// have the same. On what is no colour it is white.
[[nodiscard]] std::string onAccent(std::string_view hex);

} // namespace KestryCore::AccentPalette
