#include "NotchController.h"

namespace Kestry {
namespace {

constexpr double collapseDelaySeconds = 0.12;
// A little longer than the animation that folds the content, which then is out of sight.
constexpr double removalDelaySeconds = 0.15;

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
    if (!hasScreen_) {
        return;
    }
    clickedOpen_ = !clickedOpen_;
    setExpanded(clickedOpen_);
    if (clickedOpen_) {
        panels_.focusDetail();
        panels_.show(NotchPanel::detail);
    }
}

void NotchController::makeVisible()
{
    isVisible_ = true;
    layout();
    showPanels();
}

void NotchController::hide()
{
    isVisible_ = false;
    endMenus();
    takeAway();
}

void NotchController::takeAway()
{
    hidePreview();
    collapseTask_.cancel();
    transition_.cancel();
    expanded_ = false;
    clickedOpen_ = false;
    editingTitle_ = false;
    panels_.setShown(false, RevealMotion::none);
    panels_.setHovered(false);
    panels_.hide(NotchPanel::bridge);
    panels_.hide(NotchPanel::detail);
}

void NotchController::endMenus()
{
    trackingMenus_.clear();
    panels_.closeMenus();
}

void NotchController::screensChanged()
{
    endMenus(); // they would stay where the panel was
    layout();
}

void NotchController::layout()
{
    const std::vector<ScreenMetrics> screens = panels_.screens();
    const PanelPlace wanted = panels_.wantedPlace();
    const ScreenMetrics* screen = notchScreen(screens, wanted);
    hasScreen_ = screen != nullptr;
    if (!hasScreen_) {
        takeAway();
        return;
    }
    hidePreview();
    transition_.cancel();
    editingTitle_ = false;
    panels_.setShown(expanded_, RevealMotion::none);
    const NotchMeasures measures = notchMeasures(*screen, wanted.side);
    placePanels(*screen, measures);
    panels_.setHovered(isVisible_ && pointerIsInside());
    panels_.rebuildContent(measures);
    if (!expanded_) {
        panels_.hide(NotchPanel::detail);
    }
    showPanels();
    scheduleCollapse();
}

void NotchController::placePanels(const ScreenMetrics& screen, const NotchMeasures& measures)
{
    visibleFrame_ = screen.visibleFrame;
    frames_ = notchFrames(measures, contentHeight());
    panels_.place(NotchPanel::bridge, frames_.bridge);
    panels_.place(NotchPanel::detail, frames_.detail);
}

void NotchController::showPanels()
{
    if (!isOnScreen()) {
        return;
    }
    panels_.show(NotchPanel::bridge);
    if (expanded_) {
        panels_.show(NotchPanel::detail);
    }
}

void NotchController::hover(bool inside)
{
    collapseTask_.cancel();
    if (!hasScreen_) {
        return;
    }
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
    collapseTask_.cancel();
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
    const RevealMotion motion = panels_.reducesMotion() ? RevealMotion::none : RevealMotion::unfold;
    panels_.show(NotchPanel::detail);
    // The content has to be laid out before it moves, which takes one turn of the loop.
    transition_ = scheduler_.after(0.0, [this, motion] {
        if (expanded_) {
            panels_.setShown(true, motion);
        }
    });
}

void NotchController::fold()
{
    const bool still = panels_.reducesMotion();
    hidePreview();
    clickedOpen_ = false;
    panels_.endEditing();
    panels_.setShown(false, still ? RevealMotion::none : RevealMotion::fold);
    if (still) {
        panels_.hide(NotchPanel::detail);
        return;
    }
    transition_ = scheduler_.after(removalDelaySeconds, [this] {
        if (!expanded_) {
            panels_.hide(NotchPanel::detail);
        }
    });
}

void NotchController::scheduleCollapse()
{
    collapseTask_.cancel();
    if (!mayCollapse()) {
        return;
    }
    collapseTask_ = scheduler_.after(collapseDelaySeconds, [this] {
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
    if (editingTitle_ && panels_.detailHasFocus()) {
        return false;
    }
    return focusAway_ || !pointerIsInside();
}

void NotchController::editingChanged(bool editing)
{
    editingTitle_ = editing && hasScreen_;
    if (!editingTitle_) {
        scheduleCollapse();
        return;
    }
    hidePreview();
    clickedOpen_ = true;
    focusAway_ = false;
    collapseTask_.cancel();
    panels_.focusDetail();
    panels_.show(NotchPanel::detail);
}

void NotchController::moveFocusAway()
{
    if (!isVisible_ || !expanded_ || !trackingMenus_.empty()) {
        return;
    }
    hidePreview();
    editingTitle_ = false;
    focusAway_ = true;
    panels_.endEditing();
    scheduleCollapse();
}

void NotchController::clickInside()
{
    focusAway_ = false;
    collapseTask_.cancel();
}

void NotchController::menuOpened(MenuIdentity menu)
{
    if (isVisible_ && expanded_) {
        trackingMenus_.insert(menu);
        collapseTask_.cancel();
    }
}

void NotchController::menuClosed(MenuIdentity menu)
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
        hidePreview();
    }
}

void NotchController::dashboard()
{
    setExpanded(false);
    showDashboard_();
}

bool NotchController::pointerIsInside() const
{
    return panels_.pointerIsOver(NotchPanel::bridge)
        || (expanded_ && panels_.pointerIsOver(NotchPanel::detail))
        || (previewIsVisible_ && panels_.pointerIsOver(NotchPanel::titlePreview));
}

double NotchController::contentHeight() const
{
    return detailHeight(detailContent(store_));
}

} // namespace Kestry
