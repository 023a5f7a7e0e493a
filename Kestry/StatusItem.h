#pragma once

#include <optional>
#include <vector>

#include "AppState.h"
#include "DesktopPreferences.h"
#include "MenuEntry.h"
#include "Scheduler.h"
#include "StatusArea.h"
#include "TimeStore.h"

namespace Kestry {

/// The optional item in the status area. While a session runs the mark turns; in every other case
/// it stands still, and nothing wakes the program.
class StatusItem {
public:
    struct World {
        StatusArea& area;
        const KestryCore::TimeStore& store;
        const AppState& state;
        const DesktopPreferences& preferences;
        KestryCore::Scheduler& scheduler;
        KestryCore::Clock now;
    };

    /// Appears at once if the user has switched it on, and follows the switch, the session and
    /// the desktop's preferences from then on. `menu` is the one that it opens.
    StatusItem(World world, std::function<Menu()> menu);

    [[nodiscard]] bool exists() const { return exists_; }

private:
    void setEnabled(bool enabled);
    void followSession();
    void refresh();
    void animate();
    void drawCurrentFrame();
    [[nodiscard]] bool isAnimated() const;

    World world_;
    std::function<Menu()> menu_;
    bool exists_ = false;
    std::optional<KestryCore::ActiveSession> session_;
    std::optional<int> frame_; ///< The one shown last; none: none was shown yet.
    KestryCore::Timer animation_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
