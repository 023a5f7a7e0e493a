#include "WorkspaceWindow.h"

#include <QScreen>

#include <utility>

#include "FrameNow.h"

namespace Kestry {
namespace {

constexpr QSize defaultSize(1200, 820);
constexpr QSize minimumSize(760, 520);
// What a window manager puts around it, and some of the desktop to be seen beside it.
constexpr QSize frameSize(40, 80);

// Long enough for closing it by mistake, or looking something up again.
constexpr double unloadDelaySeconds = 60.0;

} // namespace

WorkspaceWindow::WorkspaceWindow(
    QQmlEngine& engine, AppState& state, KestryCore::Scheduler& scheduler, Load load)
    : engine_(engine), state_(state), scheduler_(scheduler), load_(std::move(load))
{
    state_.dashboardInitialized = true; // from now on it exists, hidden
    state_.installOpenDashboard([this] { open(); });
}

WorkspaceWindow::~WorkspaceWindow()
{
    state_.installOpenDashboard(nullptr);
}

void WorkspaceWindow::open()
{
    unload_.cancel();
    if (!window_) {
        make();
    }
    if (window_->windowStates().testFlag(Qt::WindowMinimized)) {
        window_->showNormal();
    } else {
        window_->show();
    }
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
    const QSize room = window_->screen()->availableGeometry().size() - frameSize;
    window_->resize(defaultSize.boundedTo(room).expandedTo(minimumSize));
    load_(*window_);
    connect(window_.get(), &QWindow::visibleChanged, this, &WorkspaceWindow::visibilityChanged);
}

void WorkspaceWindow::visibilityChanged(bool visible)
{
    unload_.cancel();
    if (!visible) {
        unload_ = scheduler_.after(unloadDelaySeconds, [this] {
            window_.reset();
            engine_.trimComponentCache();
            engine_.collectGarbage();
        });
    }
}

} // namespace Kestry
