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

/// Puts windows into the layer above all others, on a Wayland compositor that has layers. Only the
/// compositor knows where windows are. In a layer a window asks for a place at an edge of the
/// screen, and gets the keyboard only when it asks for it.
class WaylandLayerShell {
public:
    /// Returns null on other platforms, and when the compositor has no layers.
    [[nodiscard]] static std::unique_ptr<WaylandLayerShell> connect();

    WaylandLayerShell(const WaylandLayerShell&) = delete;
    WaylandLayerShell& operator=(const WaylandLayerShell&) = delete;
    ~WaylandLayerShell();

    /// Call it before the application object is created. Windows with the bypass flag then get no
    /// role from the toolkit, so that they can get one here.
    static void prepare();

    /// Shows a window at a place on the desktop, or moves it there when it is shown already. The
    /// place counts from the upper left of the area that the desktop's panels leave of its screen.
    void show(QWindow& window, const QRect& place);
    void hide(QWindow& window);

    /// Shows a window above the desktop's windows and below the panels.
    void showBelowPanels(QWindow& window, const QRect& place);
    /// Makes a hidden window a part of one in a layer: above its content, and free to reach beyond
    /// its edges. The places are the upper left corners of both on the desktop. Does nothing when
    /// the parent is not shown.
    void attach(QWindow& window, const QWindow& parent, QPoint parentPlace, QPoint place);
    /// Moves a window that is attached; does nothing for others.
    void moveAttached(const QWindow& window, QPoint place);
    /// Undoes `attach`. Call it before the window is hidden, which destroys its surface.
    void detach(const QWindow& window);
    [[nodiscard]] bool isShown(const QWindow& window) const { return surfaces_.contains(&window); }
    /// Lets the mouse through, except in a rectangle of this size at the upper left.
    static void limitInput(QWindow& window, QSize size);

    /// Gives a window that is shown the keyboard, or takes it away.
    void setKeyboard(const QWindow& window, bool wanted);
    /// Sets what is called when a window that was given the keyboard has lost it to another. It
    /// gets no more keys, even if the compositor would still send some.
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

    /// A window that is a part of another.
    struct Part {
        wl_proxy* subsurface = nullptr;
        const QWindow* parent = nullptr;
        QPoint parentPlace;
    };

    wl_proxy* shell_;
    wl_proxy* subcompositor_;
    std::map<const QWindow*, Part> attached_;
    std::map<const QWindow*, Surface> surfaces_;
    std::function<void(const QWindow&)> keyboardLost_;
    WaylandKeyboard keyboard_;
};

/// Whether the Wayland display of this process has layers. Uses a connection of its own, so that it
/// works before the application object exists.
[[nodiscard]] bool compositorHasLayers();

} // namespace Kestry
