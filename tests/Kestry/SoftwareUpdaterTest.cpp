#include "SoftwareUpdater.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "FakeUpdateFramework.h"

namespace Kestry {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string initialWords = "Software updates are not enabled in this build.";
const std::string readyWords = "Updates are ready to check.";
const std::string checkingWords = "Checking for updates…";
const std::string blockedWords =
    "Save your changes and finish the current session before installing an update.";

class SoftwareUpdaterTest : public ::testing::Test {
protected:
    SoftwareUpdaterTest()
    {
        configuration.feed = UpdateFeed{"https://updates.example/feed.xml", {7}};
    }

    void make()
    {
        updater = std::make_unique<SoftwareUpdater>(
            SoftwareUpdater::World{*store, state, configuration, factory, [this] {
                                       ++quits;
                                       return !updater->refusesQuit() && mayQuit;
                                   }});
    }
    void configure()
    {
        make();
        updater->configure();
    }
    /// A framework that runs and can check.
    void configureReady()
    {
        configure();
        framework().published.canCheckForUpdates.assign(true);
    }
    void startSession() { store->start(addClient(*store, "Aster"), std::nullopt, "", world.now()); }
    void openEditor() { state.editor.assign(Editor{Editor::ClientForm{}}); }

    [[nodiscard]] FakeUpdateFramework& framework() { return *witness.framework; }
    [[nodiscard]] UpdateDelegate& delegate() { return *framework().delegate; }
    [[nodiscard]] const SoftwareUpdaterFields& fields() const { return updater->fields(); }
    [[nodiscard]] std::string status() const { return *fields().status; }
    [[nodiscard]] std::string failure() const { return fields().errorMessage->value_or(""); }
    [[nodiscard]] std::string alert() const { return state.updateMessage->value_or(""); }

    /// The blocked wording in both fields, which begin with other words.
    void expectBlocked() const
    {
        EXPECT_EQ(status(), blockedWords);
        EXPECT_EQ(failure(), blockedWords);
    }

    ApplicationWorld world;
    std::unique_ptr<KestryCore::TimeStore> store =
        std::make_unique<KestryCore::TimeStore>(world.storePlatform(), world.onDisk());
    AppState state{world.defaults};
    UpdateConfiguration configuration;
    FakeUpdateFramework::Witness witness;
    UpdateFrameworkFactory factory = FakeUpdateFramework::factory(witness);
    int quits = 0;
    bool mayQuit = true;
    std::unique_ptr<SoftwareUpdater> updater;
};

// The beginning.

TEST_F(SoftwareUpdaterTest, BeforeItIsConfiguredNothingIsOffered)
{
    make();
    EXPECT_FALSE(*fields().isConfigured);
    EXPECT_FALSE(*fields().canCheck);
    EXPECT_FALSE(*fields().automaticChecks);
    EXPECT_EQ(*fields().lastCheckDate, std::nullopt);
    EXPECT_EQ(status(), initialWords);
    EXPECT_EQ(*fields().errorMessage, std::nullopt);
    EXPECT_EQ(*fields().stage, UpdateStage());
    EXPECT_FALSE(updater->mayCheck());
}

TEST_F(SoftwareUpdaterTest, ADemoHasNoUpdates)
{
    store = std::make_unique<KestryCore::TimeStore>(world.storePlatform(), world.inMemory());
    configuration.isFromStore = true; // the demo goes first
    configure();
    EXPECT_EQ(status(), "Software updates are unavailable in demo mode.");
    EXPECT_FALSE(*fields().isConfigured);
    EXPECT_EQ(witness.made, 0);
}

TEST_F(SoftwareUpdaterTest, AStoreBringsItsOwnUpdatesWhateverElseIsConfigured)
{
    configuration.isFromStore = true;
    configure();
    EXPECT_EQ(status(), "Get updates from the App Store.");
    EXPECT_FALSE(*fields().isConfigured);
    EXPECT_EQ(witness.made, 0);
}

TEST_F(SoftwareUpdaterTest, WithoutAWholeFeedTheInitialWordsStay)
{
    configuration.feed.reset();
    configure();
    EXPECT_EQ(status(), initialWords);
    EXPECT_EQ(*fields().errorMessage, std::nullopt);
    EXPECT_FALSE(*fields().isConfigured);
    EXPECT_EQ(witness.made, 0);
}

TEST_F(SoftwareUpdaterTest, WithoutAFrameworkTheInitialWordsStay)
{
    factory = {};
    configure();
    EXPECT_EQ(status(), initialWords);
    EXPECT_FALSE(*fields().isConfigured);
}

TEST_F(SoftwareUpdaterTest, TheFrameworkStartsWithTheFeedOfTheBuild)
{
    configure();
    EXPECT_EQ(witness.setup.feedURL, configuration.feed->url);
    EXPECT_EQ(witness.setup.publicKey, configuration.feed->publicKey);
    EXPECT_EQ(framework().delegate, updater.get());
    EXPECT_TRUE(*fields().isConfigured);
    EXPECT_EQ(status(), readyWords);
    EXPECT_EQ(*fields().errorMessage, std::nullopt);
}

TEST_F(SoftwareUpdaterTest, AFrameworkThatCannotStartIsToldAndTheProgramRunsWithoutIt)
{
    witness.startFailure = "The program does not stand where it can be replaced.";
    configure();
    EXPECT_EQ(status(), witness.startFailure);
    EXPECT_EQ(failure(), witness.startFailure);
    EXPECT_FALSE(*fields().isConfigured);
    updater->checkForUpdates();
    updater->setAutomaticChecks(true);
    updater->install();
    updater->dismiss();
    EXPECT_EQ(status(), witness.startFailure);
}

TEST_F(SoftwareUpdaterTest, ConfiguringAgainMakesNoSecondFramework)
{
    configure();
    updater->configure();
    EXPECT_EQ(witness.made, 1);
    EXPECT_TRUE(*fields().isConfigured);
}

// The mirrors.

TEST_F(SoftwareUpdaterTest, WhatTheFrameworkHasAtItsStartIsMirrored)
{
    const auto plain = FakeUpdateFramework::factory(witness);
    factory = [&](const UpdateFrameworkSetup& setup) {
        auto made = plain(setup);
        framework().published.canCheckForUpdates.assign(true);
        framework().published.automaticallyChecksForUpdates.assign(true);
        framework().published.lastUpdateCheckDate.assign(world.now());
        return made;
    };
    configure();
    EXPECT_TRUE(updater->mayCheck());
    EXPECT_TRUE(*fields().automaticChecks);
    EXPECT_EQ(*fields().lastCheckDate, world.now());
}

TEST_F(SoftwareUpdaterTest, WhatTheFrameworkPublishesLaterIsMirrored)
{
    configure();
    EXPECT_FALSE(updater->mayCheck());
    framework().published.canCheckForUpdates.assign(true);
    EXPECT_TRUE(updater->mayCheck());
    framework().published.lastUpdateCheckDate.assign(world.now());
    EXPECT_EQ(*fields().lastCheckDate, world.now());
    const UpdateStage found{.step = UpdateStage::Step::found, .update = {"2.0", "", 5}};
    framework().published.stage.assign(found);
    EXPECT_EQ(*fields().stage, found);
}

TEST_F(SoftwareUpdaterTest, TheChoiceOfAutomaticChecksIsWrittenThrough)
{
    configure();
    updater->setAutomaticChecks(true);
    EXPECT_TRUE(*framework().published.automaticallyChecksForUpdates);
    EXPECT_TRUE(*fields().automaticChecks);
    updater->setAutomaticChecks(false);
    EXPECT_FALSE(*fields().automaticChecks);
}

// A check.

TEST_F(SoftwareUpdaterTest, ACheckRunsInTheFramework)
{
    configureReady();
    delegate().didAbortWithError("The server is closed.");
    updater->checkForUpdates();
    EXPECT_THAT(framework().told, ElementsAre("check"));
    EXPECT_EQ(status(), checkingWords);
    EXPECT_EQ(*fields().errorMessage, std::nullopt);
    EXPECT_EQ(alert(), "");
}

TEST_F(SoftwareUpdaterTest, NothingIsCheckedWhileTheFrameworkCannot)
{
    configure();
    startSession();
    updater->checkForUpdates();
    EXPECT_THAT(framework().told, IsEmpty());
    EXPECT_EQ(status(), readyWords);
    EXPECT_EQ(alert(), "");
}

TEST_F(SoftwareUpdaterTest, NothingIsCheckedBeforeItIsConfigured)
{
    make();
    updater->checkForUpdates();
    EXPECT_EQ(status(), initialWords);
    EXPECT_EQ(alert(), "");
}

TEST_F(SoftwareUpdaterTest, ASessionRefusesACheckWithTheAlert)
{
    configureReady();
    startSession();
    updater->checkForUpdates();
    EXPECT_THAT(framework().told, IsEmpty());
    expectBlocked();
    EXPECT_EQ(alert(), blockedWords);
    EXPECT_FALSE(store->data()->active->isPaused());
}

TEST_F(SoftwareUpdaterTest, APausedSessionRefusesACheckToo)
{
    configureReady();
    startSession();
    store->pause(world.now());
    updater->checkForUpdates();
    EXPECT_EQ(alert(), blockedWords);
}

TEST_F(SoftwareUpdaterTest, AnOpenEditorWithoutASessionRefusesACheckWithTheAlert)
{
    configureReady();
    openEditor();
    updater->checkForUpdates();
    EXPECT_THAT(framework().told, IsEmpty());
    expectBlocked();
    EXPECT_EQ(alert(), blockedWords);
    EXPECT_TRUE(*state.editor);
}

TEST_F(SoftwareUpdaterTest, ATypedTitleWithoutASessionRefusesACheckWithTheAlert)
{
    configureReady();
    state.sessionTitle.assign(" ");
    updater->checkForUpdates();
    EXPECT_THAT(framework().told, IsEmpty());
    expectBlocked();
    EXPECT_EQ(alert(), blockedWords);
    EXPECT_EQ(*state.sessionTitle, " ");
}

TEST_F(SoftwareUpdaterTest, OnceNothingCanBeLostTheNextCheckRuns)
{
    configureReady();
    openEditor();
    updater->checkForUpdates();
    state.editor.assign(std::nullopt);
    updater->checkForUpdates();
    EXPECT_THAT(framework().told, ElementsAre("check"));
    EXPECT_EQ(*fields().errorMessage, std::nullopt);
}

// What the framework asks.

TEST_F(SoftwareUpdaterTest, ACheckOfTheFrameworksOwnIsAllowedWhileNothingCanBeLost)
{
    configureReady();
    EXPECT_EQ(delegate().mayPerformUpdateCheck(), std::nullopt);
    EXPECT_EQ(status(), readyWords);
}

TEST_F(SoftwareUpdaterTest, ACheckOfTheFrameworksOwnIsRefusedWithoutAnAlert)
{
    configureReady();
    startSession();
    EXPECT_EQ(delegate().mayPerformUpdateCheck(), blockedWords);
    expectBlocked();
    EXPECT_EQ(alert(), "");
}

TEST_F(SoftwareUpdaterTest, ARelaunchIsAllowedWhileNothingCanBeLost)
{
    configureReady();
    delegate().didFindValidUpdate();
    EXPECT_TRUE(delegate().shouldRelaunchApplication());
    EXPECT_EQ(status(), "An update is available.");
}

TEST_F(SoftwareUpdaterTest, ASessionThatBeganDuringTheDownloadRefusesTheRelaunch)
{
    configureReady();
    delegate().didFindValidUpdate();
    startSession();
    EXPECT_FALSE(delegate().shouldRelaunchApplication());
    expectBlocked();
    EXPECT_FALSE(updater->refusesQuit()); // a later quit is the user's own
}

// What the framework tells.

TEST_F(SoftwareUpdaterTest, AFoundUpdateTakesTheLastFailureAway)
{
    configureReady();
    delegate().didAbortWithError("The server is closed.");
    delegate().didFindValidUpdate();
    EXPECT_EQ(status(), "An update is available.");
    EXPECT_EQ(*fields().errorMessage, std::nullopt);
}

TEST_F(SoftwareUpdaterTest, NoUpdateTakesTheLastFailureAway)
{
    configureReady();
    delegate().didAbortWithError("The server is closed.");
    delegate().didNotFindUpdate();
    EXPECT_EQ(status(), "You’re up to date.");
    EXPECT_EQ(*fields().errorMessage, std::nullopt);
}

TEST_F(SoftwareUpdaterTest, AFailureIsToldInTheFrameworksWords)
{
    configureReady();
    delegate().didAbortWithError("The server is closed.");
    EXPECT_EQ(status(), "The server is closed.");
    EXPECT_EQ(failure(), "The server is closed.");
}

TEST_F(SoftwareUpdaterTest, ACycleThatEndsWithAnErrorAsksForNoInstallationAnyMore)
{
    configureReady();
    EXPECT_TRUE(delegate().shouldRelaunchApplication());
    delegate().didFinishUpdateCycle("The disk is full.");
    EXPECT_EQ(status(), "The disk is full.");
    EXPECT_EQ(failure(), "The disk is full.");
    startSession();
    EXPECT_FALSE(updater->refusesQuit());
}

TEST_F(SoftwareUpdaterTest, ACycleThatReportsNothingEndsTheCheck)
{
    configureReady();
    updater->checkForUpdates();
    delegate().didFinishUpdateCycle(std::nullopt);
    EXPECT_EQ(status(), "Update check finished.");
}

TEST_F(SoftwareUpdaterTest, ACycleThatHasReportedKeepsItsWords)
{
    configureReady();
    updater->checkForUpdates();
    delegate().didNotFindUpdate();
    delegate().didFinishUpdateCycle(std::nullopt);
    EXPECT_EQ(status(), "You’re up to date.");
}

// The installation and the quit.

TEST_F(SoftwareUpdaterTest, AnInstallationRunsInTheFrameworkAndCanBeLeft)
{
    configureReady();
    updater->install();
    updater->dismiss();
    EXPECT_THAT(framework().told, ElementsAre("install", "dismiss"));
}

TEST_F(SoftwareUpdaterTest, NothingIsDownloadedWhileItCouldNotBeInstalled)
{
    configureReady();
    startSession();
    updater->install();
    EXPECT_THAT(framework().told, IsEmpty());
    expectBlocked();
    EXPECT_EQ(alert(), blockedWords);
}

TEST_F(SoftwareUpdaterTest, AnOrdinaryQuitIsNotItsConcern)
{
    configureReady();
    startSession();
    EXPECT_FALSE(updater->refusesQuit());
    EXPECT_EQ(status(), readyWords);
}

TEST_F(SoftwareUpdaterTest, AQuitForAnUpdateIsRefusedOnceWhenSomethingHasBegun)
{
    configureReady();
    EXPECT_TRUE(delegate().shouldRelaunchApplication());
    startSession();
    EXPECT_TRUE(updater->refusesQuit());
    expectBlocked();
    EXPECT_FALSE(updater->refusesQuit());
}

TEST_F(SoftwareUpdaterTest, AQuitForAnUpdateGoesOnWhileNothingCanBeLost)
{
    configureReady();
    EXPECT_TRUE(delegate().shouldRelaunchApplication());
    EXPECT_TRUE(witness.setup.terminate());
    EXPECT_EQ(quits, 1);
}

TEST_F(SoftwareUpdaterTest, TheFrameworkLearnsThatTheQuitWasRefused)
{
    configureReady();
    EXPECT_TRUE(delegate().shouldRelaunchApplication());
    startSession();
    EXPECT_FALSE(witness.setup.terminate());
    expectBlocked();
}

TEST_F(SoftwareUpdaterTest, AQuitThatFailedForAnotherReasonLeavesNoRequestBehind)
{
    configureReady();
    mayQuit = false;
    EXPECT_TRUE(delegate().shouldRelaunchApplication());
    EXPECT_FALSE(witness.setup.terminate());
    startSession();
    EXPECT_FALSE(updater->refusesQuit());
}

TEST_F(SoftwareUpdaterTest, AnEndThatCannotBeStoppedIsNotRefused)
{
    configureReady();
    EXPECT_TRUE(delegate().shouldRelaunchApplication());
    startSession();
    updater->withdrawInstallation();
    EXPECT_FALSE(updater->refusesQuit());
}

} // namespace
} // namespace Kestry
