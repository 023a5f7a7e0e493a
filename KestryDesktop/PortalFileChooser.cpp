#include "PortalFileChooser.h"

#include <QDBusArgument>
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
constexpr auto requestInterface = "org.freedesktop.portal.Request";

/// What the portal calls the window that the dialog belongs to; empty where it has no name for it.
QString parentWindow()
{
    const QWindow* window = QGuiApplication::focusWindow();
    const bool isX11 = QGuiApplication::platformName() == "xcb";
    return window && isX11 ? "x11:" + QString::number(window->winId(), 16) : QString();
}

QVariantMap options(const FileQuestion& question, const QString& token)
{
    FileType type{question.typeName, {}};
    for (const QString& ending : question.endings) {
        type.matches.append({0, "*" + ending});
    }
    for (const QString& mimeType : question.mimeTypes) {
        type.matches.append({1, mimeType});
    }
    QVariantMap result{{"handle_token", token}, {"modal", true},
        {"filters", QVariant::fromValue(QList<FileType>{type})},
        {"current_filter", QVariant::fromValue(type)}};
    if (!question.fileName.isEmpty()) {
        result["current_name"] = question.fileName;
    }
    if (!question.folder.isEmpty()) {
        // The portal wants the final zero of a path.
        result["current_folder"] = QFile::encodeName(question.folder) + '\0';
    }
    return result;
}

} // namespace

PortalFileChooser::PortalFileChooser(Bus bus, int patienceMilliseconds)
    : bus_(std::move(bus)), patienceMilliseconds_(patienceMilliseconds)
{
    qDBusRegisterMetaType<FileMatch>();
    qDBusRegisterMetaType<QList<FileMatch>>();
    qDBusRegisterMetaType<FileType>();
    qDBusRegisterMetaType<QList<FileType>>();
    portal_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    // A portal that ends takes its dialog with it.
    connect(&portal_, &QDBusServiceWatcher::serviceUnregistered, this,
        [this] { finish({FileAnswer::Kind::unavailable}); });
}

void PortalFileChooser::ask(const FileQuestion& question, Answered answered)
{
    closeDialog();
    answered_ = std::move(answered);
    ++number_;
    if (!bus_().isConnected()) {
        QMetaObject::invokeMethod(
            this, [this] { finish({FileAnswer::Kind::unavailable}); }, Qt::QueuedConnection);
        return;
    }
    call(question);
}

void PortalFileChooser::call(const FileQuestion& question)
{
    const QDBusConnection bus = bus_();
    portal_.setConnection(bus);
    portal_.setWatchedServices({portalService});
    const QString token = QString("kestry%1").arg(number_);
    QString sender = bus.baseService().mid(1);
    sender.replace('.', '_');
    // The answer may be there before the call returns.
    listenAt(QString("%1/request/%2/%3").arg(portalPath, sender, token));
    const bool isSaving = question.purpose == FileQuestion::Purpose::save;
    QDBusMessage message = QDBusMessage::createMethodCall(
        portalService, portalPath, chooserInterface, isSaving ? "SaveFile" : "OpenFile");
    message << parentWindow() << question.title << options(question, token);
    auto* call = new QDBusPendingCallWatcher(bus.asyncCall(message, patienceMilliseconds_), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, asked = number_] {
        call->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *call;
        if (asked != number_ || request_.isEmpty()) {
            return; // asked anew, or answered already
        }
        if (reply.isError()) {
            closeDialog(); // of a portal that is only slow
            finish({FileAnswer::Kind::unavailable});
        } else {
            listenAt(reply.value().path()); // old portals choose a name of their own
        }
    });
}

void PortalFileChooser::listenAt(const QString& request)
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

/// Takes the question back, so that no dialog stays open whose answer nobody waits for.
void PortalFileChooser::closeDialog()
{
    if (!request_.isEmpty()) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(portalService, request_, requestInterface, "Close");
        message.setAutoStartService(false);
        bus_().send(message);
        listenAt({});
    }
}

void PortalFileChooser::responded(uint code, const QVariantMap& results)
{
    const QStringList addresses = results.value("uris").toStringList();
    if (code != 0 || addresses.isEmpty()) {
        finish({FileAnswer::Kind::cancelled});
    } else {
        finish({FileAnswer::Kind::chosen, QUrl(addresses.front()).toLocalFile()});
    }
}

void PortalFileChooser::finish(const FileAnswer& answer)
{
    listenAt({});
    if (const Answered answered = std::exchange(answered_, nullptr)) {
        answered(answer);
    }
}

} // namespace Kestry
