#include "PortalFileChooser.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QGuiApplication>
#include <QUrl>
#include <QWindow>

#include <utility>

namespace Kestry {
namespace {

/// One way to tell a type of files, as the portal has it.
struct FileMatch {
    uint kind = 0; ///< 0 for a pattern of names, 1 for a MIME type.
    QString text;
};

struct FileType {
    QString name;
    QList<FileMatch> matches;
};

QDBusArgument& operator<<(QDBusArgument& argument, const FileMatch& match)
{
    argument.beginStructure();
    argument << match.kind << match.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, FileMatch& match)
{
    argument.beginStructure();
    argument >> match.kind >> match.text;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const FileType& type)
{
    argument.beginStructure();
    argument << type.name << type.matches;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, FileType& type)
{
    argument.beginStructure();
    argument >> type.name >> type.matches;
    argument.endStructure();
    return argument;
}

constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto chooserInterface = "org.freedesktop.portal.FileChooser";
// The portal answers before a person does. A dead one must not keep the form of ours away for long.
constexpr int mostMilliseconds = 5000;
constexpr auto requestInterface = "org.freedesktop.portal.Request";

/// What the portal calls the window that the dialog belongs to; empty where it has no name for it.
QString parentWindow()
{
    const QWindow* window = QGuiApplication::focusWindow();
    const bool isX11 = QGuiApplication::platformName() == "xcb";
    return window && isX11 ? "x11:" + QString::number(window->winId(), 16) : QString();
}

QVariantMap options(const SaveQuestion& question, const QString& token)
{
    const FileType type{question.typeName, {{0, "*" + question.ending}, {1, question.mimeType}}};
    QVariantMap result{{"handle_token", token}, {"modal", true},
        {"current_name", question.fileName},
        {"filters", QVariant::fromValue(QList<FileType>{type})},
        {"current_filter", QVariant::fromValue(type)}};
    if (!question.folder.isEmpty()) {
        // The portal wants the final zero of a path.
        result["current_folder"] = QFile::encodeName(question.folder) + '\0';
    }
    return result;
}

} // namespace

PortalFileChooser::PortalFileChooser()
{
    qDBusRegisterMetaType<FileMatch>();
    qDBusRegisterMetaType<QList<FileMatch>>();
    qDBusRegisterMetaType<FileType>();
    qDBusRegisterMetaType<QList<FileType>>();
}

void PortalFileChooser::askWhereToSave(const SaveQuestion& question, Answered answered)
{
    answered_ = std::move(answered);
    listenAt({});
    ++number_;
    if (!QDBusConnection::sessionBus().isConnected()) {
        QMetaObject::invokeMethod(
            this, [this] { finish({SaveAnswer::Kind::unavailable}); }, Qt::QueuedConnection);
        return;
    }
    call(question);
}

void PortalFileChooser::call(const SaveQuestion& question)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const QString token = QString("kestry%1").arg(number_);
    QString sender = bus.baseService().mid(1);
    sender.replace('.', '_');
    // The answer may be there before the call returns.
    listenAt(QString("%1/request/%2/%3").arg(portalPath, sender, token));
    QDBusMessage message =
        QDBusMessage::createMethodCall(portalService, portalPath, chooserInterface, "SaveFile");
    message << parentWindow() << question.title << options(question, token);
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(message, mostMilliseconds), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, asked = number_] {
        call->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *call;
        if (asked != number_) {
            return;
        }
        if (reply.isError()) {
            finish({SaveAnswer::Kind::unavailable});
        } else if (!request_.isEmpty()) {
            listenAt(reply.value().path()); // old portals choose a name of their own
        }
    });
}

void PortalFileChooser::listenAt(const QString& request)
{
    if (request == request_) {
        return;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    const auto* slot = SLOT(responded(uint, QVariantMap));
    if (!request_.isEmpty()) {
        bus.disconnect(portalService, request_, requestInterface, "Response", this, slot);
    }
    request_ = request;
    if (!request_.isEmpty()) {
        bus.connect(portalService, request_, requestInterface, "Response", this, slot);
    }
}

void PortalFileChooser::responded(uint code, const QVariantMap& results)
{
    const QStringList addresses = results.value("uris").toStringList();
    if (code != 0 || addresses.isEmpty()) {
        finish({SaveAnswer::Kind::cancelled});
    } else {
        finish({SaveAnswer::Kind::chosen, QUrl(addresses.front()).toLocalFile()});
    }
}

void PortalFileChooser::finish(const SaveAnswer& answer)
{
    listenAt({});
    if (const Answered answered = std::exchange(answered_, nullptr)) {
        answered(answer);
    }
}

} // namespace Kestry
