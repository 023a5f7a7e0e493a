#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace Kestry {

/// What is asked of the desktop's portal.
struct PortalQuestion {
    QString interface;
    QString method;
    QVariantList arguments; ///< All but the options, which come last.
    QVariantMap options;    ///< Without the token, which is the request's own.
};

/// What became of it: 0 is done, 1 and above is not.
struct PortalAnswer {
    uint code = 0;
    QVariantMap results;
};

/// One question at a time to the desktop's portal, which answers by a signal of an object that it
/// makes for it.
class PortalRequest final : public QObject {
    Q_OBJECT
public:
    using Bus = std::function<QDBusConnection()>;
    /// Nullopt: there is no portal, it does not know the question, or it has gone.
    using Answered = std::function<void(const std::optional<PortalAnswer>& answer)>;

    /// `bus` is called with the first question: the session bus is connected to no earlier. `name`,
    /// of letters, is one that no other request of the program has. The portal takes a question
    /// within `patienceMilliseconds`, or there is none.
    PortalRequest(Bus bus, QString name, int patienceMilliseconds);

    /// What the portal calls the window that a dialog belongs to; empty where it has no name for
    /// it.
    [[nodiscard]] static QString parentWindow();

    /// Calls `answered` once, never before it returns. A question takes the place of the one
    /// before, which then is never answered.
    void ask(const PortalQuestion& question, Answered answered);
    /// Takes the question back, so that no dialog stays open whose answer nobody waits for.
    void close();

private slots:
    void responded(uint code, const QVariantMap& results);

private:
    void call(const PortalQuestion& question);
    void listenAt(const QString& request);
    void finish(const std::optional<PortalAnswer>& answer);

    Bus bus_;
    QString name_;
    int patienceMilliseconds_;
    QDBusServiceWatcher portal_;
    QString request_; ///< The object that answers; empty while nothing is asked.
    Answered answered_;
    int number_ = 0; ///< Of the question.
};

} // namespace Kestry
