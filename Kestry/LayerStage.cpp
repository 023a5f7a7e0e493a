#include "LayerStage.h"

namespace Kestry {

void LayerStage::frameChanged(PanelWindow& panel, double)
{
    WaylandLayerShell::limitInput(panel, panel.frame().size());
    if (layers_->isShown(panel)) {
        layers_->show(panel, panel.windowFrame());
    }
}

} // namespace Kestry
