#include "SettingsBridge.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QSignalSpy>

#include "ApplicationWorld.h"
#include "FakeAutostart.h"
#include "FakeFolders.h"
#include "FakeSecrets.h"
#include "LaunchOptions.h"
#include "ScriptedCloud.h"

namespace Kestry {
namespace {

class SettingsBridgeTest : public ::testing::Test {
protected:
    /// A store that finds its ledger damaged, with a backup that holds one client.
    KestryCore::TimeStore& damagedStore()
    {
        addClient(store, "Aster Studio");
        addClient(store, "Birch");
        world.damageLedger();
        try {
            addClient(store, "Cedar");
        } catch (const std::exception&) {
            store.dismissFailure();
        }
        return store;
    }
    void saveSession()
    {
        KestryCore::NewEntry entry;
        entry.clientID = addClient(store, "Aster Studio", Projects::disabled);
        entry.start = world.now() + -7200.0;
        entry.duration = 3600.0;
        store.addEntry(entry);
    }
    [[nodiscard]] std::string failure() const { return store.errorMessage()->value_or(""); }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    FakeFolders folders;
    AppearanceSettings appearance{world.defaults};
    AppearanceForm form{appearance};
    FakeAutostart autostart;
    DesktopChoices desktop{{state, store, autostart, [] { return std::vector<KnownScreen>{}; },
        [] { return true; }, {}}};
    KestryCore::ScriptedCloud cloud{world.scheduler};
    KestryCore::CloudSyncController controller{store, {},
        {world.scheduler, [this](const auto& name) { return cloud.open(name); },
            [] { return "Desk"; }}};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar{
        KestryCore::ZoneCalendar("UTC", "en_US")};
    FakeSecrets secrets;
    CloudAccount account{{world.defaults, secrets, world.scheduler,
        [this](const CloudCredentials& credentials, StoreUse /*use*/) {
            return cloud.open(credentials.address);
        }}};
    CloudSyncBridge cloudBridge{{store, controller, account, calendar}};
    SoftwareUpdater updater{{store, state}};
    SoftwareUpdateBridge updates{{updater, "", QLocale("en_US"), {}, {}}};
    std::string version = "2.5.1";
    SettingsBridge settings{
        {store, state, folders, form, desktop, cloudBridge, updates, [this] { return version; }}};
};

TEST_F(SettingsBridgeTest, TheSwitchOfTheNotchShowsItAndTakesItAway)
{
    std::vector<bool> shown;
    state.installNotch([] {}, [&](bool isShown) { shown.push_back(isShown); });
    settings.toggleNotch();
    EXPECT_FALSE(settings.notchEnabled());
    EXPECT_FALSE(world.defaults.values["notchEnabled"]);
    settings.toggleNotch();
    EXPECT_TRUE(settings.notchEnabled());
    EXPECT_EQ(shown, (std::vector{false, true}));
}

TEST_F(SettingsBridgeTest, TheSwitchOfTheMenuBarIsStored)
{
    settings.toggleMenuBar();
    EXPECT_TRUE(settings.menuBarEnabled());
    EXPECT_TRUE(world.defaults.values["menuBarEnabled"]);
    settings.toggleMenuBar();
    EXPECT_FALSE(*state.menuBarEnabled());
}

TEST_F(SettingsBridgeTest, ASwitchThrownElsewhereShowsAtOnce)
{
    const QSignalSpy changes(&settings, &SettingsBridge::changed);
    state.setNotchEnabled(false);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_FALSE(settings.notchEnabled());
    state.setMenuBarEnabled(true);
    EXPECT_EQ(changes.count(), 2);
    EXPECT_TRUE(settings.menuBarEnabled());
}

TEST_F(SettingsBridgeTest, TheExportRowCountsTheSessionsAtOnce)
{
    EXPECT_EQ(settings.exportDetail(), "0 saved sessions · CSV");
    const QSignalSpy changes(&settings, &SettingsBridge::changed);
    saveSession();
    EXPECT_GT(changes.count(), 0);
    EXPECT_EQ(settings.exportDetail(), "1 saved sessions · CSV");
}

TEST_F(SettingsBridgeTest, TheSheetOfKeysIsShownUntilItIsClosed)
{
    EXPECT_FALSE(settings.isShowingKeys());
    settings.setShowingKeys(true);
    EXPECT_TRUE(settings.isShowingKeys());
    settings.setShowingKeys(false);
    EXPECT_FALSE(settings.isShowingKeys());
}

TEST_F(SettingsBridgeTest, TheVersionIsTheBuildsOrDevelopment)
{
    EXPECT_EQ(settings.versionLine(), "Kestry · 2.5.1");
    version = "";
    EXPECT_EQ(settings.versionLine(), "Kestry · Development");
}

// The folder.

TEST_F(SettingsBridgeTest, TheFolderIsTheOneThatTheStoreUses)
{
    addClient(store, "Aster Studio");
    settings.openFolder();
    EXPECT_EQ(folders.opened, world.directory.path());
    folders.answer(true);
    EXPECT_EQ(failure(), "");
}

TEST_F(SettingsBridgeTest, BeforeTheFirstSaveThereIsNoFolderAndNoneIsMade)
{
    KestryCore::StoreOptions options = world.onDisk();
    options.directory = world.directory.filePath("later").toStdString();
    KestryCore::TimeStore fresh(world.storePlatform(), options);
    SettingsBridge bridge(
        {fresh, state, folders, form, desktop, cloudBridge, updates, [] { return ""; }});
    bridge.openFolder();
    EXPECT_EQ(**fresh.errorMessage(),
        "Your data folder will be created when you save your first client.");
    EXPECT_EQ(folders.opened, "");
    EXPECT_FALSE(QDir(world.directory.filePath("later")).exists());
}

TEST_F(SettingsBridgeTest, TheFolderThatTheEnvironmentNamesIsTheOneThatOpens)
{
    const std::string named = world.directory.path().toStdString();
    const auto environment = [&named](const std::string& name) {
        return name == "KESTRY_DATA_DIR" ? std::optional(named) : std::nullopt;
    };
    KestryCore::StoreOptions options;
    options.directory =
        parseLaunchOptions({"kestry"}, environment, [] { return "/nowhere"; }).dataDirectory;
    KestryCore::TimeStore elsewhere(world.storePlatform(), options);
    SettingsBridge bridge(
        {elsewhere, state, folders, form, desktop, cloudBridge, updates, [] { return ""; }});
    bridge.openFolder();
    EXPECT_EQ(folders.opened, world.directory.path());
}

TEST_F(SettingsBridgeTest, AFolderThatNothingOpensIsNamed)
{
    settings.openFolder();
    folders.answer(false);
    EXPECT_EQ(failure(),
        "No file browser could be opened. Your data folder is:\n"
            + world.directory.path().toStdString());
}

TEST_F(SettingsBridgeTest, AFolderNamedByARelativePathIsOpenedByItsWholePath)
{
    KestryCore::StoreOptions options;
    options.directory = ".";
    KestryCore::TimeStore here(world.storePlatform(), options);
    SettingsBridge bridge(
        {here, state, folders, form, desktop, cloudBridge, updates, [] { return ""; }});
    bridge.openFolder();
    EXPECT_EQ(folders.opened, QDir::currentPath());
}

// The backup.

TEST_F(SettingsBridgeTest, WithNoBackupThereIsNothingToRestore)
{
    EXPECT_FALSE(settings.canRestore());
    settings.askToRestore();
    EXPECT_FALSE(settings.isAskingToRestore());
}

TEST_F(SettingsBridgeTest, ABackupIsOfferedAsSoonAsItIsNeeded)
{
    const QSignalSpy changes(&settings, &SettingsBridge::changed);
    damagedStore();
    EXPECT_GT(changes.count(), 0);
    EXPECT_TRUE(settings.canRestore());
}

TEST_F(SettingsBridgeTest, CancelLeavesTheLedgerAsItWas)
{
    damagedStore();
    const QByteArray before = world.ledgerBytes();
    settings.askToRestore();
    EXPECT_TRUE(settings.isAskingToRestore());
    settings.cancelRestore();
    EXPECT_FALSE(settings.isAskingToRestore());
    EXPECT_EQ(world.ledgerBytes(), before);
    EXPECT_EQ(store.data()->clients.size(), 2U);
    EXPECT_TRUE(settings.canRestore());
}

TEST_F(SettingsBridgeTest, ConfirmingRestoresTheBackupAndOffersNoOther)
{
    damagedStore();
    settings.askToRestore();
    settings.confirmRestore();
    EXPECT_FALSE(settings.isAskingToRestore());
    EXPECT_FALSE(settings.canRestore());
    EXPECT_EQ(store.data()->clients.size(), 1U);
    EXPECT_EQ(failure(), "");
    const QStringList kept = QDir(world.directory.path()).entryList({"ledger.corrupt-*.json"});
    EXPECT_EQ(kept.size(), 1);
}

TEST_F(SettingsBridgeTest, AFailedRestoreIsToldInTheStoresWords)
{
    damagedStore();
    settings.askToRestore();
    QFile::remove(world.directory.filePath("ledger.backup.json"));
    settings.confirmRestore();
    EXPECT_TRUE(
        failure().starts_with("Backup restoration failed. Your existing files were preserved. "))
        << failure();
    EXPECT_EQ(world.ledgerBytes().size(), 10);
}

TEST_F(SettingsBridgeTest, NothingIsRestoredThatWasNotAskedFor)
{
    damagedStore();
    settings.confirmRestore();
    EXPECT_TRUE(settings.canRestore());
    EXPECT_EQ(store.data()->clients.size(), 2U);
}

} // namespace
} // namespace Kestry
