#include "DesktopService.h"

#include <QDBusConnectionInterface>
#include <QMetaObject>

namespace Kestry {

namespace {

/// Hands on the desktop's permission to take the focus, which the toolkit looks for there.
void keepActivationToken(const QVariantMap& platformData)
{
    const QByteArray token = platformData.value("activation-token").toString().toUtf8();
    if (!token.isEmpty()) {
        qputenv("XDG_ACTIVATION_TOKEN", token);
    }
}

} // namespace

DesktopService::DesktopService(QDBusConnection bus, Events events)
    : bus_(std::move(bus)), events_(std::move(events))
{
    if (!bus_.isConnected()) {
        return;
    }
    // In this order, or a call that has been waiting for the name would find nothing.
    bus_.registerObject(objectPath, this, QDBusConnection::ExportAllSlots);
    bus_.interface()->registerService(busName, QDBusConnectionInterface::DontQueueService,
        QDBusConnectionInterface::DontAllowReplacement);
}

DesktopService::~DesktopService()
{
    if (bus_.isConnected()) {
        bus_.unregisterService(busName);
        bus_.unregisterObject(objectPath);
    }
}

void DesktopService::Activate(const QVariantMap& platformData)
{
    keepActivationToken(platformData);
    soon(events_.activate);
}

void DesktopService::Open(const QStringList& uris, const QVariantMap& platformData)
{
    keepActivationToken(platformData);
    std::vector<std::string> urls;
    for (const QString& uri : uris) {
        urls.push_back(uri.toStdString());
    }
    soon([this, urls] { events_.open(urls); });
}

void DesktopService::ActivateAction(
    const QString& name, const QVariantList& /*parameters*/, const QVariantMap& platformData)
{
    keepActivationToken(platformData);
    soon([this, action = name.toStdString()] { events_.perform(action); });
}

// What is asked for may end the program, and whoever asked is to have an answer before that.
void DesktopService::soon(std::function<void()> action)
{
    QMetaObject::invokeMethod(this, std::move(action), Qt::QueuedConnection);
}

} // namespace Kestry
