#include "WaylandLayerShell.h"

#include <QGuiApplication>

#include <algorithm>
#include <cstring>
#include <utility>

#include <qpa/qplatformnativeinterface.h>
#include <qpa/qplatformscreen.h>
#include <wayland-client-protocol.h>

#include "LayerShellProtocol.h"

namespace Kestry {
namespace {

namespace Protocol = LayerShellProtocol;

/// Where the compositor has something among all that it offers; version 0 without it.
struct Offer {
    std::uint32_t name = 0;
    std::uint32_t version = 0;
};

struct Offers {
    Offer layerShell;
    Offer subcompositor;
};

const wl_registry_listener registryListener{
    [](void* data, wl_registry*, std::uint32_t name, const char* interface, std::uint32_t version) {
        auto& offers = *static_cast<Offers*>(data);
        if (std::strcmp(interface, Protocol::shellName) == 0) {
            offers.layerShell = {name, version};
        } else if (std::strcmp(interface, wl_subcompositor_interface.name) == 0) {
            offers.subcompositor = {name, version};
        }
    },
    [](void*, wl_registry*, std::uint32_t) {}};

using Registry = std::unique_ptr<wl_registry, decltype(&wl_registry_destroy)>;

std::pair<Registry, Offers> findOffers(wl_display* display)
{
    Registry registry(wl_display_get_registry(display), &wl_registry_destroy);
    Offers offers;
    wl_registry_add_listener(registry.get(), &registryListener, &offers);
    wl_display_roundtrip(display);
    return {std::move(registry), offers};
}

wl_proxy* bind(wl_registry* registry, Offer offer, const wl_interface& interface)
{
    const auto version = std::min(offer.version, static_cast<std::uint32_t>(interface.version));
    return static_cast<wl_proxy*>(wl_registry_bind(registry, offer.name, &interface, version));
}

wl_proxy* surfaceOf(QWindow& window)
{
    window.create();
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    return static_cast<wl_proxy*>(native->nativeResourceForWindow("surface", &window));
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
    return display && findOffers(display.get()).second.layerShell.version > 0;
}

void WaylandLayerShell::prepare()
{
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    // The toolkit takes all windows to be at the upper left, where no menu would find its place.
    qputenv("QT_WAYLAND_DISABLE_FIXED_POSITIONS", "1");
}

std::unique_ptr<WaylandLayerShell> WaylandLayerShell::connect()
{
    wl_display* display = toolkitDisplay();
    if (!display) {
        return nullptr;
    }
    const auto [registry, offers] = findOffers(display);
    if (offers.layerShell.version == 0 || offers.subcompositor.version == 0) {
        return nullptr;
    }
    return std::unique_ptr<WaylandLayerShell>(new WaylandLayerShell(display,
        bind(registry.get(), offers.layerShell, Protocol::shellInterface()),
        bind(registry.get(), offers.subcompositor, wl_subcompositor_interface)));
}

WaylandLayerShell::WaylandLayerShell(wl_display* display, wl_proxy* shell, wl_proxy* subcompositor)
    : shell_(shell), subcompositor_(subcompositor),
      keyboard_(display,
          {.entered = [this](const wl_proxy* surface) { keyboardEntered(surface); },
              .left = [this](const wl_proxy* surface) { keyboardLeft(surface); }})
{
}

WaylandLayerShell::~WaylandLayerShell()
{
    for (const auto& [window, surface] : surfaces_) {
        Protocol::destroy(surface.layer);
    }
    wl_proxy_destroy(shell_);
    wl_subcompositor_destroy(reinterpret_cast<wl_subcompositor*>(subcompositor_));
}

void WaylandLayerShell::create(QWindow& window, Protocol::Layer layer)
{
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    Surface& made = surfaces_[&window];
    made.surface = surfaceOf(window);
    made.screen = window.screen();
    made.scale = made.screen->devicePixelRatio();
    auto* output =
        static_cast<wl_proxy*>(native->nativeResourceForScreen("output", window.screen()));
    made.layer = Protocol::layerSurface(shell_, made.surface, output, layer, "org.kestry.Kestry");
    Protocol::listen(made.layer, surfaceListener, &made.isClosed);
    Protocol::setAnchor(made.layer, Protocol::anchorTop | Protocol::anchorLeft);
    window.setMask(window.mask());
}

bool WaylandLayerShell::isCurrent(const Surface& surface, const QWindow& window)
{
    // A layer belongs to one screen for good, and the toolkit draws in the scale of the beginning.
    return !surface.isClosed && surface.screen == window.screen()
        && surface.scale == window.screen()->devicePixelRatio();
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
    show(window, place, Protocol::Layer::overlay);
}

void WaylandLayerShell::showBelowPanels(QWindow& window, const QRect& place)
{
    show(window, place, Protocol::Layer::top);
}

void WaylandLayerShell::show(QWindow& window, const QRect& place, Protocol::Layer layer)
{
    if (const auto shown = surfaces_.find(&window); shown != surfaces_.end()) {
        if (isCurrent(shown->second, window)) {
            WaylandLayerShell::place(shown->second, place);
            return;
        }
        hide(window);
    }
    if (window.screen()->handle()->isPlaceholder()) {
        return; // which has no output to stand on
    }
    create(window, layer);
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

void WaylandLayerShell::attach(
    QWindow& window, const QWindow& parent, QPoint parentPlace, QPoint place)
{
    const auto shown = surfaces_.find(&parent);
    if (shown == surfaces_.end()) {
        return;
    }
    wl_subsurface* part =
        wl_subcompositor_get_subsurface(reinterpret_cast<wl_subcompositor*>(subcompositor_),
            reinterpret_cast<wl_surface*>(surfaceOf(window)),
            reinterpret_cast<wl_surface*>(shown->second.surface));
    wl_subsurface_set_desync(part); // it draws when it likes
    attached_[&window] = {reinterpret_cast<wl_proxy*>(part), &parent, parentPlace};
    moveAttached(window, place);
}

void WaylandLayerShell::moveAttached(const QWindow& window, QPoint place)
{
    const auto found = attached_.find(&window);
    if (found == attached_.end()) {
        return;
    }
    const Part& part = found->second;
    const QPoint offset = place - part.parentPlace;
    wl_subsurface_set_position(
        reinterpret_cast<wl_subsurface*>(part.subsurface), offset.x(), offset.y());
    // The place is part of the parent's state.
    if (const auto parent = surfaces_.find(part.parent); parent != surfaces_.end()) {
        Protocol::commit(parent->second.surface);
    }
}

void WaylandLayerShell::detach(const QWindow& window)
{
    if (const auto part = attached_.find(&window); part != attached_.end()) {
        wl_subsurface_destroy(reinterpret_cast<wl_subsurface*>(part->second.subsurface));
        attached_.erase(part);
    }
}

void WaylandLayerShell::limitInput(QWindow& window, QSize size)
{
    window.setMask(QRect({}, size));
}

// Exclusive is the only way to have the keyboard without one more click. Once it is here it is held
// on demand, so that the next window that is turned to gets it.

void WaylandLayerShell::setKeyboard(const QWindow& window, bool wanted)
{
    const auto shown = surfaces_.find(&window);
    if (shown == surfaces_.end() || (shown->second.keys != Keys::none) == wanted) {
        return;
    }
    shown->second.keys = wanted ? Keys::asked : Keys::none;
    ask(shown->second, wanted ? Protocol::Keyboard::exclusive : Protocol::Keyboard::none);
}

void WaylandLayerShell::ask(const Surface& surface, Protocol::Keyboard keyboard)
{
    Protocol::setKeyboard(surface.layer, keyboard);
    Protocol::commit(surface.surface);
}

std::map<const QWindow*, WaylandLayerShell::Surface>::iterator WaylandLayerShell::find(
    const wl_proxy* surface)
{
    return std::ranges::find_if(
        surfaces_, [surface](const auto& each) { return each.second.surface == surface; });
}

void WaylandLayerShell::keyboardEntered(const wl_proxy* surface)
{
    const auto shown = find(surface);
    if (shown == surfaces_.end() || shown->second.keys != Keys::asked) {
        return;
    }
    shown->second.keys = Keys::held;
    if (wl_proxy_get_version(shown->second.layer) >= Protocol::onDemandVersion) {
        ask(shown->second, Protocol::Keyboard::onDemand);
    }
}

void WaylandLayerShell::keyboardLeft(const wl_proxy* surface)
{
    // What is lost before it has come was asked for earlier, and given up since.
    const auto shown = find(surface);
    if (shown == surfaces_.end() || shown->second.keys != Keys::held) {
        return;
    }
    // Some compositors would give it back to the layer at once.
    shown->second.keys = Keys::none;
    ask(shown->second, Protocol::Keyboard::none);
    if (keyboardLost_) {
        keyboardLost_(*shown->first);
    }
}

} // namespace Kestry
