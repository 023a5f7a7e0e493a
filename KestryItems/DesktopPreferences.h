#pragma once

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

    // All notify observers only when the value changes.
    void setReducesMotion(bool reduces) { change(reducesMotion_, reduces); }
    void setReducesTransparency(bool reduces) { change(reducesTransparency_, reduces); }
    void setIncreasesContrast(bool increases) { change(increasesContrast_, increases); }

private:
    static void change(KestryCore::Observable<bool>& preference, bool value)
    {
        if (*preference != value) {
            preference.assign(value);
        }
    }

    KestryCore::Observable<bool> reducesMotion_{false};
    KestryCore::Observable<bool> reducesTransparency_{false};
    KestryCore::Observable<bool> increasesContrast_{false};
};

} // namespace Kestry
