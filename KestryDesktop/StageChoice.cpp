#include "StageChoice.h"

#include <QGuiApplication>

#include "LayerStage.h"
#include "OrdinaryStage.h"
#include "X11Stage.h"

namespace Kestry {

std::unique_ptr<PanelStage> panelStage()
{
    if (auto layers = WaylandLayerShell::connect()) {
        return std::make_unique<LayerStage>(std::move(layers));
    }
    if (QGuiApplication::platformName().startsWith("wayland")) {
        return std::make_unique<OrdinaryStage>();
    }
    return std::make_unique<X11Stage>();
}

} // namespace Kestry
