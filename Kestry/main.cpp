#include <QDBusConnection>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QSessionManager>
#include <QSysInfo>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "AccountContainer.h"
#include "AppDelegate.h"
#include "ApplicationInfo.h"
#include "ApplicationServer.h"
#include "CloudAccount.h"
#include "CloudSyncRun.h"
#include "DataDirectory.h"
#include "DemoLedger.h"
#include "DesktopService.h"
#include "DisplayEnd.h"
#include "FirstInstance.h"
#include "KeychainSecrets.h"
#include "LaunchOptions.h"
#include "LoginManager.h"
#include "PatientFiles.h"
#include "PlainText.h"
#include "PlatformChoice.h"
#include "PosixFileSystem.h"
#include "PrivateDirectories.h"
#include "QtScheduler.h"
#include "QuitSignals.h"
#include "RecordStores.h"
#include "SelfUpdate.h"
#include "SettingsDefaults.h"
#include "StartGuard.h"
#include "Surfaces.h"

Q_IMPORT_QML_PLUGIN(KestryPlugin)
Q_IMPORT_QML_PLUGIN(KestryItemsPlugin)

namespace Kestry {
namespace {

// By then what a start brings with it is over.
constexpr double preparationDelaySeconds = 1.0;

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
    choosePlatform();
    QQuickWindow::setDefaultAlphaBuffer(true);
}

/// What a start of the program goes by.
struct Launch {
    LaunchOptions options;
    std::vector<std::string> arguments; ///< Without the program's name.
    bool isDemo = false;
    InstanceClaim claim;
    std::string notice; ///< What the user should know of the data directory; empty mostly.
};

KestryCore::StoreOptions storeOptions(const Launch& launch)
{
    KestryCore::StoreOptions options;
    options.directory = launch.options.dataDirectory;
    options.updateToken = launch.options.updateToken;
    options.lock = launch.claim.lock;
    if (launch.isDemo) {
        const auto calendar =
            KestryCore::ZoneCalendar::withSystemTimeZone(QLocale::system().name().toStdString());
        options.demoLedger = KestryCore::demoLedger(KestryCore::currentDate(), calendar);
    }
    return options;
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

void followActivation(QGuiApplication& application, AppDelegate& delegate)
{
    QObject::connect(&application, &QGuiApplication::applicationStateChanged, &application,
        [&delegate](Qt::ApplicationState state) {
            if (state == Qt::ApplicationActive) {
                delegate.didBecomeActive();
            }
        });
}

DesktopService::Events desktopEvents(AppDelegate& delegate)
{
    const auto perform = [&delegate](const std::string& name) {
        if (const auto action = desktopAction(name)) {
            delegate.commander().perform(*action);
        }
    };
    return {[&delegate] { delegate.reopen(); },
        [&delegate](const auto& urls) { delegate.open(urls); }, perform};
}

/// What reaches the program over the buses.
struct BusServices {
    explicit BusServices(AppDelegate& delegate)
        : loginManager(QDBusConnection::systemBus(),
            {[&delegate] { delegate.willSleep(); }, [&delegate] { delegate.terminate(); },
                [&delegate] { delegate.didWake(); }})
    {
        // Whoever calls the program by its name does not mean a demo.
        if (!delegate.store().isDemo()) {
            desktop.emplace(QDBusConnection::sessionBus(), desktopEvents(delegate));
        }
    }

    LoginManager loginManager;
    std::optional<DesktopService> desktop;
};

/// Does something once the first picture stands on the screen, so that it does not come any later
/// for it; soon, where there is none.
void afterFirstFrame(QGuiApplication& application, const std::function<void()>& action)
{
    for (QWindow* each : QGuiApplication::topLevelWindows()) {
        auto* window = qobject_cast<QQuickWindow*>(each);
        if (window != nullptr && window->isVisible()) {
            QObject::connect(window, &QQuickWindow::frameSwapped, &application, action,
                static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
            return;
        }
    }
    QMetaObject::invokeMethod(&application, action, Qt::QueuedConnection);
}

/// The end of a program whose display has gone; returns the exit status.
int leaveWithDisplay(AppDelegate& delegate, std::optional<ApplicationServer>& server)
{
    const bool hasLeft = delegate.leaveWithDisplay();
    if (!hasLeft) {
        const auto& message = *delegate.store().errorMessage();
        std::fprintf(stderr, "The desktop has ended, and the session could not be paused: %s\n",
            message.value_or("its state could not be saved.").c_str());
    }
    server.reset();
    return hasLeft ? 0 : 1;
}

CloudAccount::Open storeOpener(KestryCore::Scheduler& scheduler)
{
    return [&scheduler](const CloudCredentials& credentials, StoreUse use) {
        return openRecordStore(credentials, use, scheduler);
    };
}

/// What the build decided.
ApplicationInfo buildInfo()
{
    return ApplicationInfo::read(ApplicationInfo::pathFor(QCoreApplication::applicationDirPath()));
}

/// What replication goes by: what the build decided, and who is signed in.
AppDelegate::Cloud cloudOf(CloudAccount& account)
{
    const ApplicationInfo info = buildInfo();
    return {.configuration = KestryCore::CloudConfiguration::read(
                [&info](std::string_view key) { return info.value(key); }),
        .open =
            [&account](const std::string& identifier) {
                return std::make_unique<AccountContainer>(account, identifier);
            },
        .hostName = [] { return QSysInfo::machineHostName().toStdString(); },
        .observeAccount =
            [&account](std::function<void()> observer) {
                return account.observeSignIn(std::move(observer));
            }};
}

AppDelegate::Updates updatesWith(SelfUpdate& selfUpdate)
{
    const ApplicationInfo info = buildInfo();
    return {.configuration = UpdateConfiguration::read(
                [&info](std::string_view key) { return info.value(key); }),
        .makeFramework = selfUpdate.frameworkFactory()};
}

/// The program has come up, whatever it has to tell. A demo proves nothing about the ledger.
void confirmStart(AppDelegate& delegate, SelfUpdate& selfUpdate)
{
    if (!delegate.store().isDemo()) {
        selfUpdate.confirmStart();
    }
}

int run(
    QGuiApplication& application, KestryCore::TreeFiles& files, Launch launch, Successor& successor)
{
    QtScheduler scheduler;
    SettingsDefaults defaults;
    SelfUpdate selfUpdate({scheduler, files, defaults, successor,
        QFile::symLinkTarget("/proc/self/exe").toStdString(),
        buildInfo().shortVersion().toStdString(), launch.arguments});
    KeychainSecrets secrets;
    const KestryCore::TimeStore* store = nullptr; // of the application, once there is one
    CloudAccount account({defaults, secrets, scheduler, storeOpener(scheduler),
        [&store] { return store != nullptr && KestryCore::hasSynced(*store->data()); }});
    PatientFiles patientFiles(files, scheduler);
    std::optional<ApplicationServer> server;
    const auto quit = [&server] {
        server->close(); // nobody is to change anything any more
        QCoreApplication::quit();
    };
    const AppDelegate::Platform platform{
        {.files = patientFiles, .steady = KestryCore::secondsSinceStart}, scheduler, defaults, quit,
        ApplicationInfo::bundlePath().toStdString(), cloudOf(account), updatesWith(selfUpdate)};
    AppDelegate delegate(platform, storeOptions(launch));
    store = &delegate.store();
    defaults.setFailureAction(
        [&delegate](const std::string& words) { delegate.store().reportFailure(words); });
    const DisplayEnd displayEnd([&] { return leaveWithDisplay(delegate, server); });
    Surfaces surfaces(delegate, platform, patientFiles, account);
    delegate.didFinishLaunching(surfaces.panels());
    if (!launch.notice.empty() && !*delegate.store().errorMessage()) {
        delegate.store().reportFailure(launch.notice);
    }
    server.emplace(ApplicationServer::World{delegate, account, scheduler, files},
        std::move(launch.claim.socket));
    const QuitSignals quitSignals([&delegate] { delegate.terminate(); });
    followSessionManager(application, delegate);
    followActivation(application, delegate);
    if (!launch.options.urls.empty()) {
        scheduler.post([&] { delegate.open(launch.options.urls); });
    }
    std::optional<BusServices> buses;
    KestryCore::Timer preparation;
    afterFirstFrame(application, [&] {
        confirmStart(delegate, selfUpdate);
        surfaces.showStatusItem();
        buses.emplace(delegate);
        preparation =
            scheduler.after(preparationDelaySeconds, [&] { surfaces.prepareWorkspace(); });
    });
    const int status = QGuiApplication::exec();
    buses.reset();
    server.reset();
    delegate.willTerminate();
    return status;
}

/// The desktop's permission to take the focus, which it gives to whom the user has started.
std::string activationToken()
{
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return (token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token).toStdString();
}

/// Works out how this start goes on, before anything of the toolkit is loaded: a start that only
/// hands over what it was started for is over in milliseconds.
Launch prepareLaunch(const std::vector<std::string>& arguments, KestryCore::FileSystem& files)
{
    Launch launch;
    launch.arguments.assign(arguments.begin() + (arguments.empty() ? 0 : 1), arguments.end());
    launch.options = parseLaunchOptions(arguments, KestryCore::processEnvironment,
        [&files] { return files.applicationSupportDirectory(); });
    const QString program = QFile::symLinkTarget("/proc/self/exe");
    const QString info = ApplicationInfo::pathFor(QFileInfo(program).path());
    launch.isDemo = launch.options.demo || ApplicationInfo::read(info).demoMode();
    if (launch.isDemo) { // a demo writes nothing, and so claims nothing
        launch.claim.outcome = InstanceClaim::Outcome::first;
        return launch;
    }
    const auto sleep = [](double seconds) {
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    };
    const auto named = KestryCore::optionValue(arguments, KestryCore::dataDirectoryOption);
    // A directory that the user has named may be shared on purpose.
    if (!KestryCore::isDataDirectoryGiven(named, KestryCore::processEnvironment)
        && KestryCore::closeToOthers(launch.options.dataDirectory)) {
        launch.notice = KestryCore::closedText(launch.options.dataDirectory);
    }
    launch.claim = claimInstance(
        files, launch.options.dataDirectory, {launch.options.urls, activationToken()}, sleep);
    return launch;
}

/// Words for people on the standard error, whoever they come from: a process may be called
/// anything.
void tell(const std::string& message)
{
    std::fprintf(stderr, "%s\n", printableLines(message).c_str());
}

int start(int argc, char* argv[], Successor& successor)
{
    // Taken before the toolkit removes the options that are its own, and as the bytes that they
    // are: a path need not be text.
    const std::vector<std::string> arguments(argv, argv + argc);
    holdQuitSignals();
    // A file that has reached the size that this user's files may have is a failed write, not the
    // end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    KestryCore::PosixFileSystem files;
    Launch launch = prepareLaunch(arguments, files);
    for (const std::string& notice : {launch.notice, launch.claim.notice}) {
        if (!notice.empty()) {
            tell(notice);
        }
    }
    if (launch.claim.outcome == InstanceClaim::Outcome::handedOver) {
        return 0;
    }
    if (launch.claim.outcome == InstanceClaim::Outcome::refused) {
        tell(launch.claim.refusal);
        return 1;
    }
    if (!hasDisplay()) {
        tell("Kestry needs a desktop to run on: neither DISPLAY nor WAYLAND_DISPLAY is set.");
        return 1;
    }
    chooseRendering();
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName("Kestry");
    QGuiApplication::setDesktopFileName("org.kestry.Kestry");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    return run(application, files, std::move(launch), successor);
}

} // namespace
} // namespace Kestry

int main(int argc, char* argv[])
{
    try {
        Kestry::Successor successor;
        const int status = Kestry::start(argc, argv, successor);
        if (!successor.program.empty()) {
            Kestry::becomeProgram(successor.program, successor.arguments);
        }
        return status;
    } catch (const std::exception& failure) {
        Kestry::tell(failure.what());
        return 1;
    }
}
