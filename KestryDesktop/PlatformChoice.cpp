#include "PlatformChoice.h"

#include <QtGlobal>

#include "WaylandLayerShell.h"

namespace Kestry {

std::string platformFor(const Desktops& desktops)
{
    if (desktops.hasWayland && desktops.hasLayers()) {
        return desktops.hasX11 ? "wayland;xcb" : "wayland"; // the toolkit's plugin may be missing
    }
    // Panels above all windows exist on X11, and so on Wayland by way of its X server.
    if (desktops.hasX11) {
        return "xcb";
    }
    return desktops.hasWayland ? "wayland" : "";
}

void choosePlatform()
{
    WaylandLayerShell::prepare();
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        return;
    }
    const std::string platform = platformFor({qEnvironmentVariableIsSet("DISPLAY"),
        qEnvironmentVariableIsSet("WAYLAND_DISPLAY"), compositorHasLayers});
    if (!platform.empty()) {
        qputenv("QT_QPA_PLATFORM", platform.c_str());
    }
}

} // namespace Kestry
