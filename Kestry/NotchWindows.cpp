#include "NotchWindows.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

#include <utility>

namespace Kestry {

NotchWindows::NotchWindows(QQmlEngine& engine, SessionBridge& session)
    : surface_(desktop_.isComposited()), bridge_(engine, "Kestry"),
      detail_(engine, "Kestry session controls")
{
    load(bridge_, "BridgeView", session);
    load(detail_, "NotchSessionView", session);
    connect(&detail_, &QWindow::activeChanged, this, &NotchWindows::detailActiveChanged);
    connect(&surface_, &NotchSurface::editingEnded, this, &NotchWindows::giveKeyboardBack);
    followScreens();
    desktop_.watchClicks([this] { mouseDown(); });
}

NotchWindows::~NotchWindows() = default;

void NotchWindows::load(PanelWindow& panel, const QString& view, SessionBridge& session)
{
    panel.setHoverAction([this](bool inside) {
        if (surface_.events()) {
            surface_.events()->hover(inside);
        }
    });
    panel.setInitialProperties(
        {{"session", QVariant::fromValue(&session)}, {"surface", QVariant::fromValue(&surface_)}});
    panel.setSource(QUrl("qrc:/Kestry/" + view + ".qml"));
}

void NotchWindows::followScreens()
{
    const auto changed = [this] {
        if (surface_.events()) {
            surface_.events()->screensChanged();
        }
    };
    const auto follow = [this, changed](QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, changed);
        connect(screen, &QScreen::geometryChanged, this, changed);
    };
    for (QScreen* screen : QGuiApplication::screens()) {
        follow(screen);
    }
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [follow, changed](QScreen* screen) {
        follow(screen);
        changed();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, changed, Qt::QueuedConnection);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, changed, Qt::QueuedConnection);
}

void NotchWindows::detailActiveChanged()
{
    if (!detail_.isActive() && std::exchange(detailIsKey_, false) && surface_.events()) {
        surface_.events()->detailResignedKey();
    }
}

void NotchWindows::giveKeyboardBack()
{
    detailIsKey_ = false;
    desktop_.giveKeyboardBack(detail_);
}

void NotchWindows::mouseDown()
{
    if (!surface_.events()) {
        return;
    }
    const QPointF at = pointer();
    const auto isHit = [&](const PanelWindow& panel) {
        return panel.isVisible() && QRectF(panel.geometry()).contains(at);
    };
    if (isHit(bridge_) || isHit(detail_)) {
        surface_.events()->clickInside();
    } else {
        surface_.events()->clickElsewhere();
    }
}

std::vector<ScreenMetrics> NotchWindows::screens() const
{
    std::vector<ScreenMetrics> metrics;
    for (const QScreen* screen : QGuiApplication::screens()) {
        metrics.push_back({.frame = screen->geometry(),
            .visibleFrame = screen->availableGeometry(),
            .isMain = screen == QGuiApplication::primaryScreen()});
    }
    return metrics;
}

QPointF NotchWindows::pointer() const
{
    return QCursor::pos();
}

PanelWindow& NotchWindows::window(NotchPanel panel)
{
    return panel == NotchPanel::bridge ? bridge_ : detail_;
}

void NotchWindows::place(NotchPanel panel, const QRectF& frame)
{
    window(panel).setGeometry(frame.toRect());
    if (!surface_.isComposited()) {
        // Where transparent corners would be black they are cut off instead.
        const bool isBridge = panel == NotchPanel::bridge;
        window(panel).cutCorners(isBridge ? bridgeCornerRadius : detailCornerRadius);
    }
}

void NotchWindows::orderFront(NotchPanel panel)
{
    window(panel).show();
    window(panel).raise();
}

void NotchWindows::orderOut(NotchPanel panel)
{
    window(panel).hide();
}

void NotchWindows::makeDetailKey()
{
    detailIsKey_ = true;
    desktop_.takeKeyboard(detail_);
}

void NotchWindows::clearFirstResponder()
{
    emit surface_.focusCleared();
    giveKeyboardBack();
}

} // namespace Kestry
