#pragma once

#include <string>
#include <string_view>

#include "Observable.h"
#include "UserDefaults.h"

namespace Kestry {

/// The theme of the workspace window. The panels are always dark.
enum class AppearanceMode { light, dark };

/// The mode's value as text, "Light" or "Dark": what is shown, and what is stored.
[[nodiscard]] std::string_view rawValue(AppearanceMode mode);

/// The theme and the accent colour of the user's choice. One for the whole run.
class AppearanceSettings {
public:
    /// Reads both from the defaults, which must outlive the settings. Unless the user chose light
    /// the mode is dark; what is no colour gives way to the palette's own.
    explicit AppearanceSettings(UserDefaults& defaults);

    [[nodiscard]] const KestryCore::Observable<AppearanceMode>& mode() const { return mode_; }
    /// As chosen, in its one form.
    [[nodiscard]] const KestryCore::Observable<std::string>& accentHex() const
    {
        return accentHex_;
    }
    /// What the light theme draws.
    [[nodiscard]] const std::string& lightAccentHex() const { return lightAccentHex_; }
    /// What the dark theme and the panels draw.
    [[nodiscard]] const std::string& darkAccentHex() const { return darkAccentHex_; }

    /// Publish the value and store it at once.
    void setMode(AppearanceMode mode);
    /// Also derives both variants, before anybody is told. False, and nothing changed, when the
    /// text is no colour.
    bool setAccentHex(std::string_view text);

private:
    UserDefaults& defaults_;
    KestryCore::Observable<AppearanceMode> mode_;
    KestryCore::Observable<std::string> accentHex_;
    std::string lightAccentHex_;
    std::string darkAccentHex_;
};

} // namespace Kestry
