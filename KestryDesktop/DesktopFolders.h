#pragma once

#include <QObject>
#include <QProcess>
#include <QTimer>

#include "FolderOpener.h"
#include "PortalRequest.h"

namespace Kestry {

/// Opens folders by what the desktop has for it, in this order: its portal, its file manager by
/// the name on the bus, and the program `xdg-open`.
class DesktopFolders final : public QObject, public FolderOpener {
    Q_OBJECT
public:
    /// `bus` is called with the first folder. Each of them has `patienceMilliseconds` to answer; a
    /// program that still runs then has taken the folder.
    explicit DesktopFolders(
        PortalRequest::Bus bus = [] { return QDBusConnection::sessionBus(); },
        int patienceMilliseconds = 3000);
    ~DesktopFolders() override;

    void open(const QString& folder, Answered answered) override;

private:
    void askPortal();
    void askFileManager();
    void runProgram();
    void waitNoLongerThan(std::function<void()> late);
    void finish(bool isOpened);

    PortalRequest::Bus bus_;
    int patienceMilliseconds_;
    PortalRequest portal_;
    QTimer patience_;
    std::function<void()> late_; ///< What then is done.
    QProcess program_;
    QString folder_;
    Answered answered_;
    int number_ = 0; ///< Of the folder.
};

} // namespace Kestry
