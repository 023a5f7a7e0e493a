#pragma once

#include <string>
#include <string_view>

#include "Observable.h"
#include "UserDefaults.h"

namespace Kestry {

/// The theme of the workspace window. The panels are always dark.
enum class AppearanceMode { light, dark };

/// The mode as text, "Light" or "Dark", as it is shown and stored.
[[nodiscard]] std::string_view rawValue(AppearanceMode mode);

/// The theme and the accent colour that the user has chosen. One object for the whole run.
class AppearanceSettings {
public:
    /// Reads both from the defaults, which must outlive the settings. The mode is dark unless the
    /// user chose light; an invalid colour is replaced by the palette's default.
    explicit AppearanceSettings(UserDefaults& defaults);

    [[nodiscard]] const KestryCore::Observable<AppearanceMode>& mode() const { return mode_; }
    /// The accent as chosen: six hexadecimal digits in upper case.
    [[nodiscard]] const KestryCore::Observable<std::string>& accentHex() const
    {
        return accentHex_;
    }
    /// The accent as the light theme draws it.
    [[nodiscard]] const std::string& lightAccentHex() const { return lightAccentHex_; }
    /// The accent as the dark theme and the panels draw it.
    [[nodiscard]] const std::string& darkAccentHex() const { return darkAccentHex_; }

    /// Publishes the mode and stores it at once.
    void setMode(AppearanceMode mode);
    /// Derives both variants, publishes the accent and stores it at once. Returns false, and
    /// changes nothing, when the text is not a colour.
    bool setAccentHex(std::string_view text);

private:
    UserDefaults& defaults_;
    KestryCore::Observable<AppearanceMode> mode_;
    KestryCore::Observable<std::string> accentHex_;
    std::string lightAccentHex_;
    std::string darkAccentHex_;
};

} // namespace Kestry
