#pragma once

#include <QDBusServiceWatcher>
#include <QIcon>
#include <QObject>

#include <functional>
#include <memory>
#include <vector>

#include "StatusArea.h"

class QPlatformMenu;
class QPlatformMenuItem;
class QPlatformSystemTrayIcon;

namespace Kestry {

/// The item in a status area that speaks the StatusNotifierItem protocol. Without such an area, or
/// without a session bus, there is no item; it appears when an area comes later, as at log-in.
class TrayIcon final : public QObject, public StatusArea {
    Q_OBJECT
public:
    TrayIcon();
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;
    ~TrayIcon() override;

    void create(Menu menu) override;
    void remove() override;
    [[nodiscard]] int frameCount() override;
    void showFrame(int frame) override;
    void showSymbol() override;

private:
    void appear();
    void fillMenu();
    void setIcon(const QIcon& icon);

    QDBusServiceWatcher areas_;
    bool hasArea_ = false; ///< An area is, or was, on the bus.
    Menu entries_;         ///< Empty while there is no item.
    // The item goes first, then the menu that it shows, then the menu's entries.
    std::vector<std::unique_ptr<QPlatformMenuItem>> menuItems_;
    std::unique_ptr<QPlatformMenu> menu_;
    std::unique_ptr<QPlatformSystemTrayIcon> tray_;
    QIcon icon_;
    std::vector<QIcon> frames_;
};

} // namespace Kestry
