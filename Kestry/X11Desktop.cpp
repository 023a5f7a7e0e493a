#include "X11Desktop.h"

#include <QGuiApplication>
#include <QSocketNotifier>

#include <cstdlib>
#include <string>
#include <utility>

#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace Kestry {
namespace {

template <class Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply)
{
    return {reply, &std::free};
}

xcb_connection_t* connection()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_window_t focusedWindow(xcb_connection_t* display)
{
    const auto reply =
        owned(xcb_get_input_focus_reply(display, xcb_get_input_focus(display), nullptr));
    return reply ? reply->focus : XCB_NONE;
}

bool isPress(const xcb_generic_event_t& event, std::uint8_t inputExtension)
{
    if ((event.response_type & 0x7F) != XCB_GE_GENERIC) {
        return false;
    }
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.extension != inputExtension || generic.event_type != XCB_INPUT_RAW_BUTTON_PRESS) {
        return false;
    }
    const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    return press.detail == XCB_BUTTON_INDEX_1 || press.detail == XCB_BUTTON_INDEX_3;
}

} // namespace

/// Raw button events of the root window, on a connection of its own: the toolkit chooses what it
/// is told on its connection, and would undo ours.
class X11Desktop::ClickMonitor {
public:
    explicit ClickMonitor(std::function<void()> clicked)
        : display_(xcb_connect(nullptr, &screen_), &xcb_disconnect), clicked_(std::move(clicked))
    {
        if (xcb_connection_has_error(display_.get()) || !selectRawButtons()) {
            return;
        }
        notifier_ = std::make_unique<QSocketNotifier>(
            xcb_get_file_descriptor(display_.get()), QSocketNotifier::Read);
        QObject::connect(
            notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] { drain(); });
        drain(); // what arrived together with the replies raises no notification
    }

private:
    bool selectRawButtons()
    {
        const auto* extension = xcb_get_extension_data(display_.get(), &xcb_input_id);
        // From version 2.1 on raw events arrive even while others hold the pointer.
        const auto version = owned(xcb_input_xi_query_version_reply(
            display_.get(), xcb_input_xi_query_version(display_.get(), 2, 2), nullptr));
        if (!extension || !extension->present || !version) {
            return false;
        }
        extension_ = extension->major_opcode;
        struct {
            xcb_input_event_mask_t head;
            std::uint32_t events;
        } const mask{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS};
        auto roots = xcb_setup_roots_iterator(xcb_get_setup(display_.get()));
        for (int index = 0; index < screen_; ++index) {
            xcb_screen_next(&roots);
        }
        xcb_input_xi_select_events(display_.get(), roots.data->root, 1, &mask.head);
        xcb_flush(display_.get());
        return true;
    }

    void drain()
    {
        bool wasPressed = false;
        while (const auto event = owned(xcb_poll_for_event(display_.get()))) {
            wasPressed = isPress(*event, extension_) || wasPressed;
        }
        if (xcb_connection_has_error(display_.get())) {
            notifier_->setEnabled(false); // a closed connection would stay readable for ever
        }
        if (wasPressed) {
            clicked_();
        }
    }

    int screen_ = 0;
    std::uint8_t extension_ = 0;
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> display_;
    std::function<void()> clicked_;
    std::unique_ptr<QSocketNotifier> notifier_;
};

X11Desktop::X11Desktop() = default;
X11Desktop::~X11Desktop() = default;

bool X11Desktop::isComposited() const
{
    xcb_connection_t* display = connection();
    if (!display) {
        return true;
    }
    const std::string selection = "_NET_WM_CM_S0";
    const auto name = owned(xcb_intern_atom_reply(display,
        xcb_intern_atom(
            display, 0, static_cast<std::uint16_t>(selection.size()), selection.c_str()),
        nullptr));
    const auto owner = name ? owned(xcb_get_selection_owner_reply(
                           display, xcb_get_selection_owner(display, name->atom), nullptr))
                            : owned<xcb_get_selection_owner_reply_t>(nullptr);
    return owner && owner->owner != XCB_NONE;
}

void X11Desktop::takeKeyboard(QWindow& window)
{
    if (xcb_connection_t* display = connection()) {
        const xcb_window_t focused = focusedWindow(display);
        if (focused != static_cast<xcb_window_t>(window.winId())) {
            previousFocus_ = focused;
        }
    }
    window.requestActivate();
}

void X11Desktop::giveKeyboardBack(const QWindow& window)
{
    xcb_connection_t* display = connection();
    const xcb_window_t previous = std::exchange(previousFocus_, XCB_NONE);
    if (!display || previous == XCB_NONE
        || focusedWindow(display) != static_cast<xcb_window_t>(window.winId())) {
        return;
    }
    // The remembered window may be gone by now; the error that this brings is harmless.
    xcb_set_input_focus(display, XCB_INPUT_FOCUS_PARENT, previous, XCB_CURRENT_TIME);
    xcb_flush(display);
}

void X11Desktop::watchClicks(std::function<void()> clicked)
{
    if (connection()) {
        clicks_ = std::make_unique<ClickMonitor>(std::move(clicked));
    }
}

} // namespace Kestry
