#include "PortalRequest.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace Kestry {
namespace {

constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto requestInterface = "org.freedesktop.portal.Request";

} // namespace

PortalRequest::PortalRequest(Bus bus, QString name, int patienceMilliseconds)
    : bus_(std::move(bus)), name_(std::move(name)), patienceMilliseconds_(patienceMilliseconds)
{
    portal_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    // A portal that ends takes its dialog with it.
    connect(&portal_, &QDBusServiceWatcher::serviceUnregistered, this,
        [this] { finish(std::nullopt); });
}

QString PortalRequest::parentWindow()
{
    const QWindow* window = QGuiApplication::focusWindow();
    const bool isX11 = QGuiApplication::platformName() == "xcb";
    return window && isX11 ? "x11:" + QString::number(window->winId(), 16) : QString();
}

void PortalRequest::ask(const PortalQuestion& question, Answered answered)
{
    close();
    answered_ = std::move(answered);
    ++number_;
    if (bus_().isConnected()) {
        call(question);
    } else {
        QMetaObject::invokeMethod(
            this, [this] { finish(std::nullopt); }, Qt::QueuedConnection);
    }
}

void PortalRequest::call(const PortalQuestion& question)
{
    const QDBusConnection bus = bus_();
    portal_.setConnection(bus);
    portal_.setWatchedServices({portalService});
    const QString token = name_ + QString::number(number_);
    QString sender = bus.baseService().mid(1);
    sender.replace('.', '_');
    // The answer may be there before the call returns.
    listenAt(QString("%1/request/%2/%3").arg(portalPath, sender, token));
    QDBusMessage message = QDBusMessage::createMethodCall(
        portalService, portalPath, question.interface, question.method);
    QVariantMap options = question.options;
    options["handle_token"] = token;
    message.setArguments(question.arguments + QVariantList{options});
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(message, patienceMilliseconds_), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, asked = number_] {
        call->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *call;
        if (asked != number_ || request_.isEmpty()) {
            return; // asked anew, or answered already
        }
        if (reply.isError()) {
            close(); // a portal that is only slow
            finish(std::nullopt);
        } else {
            listenAt(reply.value().path()); // old portals choose a name of their own
        }
    });
}

void PortalRequest::listenAt(const QString& request)
{
    if (request == request_) {
        return;
    }
    QDBusConnection bus = bus_();
    const auto* slot = SLOT(responded(uint, QVariantMap));
    if (!request_.isEmpty()) {
        bus.disconnect(portalService, request_, requestInterface, "Response", this, slot);
    }
    request_ = request;
    if (!request_.isEmpty()) {
        bus.connect(portalService, request_, requestInterface, "Response", this, slot);
    }
}

void PortalRequest::close()
{
    if (!request_.isEmpty()) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(portalService, request_, requestInterface, "Close");
        message.setAutoStartService(false);
        bus_().send(message);
        listenAt({});
    }
}

void PortalRequest::responded(uint code, const QVariantMap& results)
{
    finish(PortalAnswer{code, results});
}

void PortalRequest::finish(const std::optional<PortalAnswer>& answer)
{
    listenAt({});
    if (const Answered answered = std::exchange(answered_, nullptr)) {
        answered(answer);
    }
}

} // namespace Kestry
