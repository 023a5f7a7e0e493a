#pragma once

#include <cstdint>
#include <functional>
#include <map>

#include <wayland-client-core.h>

struct wl_keyboard;
struct wl_registry;
struct wl_seat;
struct wl_surface;

namespace Kestry {

/// Reports each time that a surface of this program gets or loses the keyboard. The toolkit leaves
/// out a loss that is followed by a gain at once. Some compositors send only such a pair for a
/// click elsewhere while a layer has the keyboard exclusively.
class WaylandKeyboard {
public:
    struct Actions {
        std::function<void(const wl_proxy* surface)> entered;
        std::function<void(const wl_proxy* surface)> left;
    };

    /// The display must outlive the keyboard. The actions are called when the display dispatches
    /// its events.
    WaylandKeyboard(wl_display* display, Actions actions);
    WaylandKeyboard(const WaylandKeyboard&) = delete;
    WaylandKeyboard& operator=(const WaylandKeyboard&) = delete;
    ~WaylandKeyboard();

private:
    /// The input devices of one user.
    struct Seat {
        const WaylandKeyboard* owner = nullptr;
        wl_seat* seat = nullptr;
        wl_keyboard* keyboard = nullptr; ///< Null while there is none.
        wl_surface* entered = nullptr;   ///< Of ours; null while the keyboard is elsewhere.
    };
    struct Listeners;

    void addSeat(std::uint32_t name, std::uint32_t version);
    void removeSeat(std::uint32_t name);
    static void enter(Seat& seat, wl_surface* surface);
    static void leave(Seat& seat);
    static void releaseKeyboard(Seat& seat);

    Actions actions_;
    wl_registry* registry_;
    std::map<std::uint32_t, Seat> seats_; ///< By the compositor's numbers; they stay in place.
};

} // namespace Kestry
