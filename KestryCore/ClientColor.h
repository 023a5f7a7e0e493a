#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "HexColor.h"

/// The colour that a client is marked with: chosen by the user, never derived from the name.
namespace KestryCore::ClientColor {

/// The colour of a client for which none was chosen.
inline constexpr std::string_view initialHex = "A2A5AA";

/// The form in which the ledger stores a colour; nullopt when the text is not a colour.
[[nodiscard]] inline std::optional<std::string> normalise(std::string_view text)
{
    return normalisedHexColor(text);
}

} // namespace KestryCore::ClientColor
