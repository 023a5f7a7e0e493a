#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>

#include "NotchPanels.h"
#include "Scheduler.h"
#include "TimeStore.h"

namespace Kestry {

/// Decides, moment by moment, which panels are on screen: a strip that is always there, the
/// detail panel that unfolds below it while the user needs it, and a bubble for a title too long
/// for its field. It holds no window, so all of it can be tried in virtual time.
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
    /// Without any screen no panel is shown; what the user has switched on comes back with the
    /// first screen.
    void layout();

    void hover(bool inside) override;
    void hoverPreview(bool inside) override;
    void clickInside() override;
    void clickElsewhere() override { moveFocusAway(); }
    void detailLostFocus() override { moveFocusAway(); }
    void editingChanged(bool editing) override;
    void resize(double height) override;
    void screensChanged() override;
    void openApp() override { showDashboard_(); }
    void dashboard() override;
    void previewTitle(const std::optional<std::string>& title) override;
    void dismissPreview() override;
    /// A menu that was opened from the panel holds it open until it ends.
    void menuOpened(MenuIdentity menu) override;
    void menuClosed(MenuIdentity menu) override;

    [[nodiscard]] bool isVisible() const { return isVisible_; }
    [[nodiscard]] bool expanded() const { return expanded_; }
    [[nodiscard]] bool clickedOpen() const { return clickedOpen_; }
    [[nodiscard]] bool editingTitle() const { return editingTitle_; }
    [[nodiscard]] bool focusAway() const { return focusAway_; }

private:
    [[nodiscard]] bool isOnScreen() const { return isVisible_ && hasScreen_; }
    void takeAway();
    void endMenus();
    void placePanels(const ScreenMetrics& screen, const NotchMeasures& measures);
    void showPanels();
    void setExpanded(bool expanded);
    void unfold();
    void fold();
    void scheduleCollapse();
    [[nodiscard]] bool mayCollapse() const;
    void moveFocusAway();
    [[nodiscard]] bool pointerIsInside() const;
    [[nodiscard]] double contentHeight() const;

    void showPreview(const std::string& title);
    void hidePreview();

    NotchPanels& panels_;
    KestryCore::Scheduler& scheduler_;
    const KestryCore::TimeStore& store_;
    std::function<void()> showDashboard_;

    bool isVisible_ = false; ///< Switched on, whether or not there is a screen to be on.
    bool hasScreen_ = false;
    bool expanded_ = false;
    bool clickedOpen_ = false; ///< Opened on purpose; only the toggle asks for it.
    bool editingTitle_ = false;
    bool focusAway_ = false; ///< The user clicked elsewhere: the pointer no longer holds it open.
    bool previewIsVisible_ = false;
    std::set<MenuIdentity> trackingMenus_;
    NotchFrames frames_;
    QRectF visibleFrame_; ///< Of the screen that the panels are on.
    KestryCore::Timer collapseTask_;
    KestryCore::Timer previewTask_;
    KestryCore::Timer previewDismissTask_;
    KestryCore::Timer transition_; ///< Replaced, and so cancelled, by each transition.
};

} // namespace Kestry
