#pragma once

#include <functional>
#include <string>

namespace Kestry {

/// The desktops that this process can use.
struct Desktops {
    bool hasX11 = false;
    bool hasWayland = false;
    /// Whether panels can be above all windows of the Wayland compositor. Called only when needed.
    std::function<bool()> hasLayers;
};

/// Returns the toolkit's names of the platforms to try, the best first; empty to let the toolkit
/// choose.
[[nodiscard]] std::string platformFor(const Desktops& desktops);

/// Chooses the platform of this run, unless the user has. Call it before the application object is
/// created.
void choosePlatform();

} // namespace Kestry
