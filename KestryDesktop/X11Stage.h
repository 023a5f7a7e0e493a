#pragma once

#include <cstdint>
#include <memory>

#include "PanelStage.h"
#include "X11RootMonitor.h"

namespace Kestry {

/// Panels as windows that an X11 window manager leaves alone: above all others whatever it does,
/// never taking the keyboard by being shown or clicked. On a platform without an X server they are
/// plain windows.
class X11Stage final : public PanelStage {
public:
    X11Stage();
    X11Stage(const X11Stage&) = delete;
    X11Stage& operator=(const X11Stage&) = delete;
    ~X11Stage() override;

    [[nodiscard]] bool isComposited() const override { return isComposited_; }
    [[nodiscard]] bool isPresent(const QScreen& screen) const override;
    [[nodiscard]] QRectF visibleFrame(const QScreen& screen) const override;
    void monitor(const DesktopActions& actions) override;

    void frameChanged(PanelWindow& panel, double radius) override;
    void show(PanelWindow& panel) override;
    void hide(PanelWindow& panel) override { panel.hide(); }
    /// By the server's own account, in its pixels: no rounding then contradicts what it tells of
    /// coming and going.
    [[nodiscard]] bool pointerIsOver(const PanelWindow& panel) const override;

    void takeKeyboard(PanelWindow& panel) override;
    void giveKeyboardBack(PanelWindow& panel) override;

private:
    bool isComposited_;
    DesktopActions actions_;
    std::uint32_t previousFocus_ = 0;  ///< None while we have taken nothing.
    QMetaObject::Connection activity_; ///< Of the panel that has taken the keyboard.
    std::unique_ptr<X11RootMonitor> monitor_;
};

} // namespace Kestry
