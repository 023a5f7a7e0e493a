#pragma once

#include "LayerPopups.h"
#include "PanelStage.h"
#include "WaylandLayerShell.h"

namespace Kestry {

/// Panels in the layer above all windows of a Wayland compositor. Clicks elsewhere nobody tells
/// of there; what folds the panel is that the pointer left it, or that it lost the keyboard.
class LayerStage final : public PanelStage {
public:
    LayerStage(std::unique_ptr<WaylandLayerShell> layers, std::vector<const PanelWindow*> panels);

    void monitor(const DesktopActions& actions) override { actions_ = actions; }
    void frameChanged(PanelWindow& panel, double radius) override;
    void show(PanelWindow& panel) override { layers_->show(panel, panel.windowFrame()); }
    void hide(PanelWindow& panel) override { layers_->hide(panel); }
    void takeKeyboard(PanelWindow& panel) override { setTyped(&panel); }
    void giveKeyboardBack(PanelWindow&) override { setTyped(nullptr); }

private:
    void setTyped(const PanelWindow* panel);
    void setMenuOwner(const PanelWindow* panel);
    void shareKeyboard(const PanelWindow* panel);
    void keyboardLost(const QWindow& window);

    DesktopActions actions_;
    const PanelWindow* typed_ = nullptr;     ///< Has a field that is typed in.
    const PanelWindow* menuOwner_ = nullptr; ///< Gets the keys for its open menu.
    std::unique_ptr<WaylandLayerShell> layers_;
    LayerPopups popups_;
};

} // namespace Kestry
