#pragma once

#include <QRectF>
#include <QScreen>

#include <functional>
#include <optional>
#include <utility>

#include "PanelWindow.h"

namespace Kestry {

/// What is called when something happens on the desktop outside the panels. Not every stage
/// notices all of it.
struct DesktopActions {
    /// A mouse button, but not the wheel, was pressed anywhere.
    std::function<void()> clicked;
    /// The order of the windows, or the active window, has changed.
    std::function<void()> restacked;
    /// The area that the desktop's own panels leave has changed, or a screen was switched on or
    /// off.
    std::function<void()> workAreaChanged;
    /// The panel that was given the keyboard has lost it.
    std::function<void()> keyboardLost;
};

/// How panels, menus and tool tips are shown on one kind of desktop: what keeps them above all
/// windows, and gives them the keyboard and takes it away. The defaults work on any platform.
class PanelStage {
public:
    PanelStage() = default;
    PanelStage(const PanelStage&) = delete;
    PanelStage& operator=(const PanelStage&) = delete;
    virtual ~PanelStage() = default;

    /// Whether a compositor draws windows with transparency.
    [[nodiscard]] virtual bool isComposited() const { return true; }
    /// Whether a screen is real. Without one the toolkit makes one up, or keeps the last one.
    [[nodiscard]] virtual bool isPresent(const QScreen& screen) const;
    /// The part of a screen that the desktop's own panels leave.
    [[nodiscard]] virtual QRectF visibleFrame(const QScreen& screen) const
    {
        return screen.availableGeometry();
    }
    /// Where the pointer is, on any screen; nullopt on a desktop that does not tell.
    [[nodiscard]] virtual std::optional<QPoint> pointerPlace() const { return std::nullopt; }
    /// Sets what is called from now on when something happens on the desktop.
    virtual void monitor(const DesktopActions& /*actions*/) { }

    /// Follows a panel's frame, whose corners have this radius.
    virtual void frameChanged(PanelWindow& panel, double radius) = 0;
    /// Shows a panel in front of all other windows, also when it is shown already.
    virtual void show(PanelWindow& panel) = 0;
    virtual void hide(PanelWindow& panel) = 0;
    [[nodiscard]] virtual bool isShown(const PanelWindow& panel) const { return panel.isVisible(); }
    /// Whether the pointer is on the panel's frame.
    [[nodiscard]] virtual bool pointerIsOver(const PanelWindow& panel) const
    {
        return panel.isEntered();
    }

    virtual void takeKeyboard(PanelWindow& panel) = 0;
    /// Returns the keyboard to where it was, if the panel still has it.
    virtual void giveKeyboardBack(PanelWindow& panel) = 0;

    // Menus and tool tips. `owner` is the window that they are opened from: a panel's or any other.

    /// Where they can be, in the coordinates of the owner.
    [[nodiscard]] virtual QRectF popupBounds(const QWindow& owner) const;
    /// Follows the frame of a menu or tool tip, whose corners have this radius.
    virtual void popupFrameChanged(PanelWindow& /*popup*/, double /*radius*/) { }
    /// Shows a menu in front of all panels. The keys, and presses beside it, then reach this
    /// program's windows, as far as the desktop allows.
    virtual void openMenu(PanelWindow& menu, QWindow& owner);
    virtual void closeMenu(PanelWindow& menu);
    virtual void showTip(PanelWindow& tip, QWindow& owner);
    virtual void hideTip(PanelWindow& tip);
    /// Sets what is called when an open menu no longer gets the keys or the presses beside it, and
    /// so should close.
    void setMenuLost(std::function<void()> menuLost) { menuLost_ = std::move(menuLost); }

protected:
    void reportMenuLost() const;

private:
    std::function<void()> menuLost_;
    QMetaObject::Connection ownerActivity_; ///< Of the window that a menu was opened from.
};

} // namespace Kestry
