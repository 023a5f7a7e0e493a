#include "OrdinaryStage.h"

#include <algorithm>

namespace Kestry {

OrdinaryStage::OrdinaryStage()
{
    window_.setTitle("Kestry");
    window_.setColor(Qt::black);
    window_.installEventFilter(this);
    connect(&window_, &QWindow::activeChanged, this, [this] {
        if (!window_.isActive() && actions_.keyboardLost) {
            actions_.keyboardLost();
        }
    });
}

void OrdinaryStage::frameChanged(PanelWindow& panel, double)
{
    places_ |= panel.frame();
    if (isShown(panel)) {
        arrange();
    }
}

void OrdinaryStage::show(PanelWindow& panel)
{
    if (!isShown(panel)) {
        shown_.push_back(&panel);
        panel.content().setParentItem(window_.contentItem());
        arrange();
    }
    window_.show();
}

void OrdinaryStage::hide(PanelWindow& panel)
{
    if (std::erase(shown_, &panel) == 0) {
        return;
    }
    panel.content().setParentItem(panel.contentItem());
    if (shown_.empty()) {
        window_.hide();
    } else {
        arrange();
    }
}

bool OrdinaryStage::isShown(const PanelWindow& panel) const
{
    return std::ranges::find(shown_, &panel) != shown_.end();
}

bool OrdinaryStage::pointerIsOver(const PanelWindow& panel) const
{
    return isEntered_ && isShown(panel);
}

void OrdinaryStage::takeKeyboard(PanelWindow&)
{
    window_.requestActivate();
}

void OrdinaryStage::arrange()
{
    QRect needed;
    for (const PanelWindow* panel : shown_) {
        needed |= panel->frame();
    }
    // As wide as ever: a window that grows to both sides under the pointer would move away.
    const QPoint corner(places_.left(), needed.top());
    for (PanelWindow* panel : shown_) {
        panel->content().setPosition(panel->frame().topLeft() - corner);
    }
    const QSize size(places_.width(), needed.height());
    window_.setMinimumSize(size);
    window_.setMaximumSize(size);
    window_.resize(size);
}

bool OrdinaryStage::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
    case QEvent::Leave:
        isEntered_ = event->type() == QEvent::Enter;
        if (!shown_.empty()) {
            shown_.front()->reportHover(isEntered_);
        }
        return false;
    case QEvent::Close:
        event->ignore(); // the strip is there until it is switched off
        return true;
    default:
        return false;
    }
}

} // namespace Kestry
