#include "DesktopFolders.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QStandardPaths>
#include <QUrl>

#include <utility>

#include <fcntl.h>

#include "Descriptor.h"

namespace Kestry {
namespace {

constexpr auto fileManager = "org.freedesktop.FileManager1";
constexpr auto fileManagerPath = "/org/freedesktop/FileManager1";

/// What the portal takes in place of a path, which may mean another place to it.
QDBusUnixFileDescriptor descriptorOf(const QString& folder)
{
    const Descriptor descriptor(
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return QDBusUnixFileDescriptor(descriptor.number()); // a copy of its own
}

} // namespace

DesktopFolders::DesktopFolders(PortalRequest::Bus bus, int patienceMilliseconds)
    : bus_(bus), patienceMilliseconds_(patienceMilliseconds),
      portal_(std::move(bus), "kestryFolders", patienceMilliseconds)
{
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, [this] { late_(); });
    program_.setStandardInputFile(QProcess::nullDevice());
    program_.setStandardOutputFile(QProcess::nullDevice());
    program_.setStandardErrorFile(QProcess::nullDevice());
    connect(&program_, &QProcess::finished, this, [this](int code, QProcess::ExitStatus status) {
        finish(status == QProcess::NormalExit && code == 0);
    });
    connect(&program_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            finish(false);
        }
    });
}

DesktopFolders::~DesktopFolders()
{
    answered_ = nullptr; // the program ends with this, which is no answer
    patience_.stop();
}

void DesktopFolders::open(const QString& folder, Answered answered)
{
    folder_ = folder;
    answered_ = std::move(answered);
    ++number_;
    portal_.close(); // what it would say is of another folder
    QMetaObject::invokeMethod(
        this,
        [this, asked = number_] {
            if (asked == number_) {
                askPortal();
            }
        },
        Qt::QueuedConnection);
}

void DesktopFolders::askPortal()
{
    const QDBusUnixFileDescriptor descriptor = descriptorOf(folder_);
    if (!descriptor.isValid()) {
        askFileManager();
        return;
    }
    // One that has taken the question may still find nothing that opens folders, and never say so.
    waitNoLongerThan([this] {
        portal_.close();
        askFileManager();
    });
    portal_.ask({"org.freedesktop.portal.OpenURI", "OpenDirectory",
                    {PortalRequest::parentWindow(), QVariant::fromValue(descriptor)}, {}},
        [this](const auto& answer) {
            constexpr uint cancelled = 1; // a user who was asked, and wants none
            patience_.stop();
            if (answer && answer->code <= cancelled) {
                finish(true);
            } else {
                askFileManager();
            }
        });
}

void DesktopFolders::askFileManager()
{
    if (!bus_().isConnected()) {
        runProgram();
        return;
    }
    QDBusMessage message =
        QDBusMessage::createMethodCall(fileManager, fileManagerPath, fileManager, "ShowFolders");
    message << QStringList{QUrl::fromLocalFile(folder_).toString(QUrl::FullyEncoded)} << QString();
    auto* call =
        new QDBusPendingCallWatcher(bus_().asyncCall(message, patienceMilliseconds_), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, asked = number_] {
        call->deleteLater();
        const QDBusPendingReply<> reply = *call;
        if (asked != number_) {
            return; // another folder has taken its place
        }
        if (reply.isError()) {
            runProgram();
        } else {
            finish(true);
        }
    });
}

void DesktopFolders::runProgram()
{
    const QString program = QStandardPaths::findExecutable("xdg-open");
    if (program.isEmpty()) {
        finish(false);
    } else if (program_.state() != QProcess::NotRunning) {
        // It has opened a folder, and runs for as long as that shows.
        finish(QProcess::startDetached(program, {folder_}));
    } else {
        waitNoLongerThan([this] { finish(true); });
        program_.start(program, {folder_});
    }
}

void DesktopFolders::waitNoLongerThan(std::function<void()> late)
{
    late_ = std::move(late);
    patience_.start(patienceMilliseconds_);
}

void DesktopFolders::finish(bool isOpened)
{
    patience_.stop();
    if (const Answered answered = std::exchange(answered_, nullptr)) {
        answered(isOpened);
    }
}

} // namespace Kestry
