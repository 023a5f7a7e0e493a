#include "PanelStage.h"

#include <qpa/qplatformscreen.h>

namespace Kestry {
namespace {

/// As the toolkit shows tool tips: the platform places them, beside their owner. Its own kind of
/// menu would need a press or a key just before, which a screen reader does not send.
void showPopup(PanelWindow& popup, QWindow& owner)
{
    popup.setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    popup.setTransientParent(&owner);
    popup.show();
}

void hidePopup(PanelWindow& popup)
{
    popup.hide();
    popup.destroy(); // the next time it may be of another kind
}

} // namespace

bool PanelStage::isPresent(const QScreen& screen) const
{
    return screen.handle() != nullptr && !screen.handle()->isPlaceholder();
}

QRectF PanelStage::popupBounds(const QWindow& owner) const
{
    // Only the platform knows where the owner is, and moves what would not fit on the screen.
    return {owner.position(), owner.screen()->size()};
}

void PanelStage::openMenu(PanelWindow& menu, QWindow& owner)
{
    showPopup(menu, owner);
    // The owner has the keys. A press in another program is noticed when it takes them.
    ownerActivity_ = QObject::connect(&owner, &QWindow::activeChanged, &menu, [this, &owner] {
        if (!owner.isActive()) {
            reportMenuLost();
        }
    });
}

void PanelStage::closeMenu(PanelWindow& menu)
{
    QObject::disconnect(ownerActivity_);
    hidePopup(menu);
}

void PanelStage::showTip(PanelWindow& tip, QWindow& owner)
{
    showPopup(tip, owner);
}

void PanelStage::hideTip(PanelWindow& tip)
{
    hidePopup(tip);
}

void PanelStage::reportMenuLost() const
{
    if (menuLost_) {
        menuLost_();
    }
}

} // namespace Kestry
