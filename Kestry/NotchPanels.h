#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "NotchGeometry.h"

namespace Kestry {

/// The strip, the panel that unfolds below it, and the bubble with a whole title below that.
enum class NotchPanel { bridge, detail, titlePreview };

/// How the detail content appears and disappears: at once, by the spring that unfolds it, or by the
/// shorter ease-out that folds it.
enum class RevealMotion { none, unfold, fold };

/// A number that tells one open menu from another.
using MenuIdentity = std::uint64_t;

/// What happens to the panels; the controller receives it.
class NotchPanelEvents {
public:
    NotchPanelEvents() = default;
    NotchPanelEvents(const NotchPanelEvents&) = delete;
    NotchPanelEvents& operator=(const NotchPanelEvents&) = delete;
    virtual ~NotchPanelEvents() = default;

    /// The pointer has entered the strip or the detail panel, or has left one of them.
    virtual void hover(bool inside) = 0;
    /// The pointer has entered the bubble or has left it.
    virtual void hoverPreview(bool inside) = 0;
    /// A mouse button was pressed on one of the panels.
    virtual void clickInside() = 0;
    /// A mouse button was pressed anywhere else, in this application or another.
    virtual void clickElsewhere() = 0;
    /// The detail panel has lost the keyboard.
    virtual void detailLostFocus() = 0;
    /// Editing of the title has begun or ended.
    virtual void editingChanged(bool editing) = 0;
    /// The detail content wants another height.
    virtual void resize(double height) = 0;
    /// A screen was added, removed, or its usable area has changed.
    virtual void screensChanged() = 0;
    /// The strip was pressed: the workspace window should open.
    virtual void openApp() = 0;
    /// The detail panel should fold, and the workspace window should open.
    virtual void dashboard() = 0;
    /// The pointer rests on a title that does not fit its field; nullopt when it no longer does.
    virtual void previewTitle(const std::optional<std::string>& title) = 0;
    /// The pointer has left that title.
    virtual void dismissPreview() = 0;
    /// A menu was opened or closed, from a panel or the window.
    virtual void menuOpened(MenuIdentity menu) = 0;
    virtual void menuClosed(MenuIdentity menu) = 0;
};

/// The panels' windows, commanded by the controller. They decide nothing themselves.
class NotchPanels {
public:
    NotchPanels() = default;
    NotchPanels(const NotchPanels&) = delete;
    NotchPanels& operator=(const NotchPanels&) = delete;
    virtual ~NotchPanels() = default;

    /// Sets the receiver of events; null for none. It must outlive the panels or be reset.
    virtual void deliverEventsTo(NotchPanelEvents* events) = 0;

    [[nodiscard]] virtual std::vector<ScreenMetrics> screens() const = 0;
    /// Where the user wants them. A change of it is told as one of the screens.
    [[nodiscard]] virtual PanelPlace wantedPlace() const = 0;
    /// Whether the pointer is within the panel's frame.
    [[nodiscard]] virtual bool pointerIsOver(NotchPanel panel) const = 0;
    /// Whether the user wants less motion.
    [[nodiscard]] virtual bool reducesMotion() const = 0;
    /// Whether the detail panel has the keyboard.
    [[nodiscard]] virtual bool detailHasFocus() const = 0;

    virtual void place(NotchPanel panel, const QRectF& frame) = 0;
    /// Shows a panel in front of all other windows, without giving it the keyboard.
    virtual void show(NotchPanel panel) = 0;
    virtual void hide(NotchPanel panel) = 0;
    /// Gives the keyboard to the detail panel.
    virtual void focusDetail() = 0;
    /// Ends typing in the detail panel. The keyboard, if it has it, returns to where it was.
    virtual void endEditing() = 0;
    /// Closes the menu that is open; does nothing without one.
    virtual void closeMenus() = 0;
    /// Adapts the content to a new layout. A title that is being typed is discarded.
    virtual void rebuildContent(const NotchMeasures& measures) = 0;

    virtual void setHovered(bool hovered) = 0;
    virtual void setShown(bool shown, RevealMotion motion) = 0;

    /// Puts a title into the bubble. Returns the height that shows all of it at this width.
    virtual double layOutPreview(const std::string& title, double width) = 0;
    /// Fades the bubble in from an opacity; at once for 0 seconds.
    virtual void fadePreviewIn(double fromOpacity, double seconds) = 0;
};

} // namespace Kestry
