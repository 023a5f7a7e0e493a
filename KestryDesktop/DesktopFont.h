#pragma once

#include <QString>

#include <optional>
#include <string>

namespace Kestry {

/// The font that a desktop draws its interface in.
struct DesktopFont {
    std::string family;
    double points = 0.0; ///< 0 when it is not told.

    friend bool operator==(const DesktopFont&, const DesktopFont&) = default;
};

/// Reads a font as GTK writes it: "Cantarell Bold 11". Returns nullopt when no family is named.
[[nodiscard]] std::optional<DesktopFont> gtkFont(const QString& description);
/// Reads a font as KDE writes it: "Noto Sans,10,-1,5,50,0,0,0,0,0". Returns nullopt when no family
/// is named.
[[nodiscard]] std::optional<DesktopFont> kdeFont(const QString& description);

} // namespace Kestry
