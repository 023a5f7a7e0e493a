#pragma once

#include <optional>
#include <vector>

#include "AppState.h"
#include "DesktopPreferences.h"
#include "MenuEntry.h"
#include "Scheduler.h"
#include "TimeStore.h"

namespace Kestry {

/// The place in the desktop's status area, as the status item commands it.
class StatusArea {
public:
    StatusArea() = default;
    StatusArea(const StatusArea&) = delete;
    StatusArea& operator=(const StatusArea&) = delete;
    virtual ~StatusArea() = default;

    virtual void create(Menu menu) = 0;
    virtual void remove() = 0;
    /// Pictures of the mark that there are: all of one turn, or none when they cannot be drawn.
    /// They are made when first asked for.
    [[nodiscard]] virtual int frameCount() = 0;
    virtual void showFrame(int frame) = 0;
    /// The plain symbol, in place of the mark.
    virtual void showSymbol() = 0;
};

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
