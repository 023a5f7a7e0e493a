#pragma once

#include <cstdint>
#include <memory>

#include "PanelStage.h"
#include "X11RootMonitor.h"

namespace Kestry {

/// Panels as windows that an X11 window manager leaves alone: always above all others, and never
/// given the keyboard by being shown or clicked. On a platform without an X server they are plain
/// windows.
class X11Stage final : public PanelStage {
public:
    X11Stage();
    X11Stage(const X11Stage&) = delete;
    X11Stage& operator=(const X11Stage&) = delete;
    ~X11Stage() override;

    [[nodiscard]] bool isComposited() const override { return isComposited_; }
    [[nodiscard]] bool isPresent(const QScreen& screen) const override;
    [[nodiscard]] std::optional<QPoint> pointerPlace() const override;
    [[nodiscard]] QRectF visibleFrame(const QScreen& screen) const override;
    void monitor(const DesktopActions& actions) override;

    void frameChanged(PanelWindow& panel, double radius) override;
    void show(PanelWindow& panel) override;
    void hide(PanelWindow& panel) override { panel.hide(); }
    /// Asks the server, in its pixels, so that rounding cannot contradict its enter and leave
    /// events.
    [[nodiscard]] bool pointerIsOver(const PanelWindow& panel) const override;

    void takeKeyboard(PanelWindow& panel) override;
    void giveKeyboardBack(PanelWindow& panel) override;

    [[nodiscard]] QRectF popupBounds(const QWindow& owner) const override
    {
        return visibleFrame(*owner.screen());
    }
    void popupFrameChanged(PanelWindow& popup, double radius) override;
    /// The menu takes the keys and the pointer of the whole desktop, without the focus.
    void openMenu(PanelWindow& menu, QWindow& owner) override;
    void closeMenu(PanelWindow& menu) override;
    void showTip(PanelWindow& tip, QWindow&) override { show(tip); }
    void hideTip(PanelWindow& tip) override { tip.hide(); }

private:
    void grab(PanelWindow& menu, int attemptsLeft);

    bool isComposited_;
    DesktopActions actions_;
    std::uint32_t previousFocus_ = 0;  ///< The window that had the keyboard; 0 when not taken.
    QMetaObject::Connection activity_; ///< Of the panel that has taken the keyboard.
    std::unique_ptr<X11RootMonitor> monitor_;
};

} // namespace Kestry
