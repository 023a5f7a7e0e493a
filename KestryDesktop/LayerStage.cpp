#include "LayerStage.h"

#include <utility>

namespace Kestry {

LayerStage::LayerStage(std::unique_ptr<WaylandLayerShell> layers) : layers_(std::move(layers))
{
    layers_->setKeyboardLost([this](const QWindow& window) { keyboardLost(window); });
    QSurfaceFormat transparent;
    transparent.setAlphaBufferSize(8);
    sheet_.setFormat(transparent);
    sheet_.setFlags(
        Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
}

void LayerStage::frameChanged(PanelWindow& panel, double)
{
    WaylandLayerShell::limitInput(panel, panel.frame().size());
    if (layers_->isShown(panel)) {
        layers_->show(panel, panel.windowFrame());
    }
}

const PanelWindow* LayerStage::panelIn(const QWindow& owner) const
{
    return layers_->isShown(owner) ? qobject_cast<const PanelWindow*>(&owner) : nullptr;
}

QRectF LayerStage::popupBounds(const QWindow& owner) const
{
    return panelIn(owner) ? visibleFrame(*owner.screen()) : PanelStage::popupBounds(owner);
}

void LayerStage::popupFrameChanged(PanelWindow& popup, double)
{
    layers_->moveAttached(popup, popup.frame().topLeft());
}

void LayerStage::openMenu(PanelWindow& menu, QWindow& owner)
{
    const PanelWindow* panel = panelIn(owner);
    if (!panel) {
        PanelStage::openMenu(menu, owner);
        return;
    }
    sheet_.setScreen(owner.screen());
    sheet_.setGeometry(owner.screen()->geometry());
    layers_->showBelowPanels(sheet_, sheet_.geometry());
    attach(menu, *panel);
    setMenuOwner(panel);
}

void LayerStage::closeMenu(PanelWindow& menu)
{
    layers_->detach(menu);
    PanelStage::closeMenu(menu);
    layers_->hide(sheet_);
    setMenuOwner(nullptr);
}

void LayerStage::showTip(PanelWindow& tip, QWindow& owner)
{
    if (const PanelWindow* panel = panelIn(owner)) {
        attach(tip, *panel);
    } else {
        PanelStage::showTip(tip, owner);
    }
}

void LayerStage::hideTip(PanelWindow& tip)
{
    layers_->detach(tip);
    PanelStage::hideTip(tip);
}

void LayerStage::attach(PanelWindow& popup, const PanelWindow& panel)
{
    popup.setFlags(PanelWindow::floatingFlags());
    popup.setTransientParent(nullptr);
    layers_->attach(popup, panel, panel.windowFrame().topLeft(), popup.frame().topLeft());
    popup.show();
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
        reportMenuLost();
    }
    if (&window == typed_) {
        typed_ = nullptr;
        actions_.keyboardLost();
    }
}

} // namespace Kestry
