#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>

#include "FileChooser.h"

namespace Kestry {

/// The dialog for files of the desktop's portal.
class PortalFileChooser final : public QObject, public FileChooser {
    Q_OBJECT
public:
    using Bus = std::function<QDBusConnection()>;

    /// `bus` is called with the first question: the session bus is connected to no earlier. The
    /// portal opens its dialog within `patienceMilliseconds`, or there is none.
    explicit PortalFileChooser(
        Bus bus = [] { return QDBusConnection::sessionBus(); }, int patienceMilliseconds = 5000);

    void ask(const FileQuestion& question, Answered answered) override;

private slots:
    void responded(uint code, const QVariantMap& results);

private:
    void call(const FileQuestion& question);
    void listenAt(const QString& request);
    void closeDialog();
    void finish(const FileAnswer& answer);

    Bus bus_;
    int patienceMilliseconds_;
    QDBusServiceWatcher portal_;
    QString request_; ///< The object that answers; empty while nothing is asked.
    Answered answered_;
    int number_ = 0; ///< Of the question.
};

} // namespace Kestry
