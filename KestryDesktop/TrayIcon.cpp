#include "TrayIcon.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QPixmap>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformmenu.h>
#include <qpa/qplatformsystemtrayicon.h>
#include <qpa/qplatformtheme.h>

#include <algorithm>
#include <utility>

#include "StatusFrame.h"
#include "StatusPicture.h"

namespace Kestry {
namespace {

constexpr auto areaService = "org.kde.StatusNotifierWatcher";

QIcon iconOf(const QImage& picture)
{
    return QIcon(QPixmap::fromImage(picture, Qt::NoFormatConversion));
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

TrayIcon::~TrayIcon()
{
    remove();
}

void TrayIcon::create(Menu menu)
{
    entries_ = std::move(menu);
    const auto* bus = QDBusConnection::sessionBus().interface();
    hasArea_ = bus && bus->isServiceRegistered(areaService);
}

void TrayIcon::appear()
{
    // The toolkit looks for an area once, at its first icon: asked too early it never finds one.
    if (!hasArea_ || entries_.empty() || icon_.isNull() || tray_) {
        return;
    }
    tray_.reset(QGuiApplicationPrivate::platformTheme()->createPlatformSystemTrayIcon());
    if (!tray_) {
        return;
    }
    connect(tray_.get(), &QPlatformSystemTrayIcon::activated, this,
        [this](QPlatformSystemTrayIcon::ActivationReason reason) {
            // Areas that keep the menu for the other button have the first entry on this one.
            if (reason == QPlatformSystemTrayIcon::Trigger) {
                entries_.front().action();
            }
        });
    fillMenu();
    tray_->init();
    tray_->updateToolTip("Kestry");
    tray_->updateIcon(icon_);
    tray_->updateMenu(menu_.get());
}

void TrayIcon::fillMenu()
{
    menu_.reset(tray_->createMenu());
    for (const MenuEntry& entry : entries_) {
        std::unique_ptr<QPlatformMenuItem> item(menu_->createMenuItem());
        item->setIsSeparator(entry.kind == MenuEntry::Kind::separator);
        // An ampersand would mark the letter that chooses the entry.
        item->setText(QString::fromStdString(entry.text).replace('&', "&&"));
        item->setEnabled(entry.isEnabled);
        item->setVisible(true);
        if (entry.action) {
            connect(item.get(), &QPlatformMenuItem::activated, this, entry.action);
        }
        menu_->insertMenuItem(item.get(), nullptr);
        menuItems_.push_back(std::move(item));
    }
}

void TrayIcon::remove()
{
    if (tray_) {
        tray_->cleanup();
    }
    tray_.reset();
    menu_.reset();
    menuItems_.clear();
    entries_.clear();
    icon_ = {};
}

int TrayIcon::frameCount()
{
    if (frames_.empty()) {
        frames_.reserve(statusFrameCount);
        for (int frame = 0; frame < statusFrameCount; ++frame) {
            frames_.push_back(iconOf(statusMark(frame)));
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
    setIcon(iconOf(statusSymbol()));
}

void TrayIcon::setIcon(const QIcon& icon)
{
    icon_ = icon;
    if (tray_) {
        tray_->updateIcon(icon);
    } else {
        appear();
    }
}

} // namespace Kestry
