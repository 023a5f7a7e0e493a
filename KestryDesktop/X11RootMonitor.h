#pragma once

#include <QSocketNotifier>

#include <array>
#include <cstdint>
#include <memory>

#include <xcb/xcb.h>

#include "PanelStage.h"

namespace Kestry {

/// Reports what happens on the whole X11 desktop. It has a connection of its own, because the
/// toolkit selects the events of its connection and would undo our selection.
class X11RootMonitor {
public:
    /// Calls the actions from the event loop; never without a server.
    explicit X11RootMonitor(DesktopActions actions);

private:
    /// The actions that a batch of events leads to.
    struct Changes {
        bool clicked = false;
        bool restacked = false;
        bool workAreaChanged = false;
    };

    [[nodiscard]] xcb_window_t root() const;
    bool selectRawButtons();
    void selectProperties();
    void selectOutputs();
    [[nodiscard]] bool isOutputChange(const xcb_generic_event_t& event) const;
    [[nodiscard]] bool isPress(const xcb_generic_event_t& event) const;
    void note(const xcb_generic_event_t& event, Changes& changes) const;
    void drain();

    int screen_ = 0;
    std::uint8_t inputExtension_ = 0;
    std::uint8_t firstOutputEvent_ = 0; ///< 0 where the server has no such events.
    std::array<xcb_atom_t, 2> stackingAtoms_{};
    xcb_atom_t workAreaAtom_ = XCB_ATOM_NONE;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> display_;
    DesktopActions actions_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace Kestry
