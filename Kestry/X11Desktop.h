#pragma once

#include <QScreen>
#include <QWindow>

#include <cstdint>
#include <memory>
#include <optional>

#include "X11RootMonitor.h"

namespace Kestry {

/// What the panels need of an X11 desktop beyond the toolkit. On any other platform each of these
/// does nothing, and the panels live without.
class X11Desktop {
public:
    /// Whether anything draws transparent pixels as such. True where that cannot be told.
    [[nodiscard]] bool isComposited() const;

    /// Gives a window the keyboard, and remembers who had it.
    void takeKeyboard(QWindow& window);
    /// Gives a keyboard that `window` still has back to whom it was taken from.
    void giveKeyboardBack(const QWindow& window);

    /// Lets the mouse through to what is below a window, but for a rectangle at its upper left.
    void limitInput(const QWindow& window, QSize size) const;
    /// Whether the pointer is on that rectangle, by the server's own account: in its pixels, so
    /// that no rounding contradicts what it tells of coming and going. None on other platforms.
    [[nodiscard]] std::optional<bool> pointerIsOver(const QWindow& window, QSize size) const;

    /// The part of a screen that the desktop's panels leave, in device-independent pixels.
    [[nodiscard]] QRectF visibleFrame(const QScreen& screen) const;

    /// Begins to tell what happens on the desktop.
    void monitor(X11RootMonitor::Actions actions);

private:
    std::uint32_t previousFocus_ = 0; ///< None while we have taken nothing.
    std::unique_ptr<X11RootMonitor> monitor_;
};

} // namespace Kestry
