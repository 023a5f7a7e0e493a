#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "NotchGeometry.h"

namespace Kestry {

/// The strip, the panel that unfolds below it, and the bubble with a whole title below that.
enum class NotchPanel { bridge, detail, titlePreview };

/// How the detail content comes and goes: the spring that unfolds it, the shorter ease-out that
/// folds it, or at once.
enum class RevealMotion { none, unfold, fold };

/// Tells one open menu from another.
using MenuIdentity = std::uint64_t;

/// What happens to the panels, told to the controller.
class NotchPanelEvents {
public:
    NotchPanelEvents() = default;
    NotchPanelEvents(const NotchPanelEvents&) = delete;
    NotchPanelEvents& operator=(const NotchPanelEvents&) = delete;
    virtual ~NotchPanelEvents() = default;

    /// The pointer has come onto the strip or the detail panel, or has left one of them.
    virtual void hover(bool inside) = 0;
    /// The pointer has come onto the bubble or has left it.
    virtual void hoverPreview(bool inside) = 0;
    /// A mouse button went down on one of the panels.
    virtual void clickInside() = 0;
    /// A mouse button went down anywhere else, in this application or another.
    virtual void clickElsewhere() = 0;
    /// The detail panel has lost the keyboard.
    virtual void detailResignedKey() = 0;
    /// The inline title field has taken or given up the keyboard.
    virtual void editingChanged(bool editing) = 0;
    /// The detail content wants another height.
    virtual void resize(double height) = 0;
    /// Screens have come, gone, or changed their usable area.
    virtual void screensChanged() = 0;
    /// The strip was pressed: the workspace window is asked for.
    virtual void openApp() = 0;
    /// The detail panel has done its part: it folds, and the workspace window is asked for.
    virtual void dashboard() = 0;
    /// The pointer rests on a title that does not fit its field; nothing takes the wish back.
    virtual void previewTitle(const std::optional<std::string>& title) = 0;
    /// The pointer has left that title.
    virtual void dismissPreview() = 0;
    /// A menu opened from the panel has come up or has gone.
    virtual void menuDidBeginTracking(MenuIdentity menu) = 0;
    virtual void menuDidEndTracking(MenuIdentity menu) = 0;
};

/// The windows as the controller commands them. They decide nothing: what is shown, where and
/// when, is the controller's.
class NotchPanels {
public:
    NotchPanels() = default;
    NotchPanels(const NotchPanels&) = delete;
    NotchPanels& operator=(const NotchPanels&) = delete;
    virtual ~NotchPanels() = default;

    /// Whom to tell what happens; null for nobody.
    virtual void deliverEventsTo(NotchPanelEvents* events) = 0;

    [[nodiscard]] virtual std::vector<ScreenMetrics> screens() const = 0;
    /// Whether the pointer is within the frame that the panel has.
    [[nodiscard]] virtual bool pointerIsOver(NotchPanel panel) const = 0;
    /// Whether the user wants nothing on the screen to move.
    [[nodiscard]] virtual bool reducesMotion() const = 0;
    /// Whether the detail panel has the keyboard.
    [[nodiscard]] virtual bool detailIsKey() const = 0;

    virtual void place(NotchPanel panel, const QRectF& frame) = 0;
    /// In front of all other windows and open to the mouse, without taking the keyboard.
    virtual void orderFront(NotchPanel panel) = 0;
    /// Out of sight and out of the mouse's way.
    virtual void orderOut(NotchPanel panel) = 0;
    /// Gives the keyboard to the detail panel.
    virtual void makeDetailKey() = 0;
    /// Ends typing in the detail panel; a keyboard that it holds goes back to where it was.
    virtual void clearFirstResponder() = 0;
    /// Closes a menu that is open.
    virtual void closeMenus() = 0;
    /// Makes the content afresh for a new layout; what was half typed is given up.
    virtual void rebuildContent(const NotchMeasures& measures) = 0;

    virtual void setHovered(bool hovered) = 0;
    virtual void setShown(bool shown, RevealMotion motion) = 0;

    /// Puts a title into the bubble. Returns the height at which all of it shows, in this width.
    virtual double layOutPreview(const std::string& title, double width) = 0;
    /// Takes the bubble from an opacity to full view; 0 seconds mean at once.
    virtual void fadePreviewIn(double fromOpacity, double seconds) = 0;
};

} // namespace Kestry
