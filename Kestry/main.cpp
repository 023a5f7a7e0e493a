#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLocale>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QSessionManager>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "AppDelegate.h"
#include "ApplicationInfo.h"
#include "DemoLedger.h"
#include "LaunchOptions.h"
#include "PosixFileSystem.h"
#include "QtScheduler.h"
#include "QuitSignals.h"
#include "SettingsDefaults.h"
#include "Surfaces.h"

Q_IMPORT_QML_PLUGIN(KestryPlugin)

namespace Kestry {
namespace {

/// Whether there is a screen to be on; the toolkit would end the process without a word for people.
bool hasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY")
        || qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

/// To be set before the application object exists.
void chooseRendering()
{
    // The panels are small: drawn by the processor they start in half the time and in a third of
    // the memory.
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND")) {
        qputenv("QT_QUICK_BACKEND", "software");
    }
    // Panels above all windows exist on X11, and so on Wayland by way of its X server.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM") && qEnvironmentVariableIsSet("DISPLAY")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    QQuickWindow::setDefaultAlphaBuffer(true);
}

void chooseFont()
{
    const QString family = "Inter";
    if (QFontDatabase::hasFamily(family)) {
        QGuiApplication::setFont(QFont(family));
    }
}

std::optional<std::string> refusalOf(KestryCore::WriterLock& lock)
{
    try {
        return lock.acquire() ? std::nullopt : std::optional(lock.refusal());
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

KestryCore::StoreOptions storeOptions(const LaunchOptions& launch, bool isDemo)
{
    KestryCore::StoreOptions options;
    options.directory = launch.dataDirectory;
    options.updateToken = launch.updateToken;
    if (isDemo) {
        const auto calendar =
            KestryCore::ZoneCalendar::withSystemTimeZone(QLocale::system().name().toStdString());
        options.demoLedger = KestryCore::demoLedger(KestryCore::currentDate(), calendar);
    }
    return options;
}

void quitIfAllowed(AppDelegate& delegate)
{
    if (delegate.shouldTerminate() == TerminateReply::terminateNow) {
        QCoreApplication::quit();
    }
}

void followSessionManager(QGuiApplication& application, AppDelegate& delegate)
{
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &application,
        [&delegate](QSessionManager& manager) {
            if (delegate.shouldTerminate() == TerminateReply::cancel) {
                manager.cancel();
            }
        },
        Qt::DirectConnection);
}

int run(
    QGuiApplication& application, AppDelegate::Platform platform, KestryCore::StoreOptions options)
{
    AppDelegate delegate(platform, std::move(options));
    Surfaces surfaces(delegate, platform, [&delegate] { quitIfAllowed(delegate); });
    delegate.didFinishLaunching(surfaces.panels());
    platform.scheduler.post([&surfaces] { surfaces.showStatusItem(); });
    const QuitSignals quitSignals([&delegate] { quitIfAllowed(delegate); });
    followSessionManager(application, delegate);
    const int status = QGuiApplication::exec();
    delegate.willTerminate();
    return status;
}

int launch(QGuiApplication& application, const std::vector<std::string>& arguments)
{
    KestryCore::PosixFileSystem files;
    const LaunchOptions options = parseLaunchOptions(
        arguments, KestryCore::processEnvironment, files.applicationSupportDirectory());
    const QString infoPath = ApplicationInfo::pathFor(QCoreApplication::applicationDirPath());
    const bool isDemo = options.demo || ApplicationInfo::read(infoPath).demoMode();
    KestryCore::StoreOptions store = storeOptions(options, isDemo);
    if (!isDemo) { // a demo writes nothing, and so claims nothing
        store.lock = std::make_shared<KestryCore::WriterLock>(files, options.dataDirectory);
        if (const auto refusal = refusalOf(*store.lock)) {
            std::fprintf(stderr, "%s\n", refusal->c_str());
            return 1;
        }
    }
    QtScheduler scheduler;
    SettingsDefaults defaults;
    return run(application, {{files}, scheduler, defaults}, std::move(store));
}

} // namespace
} // namespace Kestry

int main(int argc, char* argv[])
{
    if (!Kestry::hasDisplay()) {
        std::fputs(
            "Kestry needs a desktop to run on: neither DISPLAY nor WAYLAND_DISPLAY is set.\n",
            stderr);
        return 1;
    }
    // Taken before the toolkit removes the options that are its own, and as the bytes that they
    // are: a path need not be text.
    const std::vector<std::string> arguments(argv, argv + argc);
    Kestry::holdQuitSignals();
    Kestry::chooseRendering();
    // One style on all desktops, which takes the colours that it is given.
    QApplication::setStyle("Fusion");
    QApplication application(argc, argv);
    QGuiApplication::setApplicationName("Kestry");
    QGuiApplication::setDesktopFileName("org.kestry.Kestry");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    Kestry::chooseFont();
    return Kestry::launch(application, arguments);
}
