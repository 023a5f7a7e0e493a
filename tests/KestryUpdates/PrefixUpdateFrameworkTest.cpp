#include "PrefixUpdateFramework.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "Appcast.h"
#include "InstalledPrefix.h"
#include "Refusal.h"
#include "ScriptedSource.h"
#include "VirtualScheduler.h"

namespace Kestry {
namespace {

using namespace KestryCore;
using ::testing::ElementsAre;
using Step = UpdateStage::Step;

constexpr double oneDay = 86'400.0;

/// Notes what it is told, and answers what a test says.
class NotingDelegate final : public UpdateDelegate {
public:
    std::vector<std::string> told;
    std::optional<std::string> refusal;
    bool mayRelaunch = true;

    std::optional<std::string> mayPerformUpdateCheck() override
    {
        told.emplace_back("may check?");
        return refusal;
    }
    bool shouldRelaunchApplication() override
    {
        told.emplace_back("may relaunch?");
        return mayRelaunch;
    }
    void didFindValidUpdate() override { told.emplace_back("found"); }
    void didNotFindUpdate() override { told.emplace_back("none"); }
    void didAbortWithError(const std::string& words) override { told.push_back("abort " + words); }
    void didFinishUpdateCycle(const std::optional<std::string>& error) override
    {
        told.push_back("end " + error.value_or("well"));
    }
};

class PrefixUpdateFrameworkTest : public testing::Test, public InstalledPrefix {
protected:
    PrefixUpdateFrameworkTest()
    {
        publish("1.3.0");
        begin();
    }

    /// The feed announces an archive that is signed with the key.
    void publish(const std::string& version, const std::string& inside = {})
    {
        source.archiveBytes = testArchive(
            versionEntries(inside.empty() ? version : inside), archive_write_add_filter_zstd);
        const UpdateSignature signature = key.sign(source.archiveBytes);
        source.feedBytes = appcast({{.version = version,
            .shortVersion = version + " beta",
            .bytes = std::to_string(source.archiveBytes.size()),
            .signature = encodeBase64(std::string(signature.begin(), signature.end()))}});
    }
    /// A program that starts.
    void begin()
    {
        PrefixUpdateFramework::Platform platform{scheduler, files, source};
        platform.program = program;
        platform.runningVersion = "1.2.0";
        platform.systemVersion = "6.1.0-28-amd64";
        platform.now = scheduler.wallClock(Date{800'000'000.0});
        platform.random = [] { return 0.5; };
        platform.settings = {[this](const std::string& name) {
                                 const auto found = settings.find(name);
                                 return found != settings.end() ? std::optional(found->second)
                                                                : std::nullopt;
                             },
            [this](const std::string& name, const std::string& value) { settings[name] = value; }};
        platform.work = [this](
                            const std::function<void()>& work, const std::function<void()>& done) {
            work();
            scheduler.post(done);
        };
        platform.relaunch = [this](const std::string& path) { relaunched = path; };
        framework.emplace(std::move(platform),
            UpdateFrameworkSetup{"https://example.org/feed", key.publicKey(), [this] {
                                     ++terminations;
                                     return mayTerminate;
                                 }});
        delegate.told.clear();
    }
    void start() { framework->start(delegate); }
    void check()
    {
        framework->checkForUpdates();
        scheduler.advance(5.0);
    }
    void install()
    {
        framework->install();
        scheduler.advance(5.0);
    }
    Step step() { return framework->fields().stage->step; }
    std::string failure() { return framework->fields().stage->failure; }
    bool canCheck() { return *framework->fields().canCheckForUpdates; }

    VirtualScheduler scheduler;
    ScriptedSource source{scheduler, files};
    NotingDelegate delegate;
    std::map<std::string, std::string> settings;
    std::string program = "/home/kestry/versions/1.2.0/bin/kestry";
    bool mayTerminate = true;
    int terminations = 0;
    std::string relaunched;
    std::optional<PrefixUpdateFramework> framework;
};

TEST_F(PrefixUpdateFrameworkTest, BeforeItsStartItDoesNothing)
{
    check();
    framework->install();
    framework->dismiss();
    EXPECT_FALSE(canCheck());
    EXPECT_EQ(source.feeds, 0);
}

TEST_F(PrefixUpdateFrameworkTest, AProgramThatStandsElsewhereIsToldSo)
{
    program = "/usr/bin/kestry";
    begin();
    EXPECT_EQ(refusalOf([this] { start(); }),
        "Kestry can't update itself in this place. Get new versions from where you have got this "
        "one.");
    EXPECT_FALSE(canCheck());
}

TEST_F(PrefixUpdateFrameworkTest, AStartAsksNobody)
{
    start();
    scheduler.advance(30 * oneDay);
    EXPECT_TRUE(canCheck());
    EXPECT_FALSE(*framework->fields().automaticallyChecksForUpdates);
    EXPECT_EQ(source.feeds, 0);
    EXPECT_TRUE(delegate.told.empty());
}

TEST_F(PrefixUpdateFrameworkTest, ANewVersionIsFound)
{
    start();
    framework->checkForUpdates();
    EXPECT_EQ(step(), Step::checking);
    EXPECT_FALSE(canCheck());
    scheduler.advance(5.0);
    EXPECT_EQ(step(), Step::found);
    EXPECT_EQ(framework->fields().stage->update.version, "1.3.0 beta");
    EXPECT_EQ(framework->fields().stage->update.releaseNotes, "https://example.org/notes");
    EXPECT_TRUE(canCheck());
    EXPECT_THAT(delegate.told, ElementsAre("may check?", "found"));
    EXPECT_EQ(source.archives, 0) << "nothing is fetched unasked";
}

TEST_F(PrefixUpdateFrameworkTest, NoNewVersionIsTold)
{
    start();
    publish("1.2.0");
    check();
    EXPECT_EQ(step(), Step::upToDate);
    EXPECT_THAT(delegate.told, ElementsAre("may check?", "none", "end well"));
    EXPECT_TRUE(framework->fields().lastUpdateCheckDate->has_value());
}

TEST_F(PrefixUpdateFrameworkTest, ARefusedCheckFetchesNothing)
{
    start();
    delegate.refusal = "Not now.";
    check();
    EXPECT_EQ(source.feeds, 0);
    EXPECT_EQ(failure(), "Not now.");
    EXPECT_TRUE(canCheck());
    EXPECT_THAT(delegate.told, ElementsAre("may check?", "end Not now."));
}

TEST_F(PrefixUpdateFrameworkTest, ACheckThatFailsSaysWhy)
{
    start();
    source.failure = "No network.";
    check();
    EXPECT_EQ(step(), Step::failed);
    EXPECT_EQ(failure(), "No network.");
    EXPECT_TRUE(canCheck());
    EXPECT_THAT(delegate.told, ElementsAre("may check?", "abort No network.", "end No network."));
    EXPECT_FALSE(*framework->fields().lastUpdateCheckDate);
}

TEST_F(PrefixUpdateFrameworkTest, AFeedThatIsNoneSaysSo)
{
    start();
    source.feedBytes = "<html/>";
    check();
    EXPECT_EQ(failure(), "The list of new versions could not be read.");
}

TEST_F(PrefixUpdateFrameworkTest, AnUpdateIsInstalledAndTheProgramStartedAgain)
{
    start();
    check();
    framework->install();
    EXPECT_EQ(step(), Step::downloading);
    EXPECT_EQ(framework->fields().stage->received, 1);
    EXPECT_FALSE(canCheck());
    EXPECT_EQ(startable(), "1.2.0");
    scheduler.advance(5.0);
    EXPECT_EQ(startable(), "1.3.0");
    EXPECT_TRUE(canGoBack());
    EXPECT_EQ(terminations, 1);
    EXPECT_EQ(relaunched, "/home/kestry/bin/kestry");
    EXPECT_THAT(delegate.told, ElementsAre("may check?", "found", "may relaunch?", "end well"));
}

TEST_F(PrefixUpdateFrameworkTest, WithoutPermissionToRelaunchNothingIsSwitched)
{
    start();
    check();
    delegate.mayRelaunch = false;
    install();
    EXPECT_EQ(step(), Step::ready);
    EXPECT_EQ(startable(), "1.2.0");
    EXPECT_FALSE(prefix.trial());
    EXPECT_EQ(terminations, 0);
    EXPECT_TRUE(canCheck());
    EXPECT_EQ(delegate.told.back(), "end well");
}

TEST_F(PrefixUpdateFrameworkTest, AnUpdateThatIsReadyNeedsNoSecondDownload)
{
    start();
    check();
    delegate.mayRelaunch = false;
    install();
    delegate.mayRelaunch = true;
    install();
    EXPECT_EQ(source.archives, 1);
    EXPECT_EQ(startable(), "1.3.0");
    EXPECT_EQ(relaunched, "/home/kestry/bin/kestry");
}

TEST_F(PrefixUpdateFrameworkTest, AQuitThatIsCancelledTakesTheSwitchBack)
{
    start();
    check();
    mayTerminate = false;
    install();
    EXPECT_EQ(terminations, 1);
    EXPECT_EQ(startable(), "1.2.0");
    EXPECT_FALSE(prefix.trial());
    EXPECT_EQ(relaunched, "");
    EXPECT_EQ(step(), Step::ready);
    mayTerminate = true;
    install();
    EXPECT_EQ(startable(), "1.3.0");
}

TEST_F(PrefixUpdateFrameworkTest, AnArchiveThatIsRefusedLeavesNothing)
{
    start();
    publish("1.3.0", "1.1.0");
    check();
    install();
    const std::string words =
        "The new version was refused: it was announced as 1.3.0, and it is 1.1.0.";
    EXPECT_EQ(failure(), words);
    EXPECT_EQ(startable(), "1.2.0");
    EXPECT_FALSE(files.isDirectory("/home/kestry/versions/1.3.0"));
    EXPECT_FALSE(files.isDirectory("/home/kestry/updates"));
    EXPECT_FALSE(files.isLocked("/home/kestry"));
    EXPECT_EQ(delegate.told.back(), "end " + words);
    EXPECT_TRUE(canCheck());
}

TEST_F(PrefixUpdateFrameworkTest, ADownloadThatFailsSaysWhyAndMayBeTriedAgain)
{
    start();
    check();
    source.failure = "No network.";
    install();
    EXPECT_EQ(failure(), "No network.");
    EXPECT_EQ(framework->fields().stage->update.version, "1.3.0 beta");
    source.failure = "";
    check();
    install();
    EXPECT_EQ(startable(), "1.3.0");
}

TEST_F(PrefixUpdateFrameworkTest, WhileAnotherProcessIsAtItNothingIsInstalled)
{
    start();
    check();
    files.holdLock("/home/kestry", "kestry");
    install();
    EXPECT_EQ(failure(), "Another program is just changing this installation of Kestry.");
    EXPECT_EQ(source.archives, 0);
}

TEST_F(PrefixUpdateFrameworkTest, ADismissedUpdateIsGone)
{
    start();
    check();
    framework->dismiss();
    EXPECT_EQ(step(), Step::nothing);
    EXPECT_THAT(delegate.told, ElementsAre("may check?", "found", "end well"));
    install();
    EXPECT_EQ(source.archives, 0);
}

TEST_F(PrefixUpdateFrameworkTest, ADismissedCheckFindsNothing)
{
    start();
    framework->checkForUpdates();
    framework->dismiss();
    scheduler.advance(5.0);
    EXPECT_EQ(step(), Step::nothing);
    EXPECT_TRUE(canCheck());
    EXPECT_THAT(delegate.told, ElementsAre("may check?", "end well"));
}

TEST_F(PrefixUpdateFrameworkTest, ADismissedDownloadLeavesNothingAtAnyMoment)
{
    for (const double seconds : {0.0, 0.5, 1.0}) {
        begin();
        start();
        check();
        framework->install();
        scheduler.advance(seconds);
        framework->dismiss();
        scheduler.advance(5.0);
        EXPECT_EQ(startable(), seconds < 1.0 ? "1.2.0" : "1.3.0") << seconds;
        EXPECT_FALSE(files.isDirectory("/home/kestry/updates")) << seconds;
        EXPECT_EQ(terminations, seconds < 1.0 ? 0 : 1) << seconds;
    }
}

TEST_F(PrefixUpdateFrameworkTest, ACheckAnewEndsTheOneBefore)
{
    start();
    check();
    publish("1.4.0");
    check();
    EXPECT_EQ(framework->fields().stage->update.version, "1.4.0 beta");
    EXPECT_THAT(
        delegate.told, ElementsAre("may check?", "found", "end well", "may check?", "found"));
}

TEST_F(PrefixUpdateFrameworkTest, SwitchedOnItChecksOnceADayInSilence)
{
    start();
    publish("1.2.0");
    framework->setAutomaticallyChecksForUpdates(true);
    scheduler.advance(10 * oneDay);
    EXPECT_GE(source.feeds, 9);
    EXPECT_LE(source.feeds, 11);
    EXPECT_EQ(step(), Step::nothing);
    framework->setAutomaticallyChecksForUpdates(false);
    const int before = source.feeds;
    scheduler.advance(10 * oneDay);
    EXPECT_EQ(source.feeds, before);
}

TEST_F(PrefixUpdateFrameworkTest, ACheckByItselfThatFailsShowsNothing)
{
    start();
    source.failure = "No network.";
    framework->setAutomaticallyChecksForUpdates(true);
    scheduler.advance(2 * oneDay);
    EXPECT_GE(source.feeds, 1);
    EXPECT_EQ(step(), Step::nothing);
}

TEST_F(PrefixUpdateFrameworkTest, WhatACheckByItselfFindsWaitsForTheUser)
{
    start();
    framework->setAutomaticallyChecksForUpdates(true);
    scheduler.advance(5 * oneDay);
    EXPECT_EQ(step(), Step::found);
    EXPECT_EQ(source.feeds, 1);
    EXPECT_EQ(source.archives, 0);
}

TEST_F(PrefixUpdateFrameworkTest, TheSwitchAndTheLastCheckAreKeptFromRunToRun)
{
    start();
    framework->setAutomaticallyChecksForUpdates(true);
    check();
    const auto date = *framework->fields().lastUpdateCheckDate;
    begin();
    start();
    EXPECT_TRUE(*framework->fields().automaticallyChecksForUpdates);
    EXPECT_EQ(*framework->fields().lastUpdateCheckDate, date);
}

TEST_F(PrefixUpdateFrameworkTest, SettingsThatAreDamagedCountAsAbsent)
{
    settings = {{"automaticallyChecksForUpdates", "yes"}, {"lastUpdateCheckDate", "nan"},
        {"nextUpdateCheckDate", "1e999"}};
    start();
    EXPECT_FALSE(*framework->fields().automaticallyChecksForUpdates);
    EXPECT_FALSE(*framework->fields().lastUpdateCheckDate);
}

TEST_F(PrefixUpdateFrameworkTest, AVersionThatDidNotStartIsToldOnceAndNotFromWithinTheStart)
{
    InstalledPrefix::install();
    prefix.goBack();
    start();
    EXPECT_TRUE(delegate.told.empty());
    scheduler.turn();
    const std::string words = "Version 1.3.0 did not start. Version 1.2.0 is in use again.";
    EXPECT_THAT(delegate.told, ElementsAre("abort " + words, "end " + words));
    EXPECT_EQ(failure(), words);
    begin();
    start();
    scheduler.turn();
    EXPECT_TRUE(delegate.told.empty());
}

TEST_F(PrefixUpdateFrameworkTest, AnUpdateThatIsInstalledAlreadyAsksForAFreshStart)
{
    InstalledPrefix::install();
    start();
    check();
    install();
    EXPECT_EQ(failure(), "Version 1.3.0 is installed already. Quit Kestry and start it again.");
    EXPECT_EQ(source.archives, 0);
    EXPECT_EQ(startable(), "1.3.0");
}

TEST_F(PrefixUpdateFrameworkTest, ASwitchThatFailsLeavesTheInstalledVersion)
{
    start();
    check();
    files.failCalls("/home/kestry/current replaced", EIO);
    install();
    files.heal();
    EXPECT_EQ(failure(), "current could not be replaced: Input/output error.");
    EXPECT_EQ(startable(), "1.2.0");
    EXPECT_EQ(terminations, 0);
}

} // namespace
} // namespace Kestry
