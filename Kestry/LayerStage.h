#pragma once

#include "LayerPopups.h"
#include "PanelStage.h"
#include "WaylandLayerShell.h"

namespace Kestry {

/// Panels in the layer above all windows of a Wayland compositor. Clicks elsewhere nobody tells
/// of there; what folds the panel is that the pointer left it, or that it lost the keyboard.
class LayerStage final : public PanelStage {
public:
    LayerStage(std::unique_ptr<WaylandLayerShell> layers, std::vector<const PanelWindow*> panels)
        : layers_(std::move(layers)), popups_(*layers_, std::move(panels))
    {
    }

    void frameChanged(PanelWindow& panel, double radius) override;
    void show(PanelWindow& panel) override { layers_->show(panel, panel.windowFrame()); }
    void hide(PanelWindow& panel) override { layers_->hide(panel); }
    void takeKeyboard(PanelWindow& panel) override { layers_->setKeyboard(panel, true); }
    void giveKeyboardBack(PanelWindow& panel) override { layers_->setKeyboard(panel, false); }

private:
    std::unique_ptr<WaylandLayerShell> layers_;
    LayerPopups popups_;
};

} // namespace Kestry
