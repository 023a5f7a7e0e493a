#include "WorkspaceWindow.h"

#include <QGuiApplication>
#include <QScreen>

#include <malloc.h>

#include <utility>

#include "FrameNow.h"
#include "WindowPlacement.h"

namespace Kestry {
namespace {

constexpr QSize minimumSize(760, 520);

constexpr const char* placeKey = "windowPlace";
constexpr const char* maximizedKey = "windowMaximized";

// A window that is moved or resized changes very often.
constexpr double rememberDelaySeconds = 0.5;

// Long enough for closing it by mistake, or looking something up again.
constexpr double unloadDelaySeconds = 60.0;

/// Whether the desktop tells where a window is, and lets it choose.
bool knowsPositions()
{
    return !QGuiApplication::platformName().startsWith("wayland");
}

std::vector<QRect> screenAreas()
{
    std::vector<QRect> areas{QGuiApplication::primaryScreen()->availableGeometry()};
    for (const QScreen* screen : QGuiApplication::screens()) {
        areas.push_back(screen->availableGeometry());
    }
    return areas;
}

} // namespace

WorkspaceWindow::WorkspaceWindow(QQmlEngine& engine, AppState& state, UserDefaults& defaults,
    KestryCore::Scheduler& scheduler, Load load)
    : engine_(engine), state_(state), defaults_(defaults), scheduler_(scheduler),
      load_(std::move(load))
{
    state_.dashboardInitialized = true; // from now on it exists, hidden
    state_.installOpenDashboard([this] { open(); });
}

WorkspaceWindow::~WorkspaceWindow()
{
    state_.installOpenDashboard(nullptr);
    if (isOpen()) {
        remember();
    }
}

void WorkspaceWindow::prepare(const QUrl& view)
{
    view_ = std::make_unique<QQmlComponent>(&engine_, view, QQmlComponent::Asynchronous);
    QQmlComponent samples(&engine_, QUrl("qrc:/KestryItems/FontSamples.qml"));
    fonts_.reset(samples.create());
}

void WorkspaceWindow::open()
{
    unload_.cancel();
    if (!window_) {
        make();
    } else if (!window_->isVisible()) {
        place();
    }
    window_->setWindowStates(window_->windowStates() & ~Qt::WindowMinimized);
    window_->setVisible(true);
    window_->raise();
    window_->requestActivate();
}

void WorkspaceWindow::showNow()
{
    if (window_) {
        showFrameNow(*window_);
    }
}

void WorkspaceWindow::make()
{
    window_ = std::make_unique<QQuickView>(&engine_, nullptr);
    window_->setTitle("Kestry");
    window_->setResizeMode(QQuickView::SizeRootObjectToView);
    window_->setMinimumSize(minimumSize);
    place(); // first: a view that gets its size later arranges all that it has once more
    load_(*window_);
    connect(window_.get(), &QWindow::visibleChanged, this, &WorkspaceWindow::visibilityChanged);
    for (const auto changed :
        {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged}) {
        connect(window_.get(), changed, this, &WorkspaceWindow::rememberSoon);
    }
    connect(window_.get(), &QWindow::windowStateChanged, this, &WorkspaceWindow::rememberSoon);
}

void WorkspaceWindow::place()
{
    const WindowPlace place =
        windowPlace(placeFrom(defaults_.string(placeKey).value_or("")), screenAreas(), minimumSize);
    window_->resize(place.size);
    if (knowsPositions()) {
        window_->setFramePosition(place.position);
    }
    window_->setWindowStates(
        defaults_.boolean(maximizedKey).value_or(false) ? Qt::WindowMaximized : Qt::WindowNoState);
}

void WorkspaceWindow::rememberSoon()
{
    if (isOpen()) {
        remember_ = scheduler_.after(rememberDelaySeconds, [this] { remember(); });
    }
}

void WorkspaceWindow::remember()
{
    remember_.cancel();
    const Qt::WindowStates states = window_->windowStates();
    if (states.testFlag(Qt::WindowMinimized) || states.testFlag(Qt::WindowFullScreen)) {
        return;
    }
    const bool isMaximized = states.testFlag(Qt::WindowMaximized);
    if (defaults_.boolean(maximizedKey).value_or(false) != isMaximized) {
        defaults_.setBoolean(maximizedKey, isMaximized);
    }
    // Where it is while it is maximised is not where it goes back to.
    const std::string place = placeText({window_->framePosition(), window_->size()});
    if (!isMaximized && defaults_.string(placeKey) != place) {
        defaults_.setString(placeKey, place);
    }
}

void WorkspaceWindow::visibilityChanged(bool visible)
{
    unload_.cancel();
    if (!visible) {
        remember();
        unload_ = scheduler_.after(unloadDelaySeconds, [this] { unload(); });
    }
}

void WorkspaceWindow::unload()
{
    window_.reset();
    engine_.collectGarbage(); // first: what waits for it holds on to its type
    engine_.trimComponentCache();
    malloc_trim(0); // what is free goes back to the system only when asked to
}

} // namespace Kestry
