#include "WaylandKeyboard.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <unistd.h>
#include <wayland-client-protocol.h>

namespace Kestry {

namespace {

constexpr std::uint32_t seatVersion = 5; // the first in which seats and keyboards can be let go

const wl_proxy* proxy(wl_surface* surface)
{
    return reinterpret_cast<const wl_proxy*>(surface);
}

} // namespace

struct WaylandKeyboard::Listeners {
    static inline const wl_registry_listener registry{
        [](void* self, wl_registry*, std::uint32_t name, const char* interface,
            std::uint32_t version) {
            if (std::strcmp(interface, wl_seat_interface.name) == 0) {
                static_cast<WaylandKeyboard*>(self)->addSeat(name, version);
            }
        },
        [](void* self, wl_registry*, std::uint32_t name) {
            static_cast<WaylandKeyboard*>(self)->removeSeat(name);
        }};

    static inline const wl_keyboard_listener keyboard{
        [](void*, wl_keyboard*, std::uint32_t, std::int32_t keymap, std::uint32_t) {
            close(keymap); // the toolkit has one of its own
        },
        [](void* seat, wl_keyboard*, std::uint32_t, wl_surface* surface, wl_array*) {
            enter(*static_cast<Seat*>(seat), surface);
        },
        [](void* seat, wl_keyboard*, std::uint32_t, wl_surface*) {
            leave(*static_cast<Seat*>(seat));
        },
        [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t) {},
        [](void*, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t,
            std::uint32_t) {},
        [](void*, wl_keyboard*, std::int32_t, std::int32_t) {}};

    static inline const wl_seat_listener seat{
        [](void* data, wl_seat* seat, std::uint32_t capabilities) {
            auto& known = *static_cast<Seat*>(data);
            const bool hasKeyboard = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
            if (!hasKeyboard) {
                releaseKeyboard(known);
            } else if (!known.keyboard) {
                known.keyboard = wl_seat_get_keyboard(seat);
                wl_keyboard_add_listener(known.keyboard, &keyboard, &known);
            }
        },
        [](void*, wl_seat*, const char*) {}};
};

WaylandKeyboard::WaylandKeyboard(wl_display* display, Actions actions)
    : actions_(std::move(actions)), registry_(wl_display_get_registry(display))
{
    wl_registry_add_listener(registry_, &Listeners::registry, this);
}

WaylandKeyboard::~WaylandKeyboard()
{
    actions_ = {[](const wl_proxy*) {}, [](const wl_proxy*) {}};
    while (!seats_.empty()) {
        removeSeat(seats_.begin()->first);
    }
    wl_registry_destroy(registry_);
}

void WaylandKeyboard::addSeat(std::uint32_t name, std::uint32_t version)
{
    if (version < seatVersion) {
        return;
    }
    Seat& added = seats_[name];
    added.owner = this;
    added.seat =
        static_cast<wl_seat*>(wl_registry_bind(registry_, name, &wl_seat_interface, seatVersion));
    wl_seat_add_listener(added.seat, &Listeners::seat, &added);
}

void WaylandKeyboard::removeSeat(std::uint32_t name)
{
    const auto gone = seats_.find(name);
    if (gone == seats_.end()) {
        return;
    }
    releaseKeyboard(gone->second);
    wl_seat_release(gone->second.seat);
    seats_.erase(gone);
}

void WaylandKeyboard::releaseKeyboard(Seat& seat)
{
    leave(seat);
    if (wl_keyboard* keyboard = std::exchange(seat.keyboard, nullptr)) {
        wl_keyboard_release(keyboard);
    }
}

void WaylandKeyboard::enter(Seat& seat, wl_surface* surface)
{
    seat.entered = surface;
    seat.owner->actions_.entered(proxy(surface));
}

void WaylandKeyboard::leave(Seat& seat)
{
    // The compositor names the surface too, but not one that is gone already.
    if (wl_surface* surface = std::exchange(seat.entered, nullptr)) {
        seat.owner->actions_.left(proxy(surface));
    }
}

} // namespace Kestry
