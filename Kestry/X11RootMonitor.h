#pragma once

#include <QSocketNotifier>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include <xcb/xcb.h>

namespace Kestry {

/// What happens on the whole X11 desktop, wherever it happens. It listens on a connection of its
/// own: the toolkit chooses what it is told on its connection, and would undo ours.
class X11RootMonitor {
public:
    struct Actions {
        /// A mouse button went down, the wheel left out. Where, is for the pointer to tell.
        std::function<void()> clicked;
        /// The order of the windows, or the active one, has changed.
        std::function<void()> restacked;
    };

    /// Without a server to listen to it stays silent.
    explicit X11RootMonitor(Actions actions);

private:
    [[nodiscard]] xcb_window_t root() const;
    bool selectRawButtons();
    void selectProperties();
    [[nodiscard]] bool isPress(const xcb_generic_event_t& event) const;
    [[nodiscard]] bool isRestacking(const xcb_generic_event_t& event) const;
    void drain();

    int screen_ = 0;
    std::uint8_t inputExtension_ = 0;
    std::array<xcb_atom_t, 2> stackingAtoms_{};
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> display_;
    Actions actions_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace Kestry
