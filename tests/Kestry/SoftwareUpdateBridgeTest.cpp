#include "SoftwareUpdateBridge.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "FakeUpdateFramework.h"

namespace Kestry {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Step = UpdateStage::Step;

class SoftwareUpdateBridgeTest : public ::testing::Test {
protected:
    void configure()
    {
        updater.configure();
        framework().published.canCheckForUpdates.assign(true);
    }
    void show(Step step)
    {
        stage.step = step;
        framework().published.stage.assign(stage);
    }
    [[nodiscard]] FakeUpdateFramework& framework() { return *witness.framework; }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    FakeUpdateFramework::Witness witness;
    UpdateStage stage{.update = {"1.3.0", "https://kestry.example/notes", 24'300'000}};
    SoftwareUpdater updater{{store, state, {.feed = UpdateFeed{"https://updates.example/", {}}},
        FakeUpdateFramework::factory(witness), {}}};
    bool hasBrowser = true;
    std::vector<QString> opened;
    std::string failure;
    SoftwareUpdateBridge bridge{{updater, "1.2.0", QLocale("en_US"),
        [this](const QString& link) {
            opened.push_back(link);
            return hasBrowser;
        },
        [this](const std::string& words) { failure = words; }}};
};

TEST_F(SoftwareUpdateBridgeTest, WithoutUpdatesTheSettingsSaySoAndNothingCanBeSet)
{
    EXPECT_EQ(bridge.status(), "Software updates are not enabled in this build.");
    EXPECT_FALSE(bridge.canSwitch());
    EXPECT_FALSE(bridge.canCheck());
    EXPECT_FALSE(bridge.isAutomatic());
    EXPECT_FALSE(bridge.isOpen());
}

TEST_F(SoftwareUpdateBridgeTest, TheSettingsFollowTheUpdater)
{
    const QSignalSpy changes(&bridge, &SoftwareUpdateBridge::changed);
    configure();
    EXPECT_GT(changes.count(), 0);
    EXPECT_TRUE(bridge.canSwitch());
    EXPECT_TRUE(bridge.canCheck());
    EXPECT_EQ(bridge.status(), "Updates are ready to check.");
}

TEST_F(SoftwareUpdateBridgeTest, TheSwitchIsWrittenThrough)
{
    configure();
    bridge.toggleAutomatic();
    EXPECT_TRUE(bridge.isAutomatic());
    EXPECT_TRUE(*framework().published.automaticallyChecksForUpdates);
    bridge.toggleAutomatic();
    EXPECT_FALSE(bridge.isAutomatic());
}

TEST_F(SoftwareUpdateBridgeTest, TheButtonChecksAndTheRowTellsIt)
{
    configure();
    bridge.check();
    EXPECT_THAT(framework().told, ElementsAre("check"));
    EXPECT_EQ(bridge.status(), "Checking for updates…");
}

TEST_F(SoftwareUpdateBridgeTest, TheSheetIsOpenWhileThereIsSomethingToShow)
{
    configure();
    const QSignalSpy changes(&bridge, &SoftwareUpdateBridge::sheetChanged);
    show(Step::found);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_TRUE(bridge.isOpen());
    EXPECT_EQ(bridge.title(), "An update is available.");
    EXPECT_EQ(bridge.message(), "Kestry 1.3.0 · 24.3 MB\nYou have Kestry 1.2.0.");
    EXPECT_LT(bridge.progress(), 0.0);
    show(Step::nothing);
    EXPECT_FALSE(bridge.isOpen());
}

TEST_F(SoftwareUpdateBridgeTest, AnUpdateIsInstalledOnlyWhenItIsOffered)
{
    configure();
    show(Step::checking);
    bridge.install();
    EXPECT_THAT(framework().told, IsEmpty());
    show(Step::found);
    bridge.install();
    EXPECT_THAT(framework().told, ElementsAre("install"));
}

TEST_F(SoftwareUpdateBridgeTest, AnUpdateIsLeftUnlessItIsBeingInstalled)
{
    configure();
    bridge.dismiss();
    show(Step::unpacking);
    bridge.dismiss();
    EXPECT_THAT(framework().told, IsEmpty());
    show(Step::found);
    bridge.dismiss();
    EXPECT_THAT(framework().told, ElementsAre("dismiss"));
}

TEST_F(SoftwareUpdateBridgeTest, ARefusedRelaunchIsExplainedOnTheSheet)
{
    configure();
    state.sessionTitle.assign("Type & color");
    EXPECT_FALSE(framework().delegate->shouldRelaunchApplication());
    show(Step::ready);
    EXPECT_EQ(bridge.message(),
        "Save your changes and finish the current session before installing an update.");
}

TEST_F(SoftwareUpdateBridgeTest, TheReleaseNotesAreOpenedInTheBrowser)
{
    configure();
    show(Step::found);
    EXPECT_TRUE(bridge.hasReleaseNotes());
    bridge.openReleaseNotes();
    EXPECT_THAT(opened, ElementsAre("https://kestry.example/notes"));
    EXPECT_EQ(failure, "");
}

TEST_F(SoftwareUpdateBridgeTest, WithoutABrowserTheirAddressIsTold)
{
    configure();
    show(Step::found);
    hasBrowser = false;
    bridge.openReleaseNotes();
    EXPECT_EQ(failure,
        "No web browser could be opened. The release notes are at:\nhttps://kestry.example/notes");
}

TEST_F(SoftwareUpdateBridgeTest, ALinkThatIsNoWebPageIsNotOpened)
{
    configure();
    for (const std::string link : {"", "http://kestry.example/notes", "file:///bin/true",
             "https:///notes", "javascript:1", "notes"}) {
        stage.update.releaseNotes = link;
        show(Step::found);
        EXPECT_FALSE(bridge.hasReleaseNotes()) << link;
        bridge.openReleaseNotes();
    }
    EXPECT_THAT(opened, IsEmpty());
}

} // namespace
} // namespace Kestry
