#pragma once

#include <functional>
#include <string>

namespace Kestry {

/// What there is to be on.
struct Desktops {
    bool hasX11 = false;
    bool hasWayland = false;
    /// Whether the Wayland compositor lets panels stand above all windows. Asked only when it
    /// matters.
    std::function<bool()> hasLayers;
};

/// The toolkit's names of the platforms to try, the best first; empty leaves it to the toolkit.
[[nodiscard]] std::string platformFor(const Desktops& desktops);

/// Chooses the platform of this run, unless the user has. To be called before the application
/// object is made.
void choosePlatform();

} // namespace Kestry
