#include "WaylandLayerShell.h"

#include <QGuiApplication>

#include <algorithm>
#include <cstring>
#include <utility>

#include <qpa/qplatformnativeinterface.h>
#include <wayland-client-protocol.h>

#include "LayerShellProtocol.h"

namespace Kestry {
namespace {

namespace Protocol = LayerShellProtocol;

/// Where the compositor has its layer shell among all that it offers; version 0 without one.
struct Offer {
    std::uint32_t name = 0;
    std::uint32_t version = 0;
};

const wl_registry_listener registryListener{
    [](void* data, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
        if (std::strcmp(interface, Protocol::shellInterface.name) == 0) {
            *static_cast<Offer*>(data) = {name, version};
        }
    },
    [](void*, wl_registry*, std::uint32_t) {}};

using Registry = std::unique_ptr<wl_registry, decltype(&wl_registry_destroy)>;

std::pair<Registry, Offer> findOffer(wl_display* display)
{
    Registry registry(wl_display_get_registry(display), &wl_registry_destroy);
    Offer offer;
    wl_registry_add_listener(registry.get(), &registryListener, &offer);
    wl_display_roundtrip(display);
    return {std::move(registry), offer};
}

wl_display* toolkitDisplay()
{
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    const bool isWayland = QGuiApplication::platformName().startsWith("wayland");
    return isWayland && native
        ? static_cast<wl_display*>(native->nativeResourceForIntegration("wl_display"))
        : nullptr;
}

const Protocol::SurfaceListener surfaceListener{
    [](void*, wl_proxy* layer, std::uint32_t serial, std::uint32_t, std::uint32_t) {
        Protocol::acknowledge(layer, serial);
    },
    [](void* isClosed, wl_proxy*) { *static_cast<bool*>(isClosed) = true; }};

} // namespace

bool compositorHasLayers()
{
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
        wl_display_connect(nullptr), &wl_display_disconnect);
    return display && findOffer(display.get()).second.version > 0;
}

void WaylandLayerShell::prepare()
{
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
}

std::unique_ptr<WaylandLayerShell> WaylandLayerShell::connect()
{
    wl_display* display = toolkitDisplay();
    if (!display) {
        return nullptr;
    }
    const auto [registry, offer] = findOffer(display);
    if (offer.version == 0) {
        return nullptr;
    }
    const auto version =
        std::min(offer.version, static_cast<std::uint32_t>(Protocol::shellInterface.version));
    auto* shell = static_cast<wl_proxy*>(
        wl_registry_bind(registry.get(), offer.name, &Protocol::shellInterface, version));
    return std::unique_ptr<WaylandLayerShell>(new WaylandLayerShell(shell));
}

WaylandLayerShell::~WaylandLayerShell()
{
    for (const auto& [window, surface] : surfaces_) {
        Protocol::destroy(surface.layer);
    }
    wl_proxy_destroy(shell_);
}

void WaylandLayerShell::create(QWindow& window)
{
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    window.create();
    Surface& made = surfaces_[&window];
    made.screen = window.screen();
    made.surface = static_cast<wl_proxy*>(native->nativeResourceForWindow("surface", &window));
    auto* output =
        static_cast<wl_proxy*>(native->nativeResourceForScreen("output", window.screen()));
    made.layer = Protocol::layerSurface(
        shell_, made.surface, output, Protocol::Layer::overlay, "org.kestry.Kestry");
    Protocol::listen(made.layer, surfaceListener, &made.isClosed);
    Protocol::setAnchor(made.layer, Protocol::anchorTop | Protocol::anchorLeft);
    window.setMask(window.mask());
}

void WaylandLayerShell::place(const Surface& surface, const QRect& place)
{
    const QPoint corner = place.topLeft() - surface.screen->geometry().topLeft();
    Protocol::setSize(surface.layer, static_cast<std::uint32_t>(place.width()),
        static_cast<std::uint32_t>(place.height()));
    Protocol::setMargins(surface.layer, corner.y(), corner.x());
    Protocol::commit(surface.surface);
}

void WaylandLayerShell::show(QWindow& window, const QRect& place)
{
    if (const auto shown = surfaces_.find(&window); shown != surfaces_.end()) {
        if (!shown->second.isClosed && shown->second.screen == window.screen()) {
            WaylandLayerShell::place(shown->second, place);
            return;
        }
        hide(window); // a layer belongs to one screen for good
    }
    create(window);
    WaylandLayerShell::place(surfaces_.at(&window), place);
    wl_display_roundtrip(toolkitDisplay()); // nothing may be drawn before the first configure
    window.show();
}

void WaylandLayerShell::hide(QWindow& window)
{
    const auto shown = surfaces_.find(&window);
    if (shown == surfaces_.end()) {
        return;
    }
    Protocol::destroy(shown->second.layer);
    surfaces_.erase(shown);
    // The toolkit keeps no surface of a window out of sight; the next one needs a layer anew.
    window.destroy();
}

void WaylandLayerShell::limitInput(QWindow& window, QSize size)
{
    window.setMask(QRect({}, size));
}

void WaylandLayerShell::setKeyboard(const QWindow& window, bool wanted)
{
    if (const auto shown = surfaces_.find(&window); shown != surfaces_.end()) {
        Protocol::setKeyboard(
            shown->second.layer, wanted ? Protocol::Keyboard::exclusive : Protocol::Keyboard::none);
        Protocol::commit(shown->second.surface);
    }
}

} // namespace Kestry
