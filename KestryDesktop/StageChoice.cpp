#include "StageChoice.h"

#include <QGuiApplication>

#include <qpa/qplatformscreen.h>

#include "LayerStage.h"
#include "OrdinaryStage.h"
#include "X11Stage.h"

namespace Kestry {

bool PanelStage::isPresent(const QScreen& screen) const
{
    return screen.handle() != nullptr && !screen.handle()->isPlaceholder();
}

std::unique_ptr<PanelStage> panelStage(std::vector<const PanelWindow*> panels)
{
    if (auto layers = WaylandLayerShell::connect()) {
        return std::make_unique<LayerStage>(std::move(layers), std::move(panels));
    }
    if (QGuiApplication::platformName().startsWith("wayland")) {
        return std::make_unique<OrdinaryStage>();
    }
    return std::make_unique<X11Stage>();
}

} // namespace Kestry
