#include "NotchController.h"

namespace Kestry {
namespace {

constexpr double collapseDelaySeconds = 0.12;
// A little longer than the animation that folds the content, which then is out of sight.
constexpr double orderOutDelaySeconds = 0.15;

} // namespace

NotchController::NotchController(NotchPanels& panels, KestryCore::Scheduler& scheduler,
    const KestryCore::TimeStore& store, std::function<void()> showDashboard)
    : panels_(panels), scheduler_(scheduler), store_(store),
      showDashboard_(std::move(showDashboard))
{
    panels_.deliverEventsTo(this);
    layout();
}

NotchController::~NotchController()
{
    panels_.deliverEventsTo(nullptr);
}

void NotchController::toggleOpen()
{
    if (!isVisible_) {
        makeVisible();
    }
    clickedOpen_ = !clickedOpen_;
    setExpanded(clickedOpen_);
    if (clickedOpen_) {
        panels_.makeDetailKey();
        panels_.orderFront(NotchPanel::detail);
    }
}

void NotchController::makeVisible()
{
    isVisible_ = true;
    layout();
}

void NotchController::hide()
{
    trackingMenus_.clear();
    collapse_.cancel();
    transition_.cancel();
    isVisible_ = false;
    expanded_ = false;
    clickedOpen_ = false;
    editingTitle_ = false;
    panels_.setShown(false, RevealMotion::none);
    panels_.setHovered(false);
    panels_.orderOut(NotchPanel::bridge);
    panels_.orderOut(NotchPanel::detail);
}

void NotchController::layout()
{
    const std::vector<ScreenMetrics> screens = panels_.screens();
    const ScreenMetrics* screen = notchScreen(screens);
    if (!screen) {
        return;
    }
    transition_.cancel();
    editingTitle_ = false;
    panels_.setShown(expanded_, RevealMotion::none);
    const NotchMeasures measures = notchMeasures(*screen);
    panels_.rebuildContent(measures);
    frames_ = notchFrames(measures, contentHeight());
    panels_.place(NotchPanel::bridge, frames_.bridge);
    panels_.place(NotchPanel::detail, frames_.detail);
    panels_.setHovered(isVisible_ && pointerIsInside());
    if (!expanded_) {
        panels_.orderOut(NotchPanel::detail);
    }
    orderPanelsFront();
    scheduleCollapse();
}

void NotchController::orderPanelsFront()
{
    if (!isVisible_) {
        return;
    }
    panels_.orderFront(NotchPanel::bridge);
    if (expanded_) {
        panels_.orderFront(NotchPanel::detail);
    }
}

void NotchController::hover(bool inside)
{
    collapse_.cancel();
    if (!inside) {
        panels_.setHovered(pointerIsInside());
        scheduleCollapse();
        return;
    }
    panels_.setHovered(true);
    focusAway_ = false;
    setExpanded(true);
}

void NotchController::setExpanded(bool expanded)
{
    if (expanded == expanded_) {
        return;
    }
    collapse_.cancel();
    transition_.cancel();
    expanded_ = expanded;
    if (expanded_ && isVisible_) {
        unfold();
    } else {
        fold();
    }
}

void NotchController::unfold()
{
    panels_.orderFront(NotchPanel::detail);
    // The content has to be laid out before it moves, which takes one turn of the loop.
    transition_ = scheduler_.after(0.0, [this] {
        panels_.setShown(true, panels_.reducesMotion() ? RevealMotion::none : RevealMotion::unfold);
    });
}

void NotchController::fold()
{
    clickedOpen_ = false;
    panels_.clearFirstResponder();
    if (panels_.reducesMotion()) {
        panels_.setShown(false, RevealMotion::none);
        panels_.orderOut(NotchPanel::detail);
        return;
    }
    panels_.setShown(false, RevealMotion::fold);
    transition_ =
        scheduler_.after(orderOutDelaySeconds, [this] { panels_.orderOut(NotchPanel::detail); });
}

void NotchController::scheduleCollapse()
{
    collapse_.cancel();
    if (!mayCollapse()) {
        return;
    }
    collapse_ = scheduler_.after(collapseDelaySeconds, [this] {
        if (mayCollapse()) {
            setExpanded(false);
        }
    });
}

bool NotchController::mayCollapse() const
{
    if (!isVisible_ || !expanded_ || !trackingMenus_.empty()) {
        return false;
    }
    if (editingTitle_ && panels_.detailIsKey()) {
        return false;
    }
    return focusAway_ || !pointerIsInside();
}

void NotchController::editingChanged(bool editing)
{
    editingTitle_ = editing;
    if (!editing) {
        scheduleCollapse();
        return;
    }
    clickedOpen_ = true;
    focusAway_ = false;
    collapse_.cancel();
    panels_.makeDetailKey();
    panels_.orderFront(NotchPanel::detail);
}

void NotchController::moveFocusAway()
{
    if (!isVisible_ || !expanded_ || !trackingMenus_.empty()) {
        return;
    }
    editingTitle_ = false;
    focusAway_ = true;
    panels_.clearFirstResponder();
    scheduleCollapse();
}

void NotchController::clickInside()
{
    focusAway_ = false;
    collapse_.cancel();
}

void NotchController::menuDidBeginTracking(MenuIdentity menu)
{
    if (isVisible_ && expanded_) {
        trackingMenus_.insert(menu);
        collapse_.cancel();
    }
}

void NotchController::menuDidEndTracking(MenuIdentity menu)
{
    if (trackingMenus_.erase(menu) > 0) {
        scheduleCollapse();
    }
}

void NotchController::resize(double height)
{
    if (height != frames_.detail.height()) {
        frames_.detail.setHeight(height);
        panels_.place(NotchPanel::detail, frames_.detail);
    }
}

void NotchController::dashboard()
{
    setExpanded(false);
    showDashboard_();
}

bool NotchController::pointerIsInside() const
{
    const QPointF pointer = panels_.pointer();
    return frames_.bridge.contains(pointer) || (expanded_ && frames_.detail.contains(pointer));
}

double NotchController::contentHeight() const
{
    return detailHeight({.hasSession = store_.data()->active.has_value(),
        .hasMessage = store_.errorMessage()->has_value(),
        .hasNotice = *store_.recoveredSession()});
}

} // namespace Kestry
