#include "TrayIcon.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QPainter>

#include <algorithm>
#include <utility>

#include "MarkPainting.h"
#include "NativeMenu.h"
#include "StatusFrame.h"
#include "SymbolPainting.h"

namespace Kestry {
namespace {

constexpr auto areaService = "org.kde.StatusNotifierWatcher";
constexpr int iconSize = 18;
constexpr double renderScale = 2.0;

/// A picture that reads on a dark area, as most are, and still on a light one: the area does not
/// tint what it is given.
template <class Draw>
QIcon drawnIcon(Draw draw)
{
    QPixmap picture(QSize(iconSize, iconSize) * renderScale);
    picture.setDevicePixelRatio(renderScale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    return QIcon(picture);
}

QIcon turnedMark(int frame)
{
    return drawnIcon([frame](QPainter& painter) {
        const double middle = iconSize / 2.0;
        painter.translate(middle, middle);
        painter.rotate(360.0 * frame / statusFrameCount);
        painter.translate(-middle, -middle);
        paintMark(painter, iconSize, Qt::white);
    });
}

} // namespace

TrayIcon::TrayIcon()
    : areas_(areaService, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForRegistration)
{
    connect(&areas_, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        hasArea_ = true;
        appear();
    });
}

TrayIcon::~TrayIcon() = default;

void TrayIcon::create(Menu menu)
{
    menu_ = std::make_unique<QMenu>();
    fillNativeMenu(*menu_, menu);
    const auto* bus = QDBusConnection::sessionBus().interface();
    hasArea_ = bus && bus->isServiceRegistered(areaService);
}

void TrayIcon::appear()
{
    // The toolkit looks for an area once, at its first icon: asked too early it never finds one.
    if (!hasArea_ || !menu_ || icon_.isNull() || tray_) {
        return;
    }
    tray_ = std::make_unique<QSystemTrayIcon>();
    tray_->setToolTip("Kestry");
    tray_->setIcon(icon_);
    tray_->setContextMenu(menu_.get());
    connect(tray_.get(), &QSystemTrayIcon::activated, this, &TrayIcon::activated);
    tray_->show();
}

void TrayIcon::activated(QSystemTrayIcon::ActivationReason reason)
{
    // Areas that keep the menu for the other button have the first entry on this one.
    if (reason == QSystemTrayIcon::Trigger && !menu_->isEmpty()) {
        menu_->actions().first()->trigger();
    }
}

void TrayIcon::remove()
{
    tray_.reset();
    menu_.reset();
    icon_ = {};
}

int TrayIcon::frameCount()
{
    if (frames_.empty()) {
        frames_.reserve(statusFrameCount);
        for (int frame = 0; frame < statusFrameCount; ++frame) {
            frames_.push_back(turnedMark(frame));
        }
        if (std::ranges::any_of(frames_, &QIcon::isNull)) {
            frames_.clear(); // half a turn would jump
        }
    }
    return static_cast<int>(frames_.size());
}

void TrayIcon::showFrame(int frame)
{
    setIcon(frames_.at(static_cast<std::size_t>(frame)));
}

void TrayIcon::showSymbol()
{
    setIcon(drawnIcon([](QPainter& painter) {
        const QByteArray drawing = symbolDrawing("circle.dotted.circle", Qt::white);
        paintSymbol(painter, drawing, QRectF(0, 0, iconSize, iconSize), 1.0);
    }));
}

void TrayIcon::setIcon(const QIcon& icon)
{
    icon_ = icon;
    if (tray_) {
        tray_->setIcon(icon);
    } else {
        appear();
    }
}

} // namespace Kestry
