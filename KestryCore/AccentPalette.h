#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The accent colour of the user's choice, made legible. The chosen colour itself is never drawn:
/// each theme uses a variant that contrasts with that theme's backgrounds. All colours are six
/// hexadecimal digits.
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

/// The least contrast of an adapted accent with each background.
inline constexpr double leastContrast = 4.5;
inline constexpr std::array<std::string_view, 2> lightBackgrounds{"F7F8FA", "FFFFFF"};
inline constexpr std::array<std::string_view, 2> darkBackgrounds{"101112", "1B1D1F"};

/// The digits in upper case without "#". Nullopt unless the text is an optional "#" and six
/// hexadecimal digits, with any blanks around.
[[nodiscard]] std::optional<std::string> normalise(std::string_view text);

/// The colour nearest to `hex`, on the way to white or to black, that has `leastContrast` with all
/// backgrounds of the theme: `hex` itself, normalised, when it has that. The default colour is used
/// in place of a text that is not a colour.
[[nodiscard]] std::string adapted(std::string_view hex, Theme theme);

/// The same for any surfaces and any contrast, on the way to any colour: `target` itself when no
/// colour between has the contrast. The default colour is used in place of a text that is not a
/// colour.
[[nodiscard]] std::string legible(std::string_view hex, std::string_view target,
    const std::vector<std::string>& surfaces, double least = leastContrast);

/// The contrast of two colours: from 1 for equal brightness to 21 for black and white. A text that
/// is not a colour counts as black.
[[nodiscard]] double contrast(std::string_view left, std::string_view right);

/// The colour of text on a fill: "000000" or "FFFFFF", whichever has more contrast, black when both
/// have the same. White on a text that is not a colour.
[[nodiscard]] std::string onAccent(std::string_view hex);

} // namespace KestryCore::AccentPalette
