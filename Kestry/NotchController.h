#pragma once

#include <functional>
#include <set>

#include "NotchPanels.h"
#include "Scheduler.h"
#include "TimeStore.h"

namespace Kestry {

/// Decides, moment by moment, which panels are on screen: a strip that is always there, and the
/// detail panel that unfolds below it while the user needs it. It holds no window, so all of it
/// can be tried in virtual time.
///
/// Each delayed action tests the state again when it runs, and gives way to a later transition.
class NotchController final : public NotchPanelEvents {
public:
    /// Lays the panels out, hidden. Everything handed in must outlive the controller.
    NotchController(NotchPanels& panels, KestryCore::Scheduler& scheduler,
        const KestryCore::TimeStore& store, std::function<void()> showDashboard);
    NotchController(const NotchController&) = delete;
    NotchController& operator=(const NotchController&) = delete;
    ~NotchController() override;

    /// The menu command: unfolds the panel and gives it the keyboard, or folds it again.
    void toggleOpen();
    void makeVisible();
    void hide();
    /// Puts everything where it belongs on the screens as they are now. An edit under way ends.
    void layout();

    void hover(bool inside) override;
    void clickInside() override;
    void clickElsewhere() override { moveFocusAway(); }
    void detailResignedKey() override { moveFocusAway(); }
    void editingChanged(bool editing) override;
    void resize(double height) override;
    void screensChanged() override { layout(); }
    void openApp() override { showDashboard_(); }
    void dashboard() override;
    void menuDidBeginTracking(MenuIdentity menu) override;
    void menuDidEndTracking(MenuIdentity menu) override;

    [[nodiscard]] bool isVisible() const { return isVisible_; }
    [[nodiscard]] bool expanded() const { return expanded_; }
    [[nodiscard]] bool clickedOpen() const { return clickedOpen_; }
    [[nodiscard]] bool editingTitle() const { return editingTitle_; }
    [[nodiscard]] bool focusAway() const { return focusAway_; }

private:
    void setExpanded(bool expanded);
    void unfold();
    void fold();
    void scheduleCollapse();
    [[nodiscard]] bool mayCollapse() const;
    void moveFocusAway();
    void orderPanelsFront();
    [[nodiscard]] bool pointerIsInside() const;
    [[nodiscard]] double contentHeight() const;

    NotchPanels& panels_;
    KestryCore::Scheduler& scheduler_;
    const KestryCore::TimeStore& store_;
    std::function<void()> showDashboard_;

    bool isVisible_ = false;
    bool expanded_ = false;
    bool clickedOpen_ = false; ///< Opened on purpose; only the toggle asks for it.
    bool editingTitle_ = false;
    bool focusAway_ = false; ///< The user clicked elsewhere: the pointer no longer holds it open.
    std::set<MenuIdentity> trackingMenus_;
    NotchFrames frames_;
    KestryCore::Timer collapse_;
    KestryCore::Timer transition_; ///< Replaced, and so cancelled, by each transition.
};

} // namespace Kestry
