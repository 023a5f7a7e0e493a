#pragma once

#include <QRectF>
#include <QScreen>

#include <functional>

#include "PanelWindow.h"

namespace Kestry {

/// What happens on the desktop beside the panels, as far as a stage hears of it.
struct DesktopActions {
    /// A mouse button went down somewhere, the wheel left out.
    std::function<void()> clicked;
    /// The order of the windows, or the active one, has changed.
    std::function<void()> restacked;
    /// Panels of the desktop keep another part of it for themselves, or a screen was switched on
    /// or off.
    std::function<void()> workAreaChanged;
    /// The window that has the keyboard for the panels has lost it.
    std::function<void()> keyboardLost;
};

/// How panels stand on one kind of desktop: what puts them above all windows, and gives them the
/// keyboard and takes it away. What a stage does not override is done as any platform does it.
class PanelStage {
public:
    PanelStage() = default;
    PanelStage(const PanelStage&) = delete;
    PanelStage& operator=(const PanelStage&) = delete;
    virtual ~PanelStage() = default;

    /// Whether anything draws transparent pixels as such.
    [[nodiscard]] virtual bool isComposited() const { return true; }
    /// Whether a screen that the toolkit knows is there to be seen. While there is none it makes
    /// one up, or keeps the last one.
    [[nodiscard]] virtual bool isPresent(const QScreen& screen) const;
    /// The part of a screen that the desktop's own panels leave.
    [[nodiscard]] virtual QRectF visibleFrame(const QScreen& screen) const
    {
        return screen.availableGeometry();
    }
    /// Begins to tell what happens on the desktop.
    virtual void monitor(const DesktopActions& /*actions*/) { }

    /// Follows a panel's frame, the corners of which have this radius.
    virtual void frameChanged(PanelWindow& panel, double radius) = 0;
    /// In front of all else; also when it is there already.
    virtual void show(PanelWindow& panel) = 0;
    virtual void hide(PanelWindow& panel) = 0;
    [[nodiscard]] virtual bool isShown(const PanelWindow& panel) const { return panel.isVisible(); }
    /// Whether the pointer is on the panel's frame.
    [[nodiscard]] virtual bool pointerIsOver(const PanelWindow& panel) const
    {
        return panel.isEntered();
    }

    virtual void takeKeyboard(PanelWindow& panel) = 0;
    /// A keyboard that the panel still has goes back to where it was.
    virtual void giveKeyboardBack(PanelWindow& panel) = 0;
};

} // namespace Kestry
