#pragma once

#include <string>

#include "Observable.h"

namespace Kestry {

/// Desktop-wide preferences, kept current while the program runs. Set only by what reads the
/// desktop's settings (`DesktopSettings`, or a test).
class DesktopPreferences {
public:
    /// Whether nothing on the screen should move.
    [[nodiscard]] const KestryCore::Observable<bool>& reducesMotion() const
    {
        return reducesMotion_;
    }
    /// Whether surfaces should be opaque.
    [[nodiscard]] const KestryCore::Observable<bool>& reducesTransparency() const
    {
        return reducesTransparency_;
    }

    /// Whether all that is drawn should stand out more.
    [[nodiscard]] const KestryCore::Observable<bool>& increasesContrast() const
    {
        return increasesContrast_;
    }
    /// The family of the font that the desktop draws its interface in; empty when it names none.
    [[nodiscard]] const KestryCore::Observable<std::string>& fontFamily() const
    {
        return fontFamily_;
    }
    /// How much larger texts should be than they are by default.
    [[nodiscard]] const KestryCore::Observable<double>& textScale() const { return textScale_; }

    // All notify observers only when the value changes.
    void setReducesMotion(bool reduces) { change(reducesMotion_, reduces); }
    void setReducesTransparency(bool reduces) { change(reducesTransparency_, reduces); }
    void setIncreasesContrast(bool increases) { change(increasesContrast_, increases); }
    void setFontFamily(const std::string& family) { change(fontFamily_, family); }
    void setTextScale(double scale) { change(textScale_, scale); }

private:
    template <class Value>
    static void change(KestryCore::Observable<Value>& preference, const Value& value)
    {
        if (*preference != value) {
            preference.assign(value);
        }
    }

    KestryCore::Observable<bool> reducesMotion_{false};
    KestryCore::Observable<bool> reducesTransparency_{false};
    KestryCore::Observable<bool> increasesContrast_{false};
    KestryCore::Observable<std::string> fontFamily_{std::string()};
    KestryCore::Observable<double> textScale_{1.0};
};

} // namespace Kestry
