#include "Surfaces.h"

#include <QDesktopServices>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QStandardPaths>
#include <QUrl>

#include <utility>

#include "ApplicationInfo.h"
#include "Environment.h"
#include "HelperProgram.h"
#include "LogoImport.h"
#include "PictureFile.h"
#include "PosixFileSystem.h"
#include "ShellMenus.h"
#include "StageChoice.h"
#include "UserLocale.h"

namespace Kestry {
namespace {

constexpr const char* workspaceView = "qrc:/Kestry/WorkspaceView.qml";

std::string programVersion()
{
    const QString info = ApplicationInfo::pathFor(QCoreApplication::applicationDirPath());
    return ApplicationInfo::read(info).shortVersion().toStdString();
}

std::vector<KnownScreen> knownScreens()
{
    std::vector<KnownScreen> known;
    for (const QScreen* screen : QGuiApplication::screens()) {
        known.push_back({screen->name().toStdString(), screen->model().toStdString()});
    }
    return known;
}

} // namespace

Surfaces::Surfaces(AppDelegate& delegate, AppDelegate::Platform platform, PatientFiles& files,
    CloudAccount& account)
    : delegate_(delegate), platform_(platform), files_(files),
      settings_(
          preferences_, QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)),
      font_(preferences_), appearance_(platform.defaults),
      appearanceBridge_(appearance_, preferences_), appearanceForm_(appearance_),
      locale_(KestryCore::userLocale(KestryCore::processEnvironment)),
      calendar_(KestryCore::ZoneCalendar::withSystemTimeZone(locale_)),
      zoneWatch_(KestryCore::processEnvironment, "/etc/localtime",
          [this](const KestryCore::SystemTimeZone& zone) {
              calendar_.assign(KestryCore::ZoneCalendar::withSystemTimeZone(locale_, zone));
          }),
      today_(platform.scheduler, platform.store.now, calendar_), clockWatch_([this] {
          today_.look();
          delegate_.didWake(); // a machine that sleeps has its clock set when it wakes
      }),
      words_(locale_), session_(delegate.commander(), delegate.store(), delegate.state(),
                           platform.store.now, platform.scheduler, {calendar_, words_}),
      sidebarSession_(session_, delegate.store(), delegate.state(), platform.store.now, words_),
      workspaceBridge_(delegate.commander(), delegate.store(), delegate.state(), calendar_, logos_),
      stage_(panelStage()), menuWindow_(engine_, *stage_, platform.scheduler),
      tipWindow_(engine_, *stage_, toolTips_, menuWindow_),
      menus_(delegate.commander(), delegate.store(), delegate.state(), delegate.updater(),
          menuWindow_, words_),
      deletion_(delegate.store(), platform.scheduler),
      sessions_(listWorld(), KestryCore::SessionListPlace::page), overview_(listWorld(), today_),
      dashboard_(listWorld(), today_),
      export_({delegate.store(), delegate.state(), fileChooser_, platform.defaults,
          platform.scheduler, platform.store.now,
          QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)}),
      autostart_(autostart(
          platform.defaults,
          [&delegate](const std::string& words) { delegate.store().reportFailure(words); },
          ApplicationInfo::bundlePath())),
      desktopChoices_({delegate.state(), delegate.store(), *autostart_, knownScreens,
          [this] { return stage_->pointerPlace().has_value(); },
          [this](Menu menu, const QString& name, const QQuickItem& item) {
              menuWindow_.open(std::move(menu), name, MenuController::Window, item);
          }}),
      cloudSync_({delegate.store(), delegate.cloudSync(), account, calendar_}),
      updates_({delegate.updater(), QString::fromStdString(programVersion()), QLocale::system(),
          [](const QString& link) { return QDesktopServices::openUrl(QUrl(link)); },
          [&delegate](const std::string& words) { delegate.store().reportFailure(words); }}),
      settingsBridge_({delegate.store(), delegate.state(), folders_, appearanceForm_,
          desktopChoices_, cloudSync_, updates_, programVersion}),
      forms_(editorWorld()),
      workspace_(engine_, delegate.state(), platform.defaults, platform.scheduler,
          [this](QQuickView& window) { loadWorkspace(window); })
{
    engine_.addImportPath("qrc:/");
    appearanceBridge_.serve(engine_);
    toolTips_.serve(engine_);
    for (const auto changed : {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved}) {
        QObject::connect(
            qGuiApp, changed, &desktopChoices_, [this] { desktopChoices_.screensChanged(); },
            Qt::QueuedConnection);
    }
    panels_ = std::make_unique<NotchWindows>(engine_, *stage_, session_, menus_,
        preferences_.reducesMotion(), delegate.state().panelPlace());
    delegate_.installLastWork([this] { return export_.finish(); });
}

Surfaces::~Surfaces()
{
    delegate_.installLastWork({});
    files_.tell({});
}

SessionList::World Surfaces::listWorld()
{
    const auto openMenu = [this](Menu menu, const QString& name, const QQuickItem& item) {
        menuWindow_.open(std::move(menu), name, MenuController::Window, item);
    };
    return {delegate_.commander(), delegate_.store(), delegate_.state(), platform_.scheduler,
        platform_.store.now, calendar_, words_, openMenu, deletion_, &logos_};
}

EditorWorld Surfaces::editorWorld()
{
    const auto openMenu = [this](Menu menu, const QString& name, const QQuickItem& item) {
        menuWindow_.open(std::move(menu), name, MenuController::Window, item);
    };
    const auto runBeside = [this](std::function<void()> work, std::function<void()> done) {
        background_.run(std::move(work), std::move(done));
    };
    // Beside the main thread, and so with files of its own.
    const auto import = [](const std::string& path, const std::stop_token& stop) {
        KestryCore::PosixFileSystem files;
        return importedLogo(
            KestryCore::readPictureFile(files, path), programNear(KESTRY_LOGO_PROGRAM), stop);
    };
    return {delegate_.store(), delegate_.state(), platform_.store.now, platform_.scheduler,
        calendar_, words_, QLocale::system(), openMenu, fileChooser_,
        {.import = import, .runBeside = runBeside}};
}

void Surfaces::loadWorkspace(QQuickView& window)
{
    window.setInitialProperties({{"workspace", QVariant::fromValue(&workspaceBridge_)},
        {"forms", QVariant::fromValue(&forms_)}, {"menus", QVariant::fromValue(&menus_)},
        {"overview", QVariant::fromValue(&overview_)},
        {"sessions", QVariant::fromValue(&sessions_)}, {"exporter", QVariant::fromValue(&export_)},
        {"dashboard", QVariant::fromValue(&dashboard_)},
        {"deletion", QVariant::fromValue(&deletion_)},
        {"settings", QVariant::fromValue(&settingsBridge_)},
        {"chooser", QVariant::fromValue(&fileChooser_)}, {"saving", QVariant::fromValue(&saving_)},
        {"session", QVariant::fromValue(&session_)},
        {"sidebarSession", QVariant::fromValue(&sidebarSession_)}, {"width", window.width()},
        {"height", window.height()}});
    window.setSource(QUrl(workspaceView));
    files_.tell({.slow =
                     [this] {
                         saving_.show(true);
                         workspace_.showNow();
                     },
        .over = [this] { saving_.show(false); }});
}

void Surfaces::prepareWorkspace()
{
    workspace_.prepare(QUrl(workspaceView));
}

void Surfaces::showStatusItem()
{
    settings_.follow();
    tray_ = std::make_unique<TrayIcon>();
    status_ =
        std::make_unique<StatusItem>(StatusItem::World{*tray_, delegate_.store(), delegate_.state(),
                                         preferences_, platform_.scheduler, platform_.store.now},
            [this] { return statusMenu(delegate_.commander()); });
}

} // namespace Kestry
