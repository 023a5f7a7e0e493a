#pragma once

#include <QScreen>
#include <QWindow>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "LayerShellProtocol.h"
#include "WaylandKeyboard.h"

namespace Kestry {

/// Puts windows into the layer above all others, on a Wayland compositor that has such layers.
/// There only the compositor knows where windows are; in a layer a window asks for a place at an
/// edge of the screen, and gets the keyboard only when it says so.
class WaylandLayerShell {
public:
    /// Null on any other platform, and where the compositor has no layers.
    [[nodiscard]] static std::unique_ptr<WaylandLayerShell> connect();

    WaylandLayerShell(const WaylandLayerShell&) = delete;
    WaylandLayerShell& operator=(const WaylandLayerShell&) = delete;
    ~WaylandLayerShell();

    /// To be called before the application object is made: windows that no window manager is to
    /// handle then get no role of their own, so that one can be given to them here.
    static void prepare();

    /// Shows a window at a place on the desktop, measured from the upper left of what other
    /// panels leave of its screen. Shown already it is moved there.
    void show(QWindow& window, const QRect& place);
    void hide(QWindow& window);

    /// Covers a screen between the windows and the overlay; takes presses that go past the panels.
    void showBelowPanels(QWindow& window, const QRect& place);
    /// Makes a window that the toolkit is about to show a part of one that stands in a layer,
    /// above its content and free to reach beyond its edges.
    void attach(QWindow& window, const QWindow& parent, QPoint offset);
    /// Undoes that; to be done while the window still has its surface.
    void detach(const QWindow& window);
    [[nodiscard]] bool isShown(const QWindow& window) const { return surfaces_.contains(&window); }
    /// Lets the mouse through, but for a rectangle at the upper left.
    static void limitInput(QWindow& window, QSize size);

    /// Gives a window that is shown the keyboard, or takes it away.
    void setKeyboard(const QWindow& window, bool wanted);
    /// Told when a window that has been given the keyboard has lost it to another. The keyboard is
    /// then the other's, whatever the compositor would still send here.
    void setKeyboardLost(std::function<void(const QWindow&)> keyboardLost)
    {
        keyboardLost_ = std::move(keyboardLost);
    }

private:
    enum class Keys { none, asked, held };

    struct Surface {
        wl_proxy* surface = nullptr;
        wl_proxy* layer = nullptr;
        const QScreen* screen = nullptr;
        double scale = 1.0;    ///< Of the screen, when the surface was made.
        bool isClosed = false; ///< By the compositor, as when its screen goes.
        Keys keys = Keys::none;
    };

    WaylandLayerShell(wl_display* display, wl_proxy* shell, wl_proxy* subcompositor);
    void keyboardEntered(const wl_proxy* surface);
    void keyboardLeft(const wl_proxy* surface);
    [[nodiscard]] std::map<const QWindow*, Surface>::iterator find(const wl_proxy* surface);
    static void ask(const Surface& surface, LayerShellProtocol::Keyboard keyboard);
    void show(QWindow& window, const QRect& place, LayerShellProtocol::Layer layer);
    void create(QWindow& window, LayerShellProtocol::Layer layer);
    [[nodiscard]] static bool isCurrent(const Surface& surface, const QWindow& window);
    static void place(const Surface& surface, const QRect& place);

    wl_proxy* shell_;
    wl_proxy* subcompositor_;
    std::map<const QWindow*, wl_proxy*> attached_;
    std::map<const QWindow*, Surface> surfaces_;
    std::function<void(const QWindow&)> keyboardLost_;
    WaylandKeyboard keyboard_;
};

/// Whether the Wayland display that this process is to use has layers. Asked over a connection
/// of its own, before the application object exists.
[[nodiscard]] bool compositorHasLayers();

} // namespace Kestry
