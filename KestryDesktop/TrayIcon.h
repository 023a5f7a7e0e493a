#pragma once

#include <QDBusServiceWatcher>
#include <QIcon>
#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <memory>
#include <vector>

#include "StatusArea.h"

namespace Kestry {

/// The item in a status area that speaks the StatusNotifierItem protocol. Without such an area
/// there is simply no item; it appears when an area comes up later, as it does at log-in.
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
    void activated(QSystemTrayIcon::ActivationReason reason);
    void setIcon(const QIcon& icon);

    QDBusServiceWatcher areas_;
    bool hasArea_ = false; ///< There is, or was, one on the bus.
    std::unique_ptr<QMenu> menu_;
    std::unique_ptr<QSystemTrayIcon> tray_;
    QIcon icon_;
    std::vector<QIcon> frames_;
};

} // namespace Kestry
