#include "Surfaces.h"

#include <QLocale>
#include <QStandardPaths>

#include <utility>

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

} // namespace

Surfaces::Surfaces(AppDelegate& delegate, AppDelegate::Platform platform, PatientFiles& files)
    : delegate_(delegate), platform_(platform), files_(files),
      settings_(
          preferences_, QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)),
      font_(preferences_), appearance_(platform.defaults),
      appearanceBridge_(appearance_, preferences_),
      locale_(KestryCore::userLocale(KestryCore::processEnvironment)),
      calendar_(KestryCore::ZoneCalendar::withSystemTimeZone(locale_)),
      zoneWatch_(KestryCore::processEnvironment, "/etc/localtime",
          [this](const KestryCore::SystemTimeZone& zone) {
              calendar_.assign(KestryCore::ZoneCalendar::withSystemTimeZone(locale_, zone));
          }),
      words_(locale_), session_(delegate.commander(), delegate.store(), delegate.state(),
                           platform.store.now, platform.scheduler, {calendar_, words_}),
      sidebarSession_(session_, delegate.commander(), delegate.store(), delegate.state(),
          platform.store.now, words_),
      workspaceBridge_(delegate.commander(), delegate.store(), delegate.state(), calendar_, logos_),
      stage_(panelStage()), menuWindow_(engine_, *stage_, platform.scheduler),
      tipWindow_(engine_, *stage_, toolTips_, menuWindow_),
      menus_(delegate.commander(), delegate.store(), delegate.state(), menuWindow_, words_),
      deletion_(delegate.store(), platform.scheduler),
      sessions_(listWorld(), KestryCore::SessionListPlace::page), dashboard_(listWorld()),
      export_({delegate.store(), delegate.state(), fileChooser_, platform.defaults,
          platform.scheduler, platform.store.now,
          QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)}),
      forms_(editorWorld()),
      workspace_(engine_, delegate.state(), platform.defaults, platform.scheduler,
          [this](QQuickView& window) { loadWorkspace(window); })
{
    engine_.addImportPath("qrc:/");
    appearanceBridge_.serve(engine_);
    toolTips_.serve(engine_);
    panels_ = std::make_unique<NotchWindows>(
        engine_, *stage_, session_, menus_, preferences_.reducesMotion());
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
    const auto import = [](const std::string& path) {
        KestryCore::PosixFileSystem files;
        return importedLogo(
            KestryCore::readPictureFile(files, path), programNear(KESTRY_LOGO_PROGRAM));
    };
    return {delegate_.store(), delegate_.state(), platform_.store.now, platform_.scheduler,
        calendar_, words_, QLocale::system(), openMenu, fileChooser_,
        {.import = import, .runBeside = runBeside}};
}

void Surfaces::loadWorkspace(QQuickView& window)
{
    window.setInitialProperties({{"workspace", QVariant::fromValue(&workspaceBridge_)},
        {"forms", QVariant::fromValue(&forms_)}, {"menus", QVariant::fromValue(&menus_)},
        {"sessions", QVariant::fromValue(&sessions_)}, {"exporter", QVariant::fromValue(&export_)},
        {"dashboard", QVariant::fromValue(&dashboard_)},
        {"deletion", QVariant::fromValue(&deletion_)},
        {"chooser", QVariant::fromValue(&fileChooser_)}, {"saving", QVariant::fromValue(&saving_)},
        {"session", QVariant::fromValue(&session_)},
        {"sidebarSession", QVariant::fromValue(&sidebarSession_)}});
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
