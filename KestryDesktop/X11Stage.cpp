#include "X11Stage.h"

#include <QBitmap>
#include <QCursor>
#include <QGuiApplication>
#include <QPainter>
#include <QTimer>

#include <algorithm>
#include <utility>
#include <vector>

#include <xcb/randr.h>
#include <xcb/shape.h>

#include "ScreenStruts.h"
#include "X11Reply.h"

namespace Kestry {
namespace {

// Another program may be about to end a grab of its own.
constexpr int grabAttempts = 20;
constexpr int grabPauseMilliseconds = 25;

xcb_connection_t* connection()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

/// None for a window that the server has not heard of.
xcb_window_t nativeWindow(const QWindow& window)
{
    return window.handle() ? static_cast<xcb_window_t>(window.winId()) : xcb_window_t{XCB_NONE};
}

QSize nativeSize(const QWindow& window, QSize size)
{
    return (QSizeF(size) * window.devicePixelRatio()).toSize();
}

xcb_window_t focusedWindow(xcb_connection_t* display)
{
    const auto reply =
        owned(xcb_get_input_focus_reply(display, xcb_get_input_focus(display), nullptr));
    return reply ? reply->focus : XCB_NONE;
}

xcb_window_t rootWindow(xcb_connection_t* display)
{
    return xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
}

/// A property that is a list of numbers; empty when it is absent.
std::vector<std::uint32_t> numbers(
    xcb_connection_t* display, xcb_window_t window, xcb_atom_t property)
{
    constexpr std::uint32_t all = 1 << 20;
    const auto reply = owned(xcb_get_property_reply(display,
        xcb_get_property(display, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, all),
        nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

std::vector<ScreenStrut> panelStruts(xcb_connection_t* display)
{
    const xcb_atom_t strutProperty = atom(display, "_NET_WM_STRUT_PARTIAL");
    std::vector<ScreenStrut> struts;
    for (const xcb_window_t client :
        numbers(display, rootWindow(display), atom(display, "_NET_CLIENT_LIST"))) {
        const auto strut = numbers(display, client, strutProperty);
        if (strut.size() == 12) {
            const auto edge = [&strut](std::size_t depth, std::size_t span) {
                return ScreenStrut::Edge{static_cast<int>(strut[depth]),
                    static_cast<int>(strut[span]), static_cast<int>(strut[span + 1])};
            };
            struts.push_back({edge(0, 4), edge(1, 6), edge(2, 8), edge(3, 10)});
        }
    }
    return struts;
}

QSize desktopSize(xcb_connection_t* display)
{
    const auto root = owned(
        xcb_get_geometry_reply(display, xcb_get_geometry(display, rootWindow(display)), nullptr));
    return root ? QSize(root->width, root->height) : QSize();
}

/// Whether the server shows its desktop anywhere. One that cannot tell has a screen.
bool hasActiveOutput(xcb_connection_t* display)
{
    const auto* extension = xcb_get_extension_data(display, &xcb_randr_id);
    if (!extension || !extension->present) {
        return true;
    }
    const auto resources = owned(xcb_randr_get_screen_resources_current_reply(
        display, xcb_randr_get_screen_resources_current(display, rootWindow(display)), nullptr));
    if (!resources || resources->num_crtcs == 0) {
        return true;
    }
    const xcb_randr_crtc_t* first = xcb_randr_get_screen_resources_current_crtcs(resources.get());
    return std::any_of(first, first + resources->num_crtcs, [&](xcb_randr_crtc_t crtc) {
        const auto info = owned(xcb_randr_get_crtc_info_reply(
            display, xcb_randr_get_crtc_info(display, crtc, resources->config_timestamp), nullptr));
        return info && info->mode != XCB_NONE;
    });
}

bool hasCompositor(xcb_connection_t* display)
{
    const auto owner = owned(xcb_get_selection_owner_reply(
        display, xcb_get_selection_owner(display, atom(display, "_NET_WM_CM_S0")), nullptr));
    return owner && owner->owner != XCB_NONE;
}

/// Lets the mouse through to what is below a window, but for a rectangle at its upper left.
void limitInput(QWindow& window, QSize size)
{
    xcb_connection_t* display = connection();
    if (!display || window.flags().testFlag(Qt::WindowTransparentForInput)) {
        return;
    }
    window.create();
    const QSize open = nativeSize(window, size);
    const xcb_rectangle_t rectangle{
        0, 0, static_cast<std::uint16_t>(open.width()), static_cast<std::uint16_t>(open.height())};
    xcb_shape_rectangles(display, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED,
        nativeWindow(window), 0, 0, 1, &rectangle);
    xcb_flush(display);
}

QBitmap roundedShape(QSize size, double radius)
{
    QBitmap shape(size);
    shape.clear();
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRectF(QPointF(), QSizeF(size)), radius, radius);
    return shape;
}

} // namespace

X11Stage::X11Stage() : isComposited_(!connection() || hasCompositor(connection())) { }

X11Stage::~X11Stage()
{
    QObject::disconnect(activity_);
}

void X11Stage::takeKeyboard(PanelWindow& panel)
{
    QObject::disconnect(activity_);
    activity_ = QObject::connect(&panel, &QWindow::activeChanged, &panel, [this, &panel] {
        if (!panel.isActive() && actions_.keyboardLost) {
            actions_.keyboardLost();
        }
    });
    if (xcb_connection_t* display = connection()) {
        const xcb_window_t focused = focusedWindow(display);
        if (focused != nativeWindow(panel)) {
            previousFocus_ = focused;
        }
    }
    panel.requestActivate();
}

void X11Stage::giveKeyboardBack(PanelWindow& panel)
{
    xcb_connection_t* display = connection();
    const xcb_window_t previous = std::exchange(previousFocus_, XCB_NONE);
    if (!display || previous == XCB_NONE || focusedWindow(display) != nativeWindow(panel)) {
        return;
    }
    const auto refusal = owned(xcb_request_check(display,
        xcb_set_input_focus_checked(display, XCB_INPUT_FOCUS_PARENT, previous, XCB_CURRENT_TIME)));
    if (refusal) { // that window is gone: let the keyboard follow the pointer
        xcb_set_input_focus(
            display, XCB_INPUT_FOCUS_PARENT, XCB_INPUT_FOCUS_POINTER_ROOT, XCB_CURRENT_TIME);
        xcb_flush(display);
    }
}

void X11Stage::frameChanged(PanelWindow& panel, double radius)
{
    if (isComposited_) {
        limitInput(panel, panel.frame().size());
    } else {
        // Where what is transparent would be black it is cut off instead.
        panel.create(); // only a window that exists takes a mask
        panel.setMask(roundedShape(panel.frame().size(), radius));
    }
}

void X11Stage::show(PanelWindow& panel)
{
    panel.show();
    panel.raise();
}

void X11Stage::popupFrameChanged(PanelWindow& popup, double radius)
{
    frameChanged(popup, radius);
}

void X11Stage::openMenu(PanelWindow& menu, QWindow&)
{
    show(menu);
    if (connection()) {
        grab(menu, grabAttempts);
    }
}

void X11Stage::grab(PanelWindow& menu, int attemptsLeft)
{
    const bool hasKeys = menu.setKeyboardGrabEnabled(true);
    const bool hasPointer = menu.setMouseGrabEnabled(true);
    if (hasKeys && hasPointer) {
        return;
    }
    if (attemptsLeft == 0) {
        if (!hasPointer) {
            reportMenuLost(); // no press beside the menu would close it
        }
        return;
    }
    QTimer::singleShot(grabPauseMilliseconds, &menu, [this, &menu, attemptsLeft] {
        if (menu.isVisible()) {
            grab(menu, attemptsLeft - 1);
        }
    });
}

void X11Stage::closeMenu(PanelWindow& menu)
{
    if (connection()) {
        menu.setKeyboardGrabEnabled(false);
        menu.setMouseGrabEnabled(false);
    }
    menu.hide();
}

bool X11Stage::pointerIsOver(const PanelWindow& panel) const
{
    xcb_connection_t* display = connection();
    if (!display || nativeWindow(panel) == XCB_NONE) {
        return panel.isEntered();
    }
    const auto pointer = owned(
        xcb_query_pointer_reply(display, xcb_query_pointer(display, nativeWindow(panel)), nullptr));
    const QRect open({}, nativeSize(panel, panel.frame().size()));
    return pointer && pointer->same_screen && open.contains(pointer->win_x, pointer->win_y);
}

bool X11Stage::isPresent(const QScreen& screen) const
{
    // With its last output gone the toolkit goes on with that screen.
    xcb_connection_t* display = connection();
    return PanelStage::isPresent(screen) && (!display || hasActiveOutput(display));
}

std::optional<QPoint> X11Stage::pointerPlace() const
{
    return QCursor::pos();
}

QRectF X11Stage::visibleFrame(const QScreen& screen) const
{
    xcb_connection_t* display = connection();
    // The window managers' own word is one rectangle for all monitors together; the toolkit
    // follows it on a single one, and on several takes each as a whole.
    if (!display || QGuiApplication::screens().size() < 2) {
        return screen.availableGeometry();
    }
    // A screen keeps its place in the server's pixels, only its size is scaled.
    const QPoint origin = screen.geometry().topLeft();
    const double ratio = screen.devicePixelRatio();
    const QSize native = (QSizeF(screen.geometry().size()) * ratio).toSize();
    const QRect left = withoutStruts({origin, native}, desktopSize(display), panelStruts(display));
    return {origin + QPointF(left.topLeft() - origin) / ratio, QSizeF(left.size()) / ratio};
}

void X11Stage::monitor(const DesktopActions& actions)
{
    actions_ = actions;
    if (connection()) {
        monitor_ = std::make_unique<X11RootMonitor>(actions);
    }
}

} // namespace Kestry
