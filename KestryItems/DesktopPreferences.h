#pragma once

#include "Observable.h"

namespace Kestry {

/// What the user has asked of the whole desktop, followed while the program runs. Assigned only
/// by whoever reads the desktop's settings (`DesktopSettings`, or a test).
class DesktopPreferences {
public:
    /// Nothing on the screen is to move.
    [[nodiscard]] const KestryCore::Observable<bool>& reducesMotion() const
    {
        return reducesMotion_;
    }
    /// Nothing is to shine through a surface.
    [[nodiscard]] const KestryCore::Observable<bool>& reducesTransparency() const
    {
        return reducesTransparency_;
    }

    /// Each tells the observers only when the value is another.
    void setReducesMotion(bool reduces) { change(reducesMotion_, reduces); }
    void setReducesTransparency(bool reduces) { change(reducesTransparency_, reduces); }

private:
    static void change(KestryCore::Observable<bool>& preference, bool value)
    {
        if (*preference != value) {
            preference.assign(value);
        }
    }

    KestryCore::Observable<bool> reducesMotion_{false};
    KestryCore::Observable<bool> reducesTransparency_{false};
};

} // namespace Kestry
