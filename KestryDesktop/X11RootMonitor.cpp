#include "X11RootMonitor.h"

#include <algorithm>
#include <utility>

#include <xcb/randr.h>
#include <xcb/xinput.h>

#include "X11Reply.h"

namespace Kestry {

X11RootMonitor::X11RootMonitor(DesktopActions actions)
    : display_(xcb_connect(nullptr, &screen_), &xcb_disconnect), actions_(std::move(actions))
{
    if (xcb_connection_has_error(display_.get()) || !selectRawButtons()) {
        return;
    }
    selectProperties();
    selectOutputs();
    notifier_ = std::make_unique<QSocketNotifier>(
        xcb_get_file_descriptor(display_.get()), QSocketNotifier::Read);
    QObject::connect(
        notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { drain(); });
    drain(); // what arrived together with the replies raises no notification
}

xcb_window_t X11RootMonitor::root() const
{
    auto roots = xcb_setup_roots_iterator(xcb_get_setup(display_.get()));
    for (int index = 0; index < screen_; ++index) {
        xcb_screen_next(&roots);
    }
    return roots.data->root;
}

bool X11RootMonitor::selectRawButtons()
{
    const auto* extension = xcb_get_extension_data(display_.get(), &xcb_input_id);
    // From version 2.1 on raw events arrive even while others hold the pointer.
    const auto version = owned(xcb_input_xi_query_version_reply(
        display_.get(), xcb_input_xi_query_version(display_.get(), 2, 2), nullptr));
    if (!extension || !extension->present || !version) {
        return false;
    }
    inputExtension_ = extension->major_opcode;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t events;
    } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
    xcb_input_xi_select_events(display_.get(), root(), 1, &mask.head);
    return true;
}

void X11RootMonitor::selectProperties()
{
    stackingAtoms_ = {atom(display_.get(), "_NET_CLIENT_LIST_STACKING"),
        atom(display_.get(), "_NET_ACTIVE_WINDOW")};
    workAreaAtom_ = atom(display_.get(), "_NET_WORKAREA");
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(display_.get(), root(), XCB_CW_EVENT_MASK, &events);
    xcb_flush(display_.get());
}

void X11RootMonitor::selectOutputs()
{
    const auto* extension = xcb_get_extension_data(display_.get(), &xcb_randr_id);
    const auto version = owned(xcb_randr_query_version_reply(
        display_.get(), xcb_randr_query_version(display_.get(), 1, 3), nullptr));
    if (!extension || !extension->present || !version) {
        return;
    }
    firstOutputEvent_ = extension->first_event;
    xcb_randr_select_input(display_.get(), root(), XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE);
    xcb_flush(display_.get());
}

bool X11RootMonitor::isOutputChange(const xcb_generic_event_t& event) const
{
    return firstOutputEvent_ != 0
        && (event.response_type & 0x7F) == firstOutputEvent_ + XCB_RANDR_NOTIFY;
}

bool X11RootMonitor::isPress(const xcb_generic_event_t& event) const
{
    if ((event.response_type & 0x7F) != XCB_GE_GENERIC) {
        return false;
    }
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.extension != inputExtension_ || generic.event_type != XCB_INPUT_RAW_BUTTON_PRESS) {
        return false;
    }
    const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    return press.detail == XCB_BUTTON_INDEX_1 || press.detail == XCB_BUTTON_INDEX_3;
}

void X11RootMonitor::note(const xcb_generic_event_t& event, Changes& changes) const
{
    changes.clicked = changes.clicked || isPress(event);
    changes.workAreaChanged = changes.workAreaChanged || isOutputChange(event);
    if ((event.response_type & 0x7F) == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        const bool isStacking =
            std::ranges::find(stackingAtoms_, change.atom) != stackingAtoms_.end();
        changes.restacked = changes.restacked || isStacking;
        changes.workAreaChanged = changes.workAreaChanged || change.atom == workAreaAtom_;
    }
}

void X11RootMonitor::drain()
{
    Changes changes;
    while (const auto event = owned(xcb_poll_for_event(display_.get()))) {
        note(*event, changes);
    }
    if (xcb_connection_has_error(display_.get())) {
        notifier_->setEnabled(false); // a closed connection would stay readable for ever
    }
    if (changes.clicked) {
        actions_.clicked();
    }
    if (changes.workAreaChanged) {
        actions_.workAreaChanged();
    }
    if (changes.restacked) {
        actions_.restacked();
    }
}

} // namespace Kestry
