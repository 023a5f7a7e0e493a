#pragma once

#include <QWindow>

#include <cstdint>
#include <functional>
#include <memory>

namespace Kestry {

/// What the panels need of an X11 desktop beyond the toolkit. On any other platform each of these
/// does nothing, and the panels live without.
class X11Desktop {
public:
    X11Desktop();
    X11Desktop(const X11Desktop&) = delete;
    X11Desktop& operator=(const X11Desktop&) = delete;
    ~X11Desktop();

    /// Whether anything draws transparent pixels as such. True where that cannot be told.
    [[nodiscard]] bool isComposited() const;

    /// Gives a window the keyboard, and remembers who had it.
    void takeKeyboard(QWindow& window);
    /// Gives a keyboard that `window` still has back to whom it was taken from.
    void giveKeyboardBack(const QWindow& window);

    /// Calls `clicked` on every press of a mouse button on the whole desktop, with the wheel left
    /// out. Where it stood is for the pointer to tell.
    void watchClicks(std::function<void()> clicked);

private:
    class ClickMonitor;

    std::uint32_t previousFocus_ = 0; ///< None while we have taken nothing.
    std::unique_ptr<ClickMonitor> clicks_;
};

} // namespace Kestry
