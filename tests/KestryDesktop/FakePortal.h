#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QProcess>

#include <utility>

namespace Kestry {

/// A message bus of the test's own.
class PrivateBus {
public:
    PrivateBus()
    {
        daemon_.start("dbus-daemon", {"--session", "--nofork", "--nopidfile", "--print-address=1"});
        daemon_.waitForReadyRead();
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus()
    {
        daemon_.kill();
        daemon_.waitForFinished();
    }

    [[nodiscard]] QDBusConnection connect(const QString& name) const
    {
        return QDBusConnection::connectToBus(address_, name);
    }

private:
    QProcess daemon_;
    QString address_;
};

/// A portal that is answered for by the test.
class FakePortal final : public QDBusVirtualObject {
public:
    enum class Habit { repliesAtOnce, hasItsOwnHandle, repliesWhenTold, refuses };

    explicit FakePortal(QDBusConnection bus, Habit habit = Habit::repliesAtOnce)
        : bus_(std::move(bus)), habit_(habit)
    {
        bus_.registerVirtualObject(desktopPath, this, QDBusConnection::SubPath);
        bus_.registerService(service);
    }
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;
    ~FakePortal() override { end(); }

    void end()
    {
        bus_.unregisterService(service);
        bus_.unregisterObject(desktopPath, QDBusConnection::UnregisterTree);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*bus*/) override
    {
        if (message.member() == "Close") {
            closed << message.path();
            return true;
        }
        asked.append(message);
        options = qdbus_cast<QVariantMap>(message.arguments().back());
        QString sender = message.service().mid(1);
        requests << (habit_ == Habit::hasItsOwnHandle
                ? QString("/org/freedesktop/portal/desktop/request/old")
                : QString("%1/request/%2/%3")
                      .arg(desktopPath, sender.replace('.', '_'),
                          options["handle_token"].toString()));
        if (habit_ == Habit::refuses) {
            bus_.send(message.createErrorReply(QDBusError::UnknownMethod, "Not known here"));
        } else if (habit_ != Habit::repliesWhenTold) {
            reply();
        }
        return true;
    }
    /// Says which object answers.
    void reply()
    {
        bus_.send(asked.back().createReply(QVariant::fromValue(QDBusObjectPath(requests.back()))));
    }
    /// What the user has done in the dialog of a question.
    void respond(uint code, const QStringList& addresses, int question = 0)
    {
        answer(code, {{"uris", addresses}}, question);
    }
    void answer(uint code, const QVariantMap& results, int question = 0)
    {
        QDBusMessage signal = QDBusMessage::createTargetedSignal(asked.at(question).service(),
            requests.at(question), "org.freedesktop.portal.Request", "Response");
        signal << code << results;
        bus_.send(signal);
    }

    QList<QDBusMessage> asked;
    QVariantMap options; ///< Of the latest question.
    QStringList requests;
    QStringList closed;

private:
    static constexpr auto service = "org.freedesktop.portal.Desktop";
    static constexpr auto desktopPath = "/org/freedesktop/portal/desktop";

    QDBusConnection bus_;
    Habit habit_;
};

} // namespace Kestry
