#include "LayerStage.h"

#include <utility>

namespace Kestry {

LayerStage::LayerStage(
    std::unique_ptr<WaylandLayerShell> layers, std::vector<const PanelWindow*> panels)
    : layers_(std::move(layers)), popups_(*layers_, std::move(panels),
                                      [this](const PanelWindow* owner) { setMenuOwner(owner); })
{
    layers_->setKeyboardLost([this](const QWindow& window) { keyboardLost(window); });
}

void LayerStage::frameChanged(PanelWindow& panel, double)
{
    WaylandLayerShell::limitInput(panel, panel.frame().size());
    if (layers_->isShown(panel)) {
        layers_->show(panel, panel.windowFrame());
    }
}

void LayerStage::setTyped(const PanelWindow* panel)
{
    shareKeyboard(std::exchange(typed_, panel));
    shareKeyboard(typed_);
}

void LayerStage::setMenuOwner(const PanelWindow* panel)
{
    shareKeyboard(std::exchange(menuOwner_, panel));
    shareKeyboard(menuOwner_);
}

void LayerStage::shareKeyboard(const PanelWindow* panel)
{
    if (panel) {
        layers_->setKeyboard(*panel, panel == typed_ || panel == menuOwner_);
    }
}

void LayerStage::keyboardLost(const QWindow& window)
{
    if (&window == menuOwner_) {
        popups_.closeMenusSoon();
    }
    if (&window == typed_) {
        typed_ = nullptr;
        actions_.keyboardLost();
    }
}

} // namespace Kestry
