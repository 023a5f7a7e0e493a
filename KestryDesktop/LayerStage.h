#pragma once

#include <QRasterWindow>

#include "PanelStage.h"
#include "WaylandLayerShell.h"

namespace Kestry {

/// Panels in the layer above all windows of a Wayland compositor. The compositor does not report
/// clicks elsewhere; the panel folds when the pointer leaves it or when it loses the keyboard.
///
/// A panel in a layer cannot be the parent of the compositor's own popups, so its menus and tool
/// tips are parts of the panel. While a menu is open a transparent sheet over the whole screen
/// takes the presses beside it, and the keys go to the panel. Other windows have ordinary popups.
class LayerStage final : public PanelStage {
public:
    explicit LayerStage(std::unique_ptr<WaylandLayerShell> layers);

    void monitor(const DesktopActions& actions) override { actions_ = actions; }
    void frameChanged(PanelWindow& panel, double radius) override;
    void show(PanelWindow& panel) override { layers_->show(panel, panel.windowFrame()); }
    void hide(PanelWindow& panel) override { layers_->hide(panel); }
    void takeKeyboard(PanelWindow& panel) override { setTyped(&panel); }
    void giveKeyboardBack(PanelWindow&) override { setTyped(nullptr); }

    [[nodiscard]] QRectF popupBounds(const QWindow& owner) const override;
    void popupFrameChanged(PanelWindow& popup, double radius) override;
    void openMenu(PanelWindow& menu, QWindow& owner) override;
    void closeMenu(PanelWindow& menu) override;
    void showTip(PanelWindow& tip, QWindow& owner) override;
    void hideTip(PanelWindow& tip) override;

private:
    /// The panel that a window in a layer is; null for other windows.
    [[nodiscard]] const PanelWindow* panelIn(const QWindow& owner) const;
    void attach(PanelWindow& popup, const PanelWindow& panel);
    void setTyped(const PanelWindow* panel);
    void setMenuOwner(const PanelWindow* panel);
    void shareKeyboard(const PanelWindow* panel);
    void keyboardLost(const QWindow& window);

    DesktopActions actions_;
    const PanelWindow* typed_ = nullptr;     ///< Has a field that is typed in.
    const PanelWindow* menuOwner_ = nullptr; ///< Gets the keys for its open menu.
    std::unique_ptr<WaylandLayerShell> layers_;
    QRasterWindow sheet_;
};

} // namespace Kestry
