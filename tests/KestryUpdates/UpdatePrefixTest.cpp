#include "UpdatePrefix.h"

#include <gtest/gtest.h>

#include <functional>

#include "InstalledPrefix.h"
#include "Refusal.h"

namespace Kestry {
namespace {

using namespace KestryCore;

class UpdatePrefixTest : public testing::Test, public InstalledPrefix {
protected:
    /// A version that lies there, whole.
    void layDown(const std::string& version)
    {
        const std::string root = "/home/kestry/versions/" + version;
        for (const char* folder : {"", "/bin", "/lib", "/share", "/share/kestry"}) {
            files.putDirectory(root + folder);
        }
        files.put(root + "/bin/kestry", "program " + version);
        files.put(root + "/lib/libkestry.so.1.0", std::string(3000, 'l'));
        files.putLink(root + "/lib/libkestry.so.1", "libkestry.so.1.0");
        files.put(root + "/share/kestry/Info.json", version);
    }
    bool isThere(const std::string& name)
    {
        return files.status("/home/kestry/" + name).has_value();
    }
    std::optional<UpdatePrefix> ofProgram(const std::string& path)
    {
        return UpdatePrefix::ofProgram(files, path);
    }
};

TEST_F(UpdatePrefixTest, AProgramOfAnInstallationFindsIt)
{
    ASSERT_TRUE(ofProgram("/home/kestry/versions/1.2.0/bin/kestry"));
    EXPECT_EQ(ofProgram("/home/kestry/versions/1.2.0/bin/kestry")->path(), "/home/kestry");
}

TEST_F(UpdatePrefixTest, AProgramThatStandsElsewhereFindsNone)
{
    for (const char* path : {"/usr/bin/kestry", "kestry", "/", "", "/home/kestry/bin/kestry",
             "/home/kestry/versions/new/bin/kestry", "/home/kestry/versions/1.2.0/bin/other",
             "/home/kestry/versions/1.2.0/libexec/kestry"}) {
        EXPECT_FALSE(ofProgram(path)) << path;
    }
    files.erase("/home/kestry/current");
    EXPECT_FALSE(ofProgram("/home/kestry/versions/1.2.0/bin/kestry"));
}

TEST_F(UpdatePrefixTest, AnInstallationWithoutALauncherIsNone)
{
    files.erase("/home/kestry/bin/kestry");
    EXPECT_FALSE(ofProgram("/home/kestry/versions/1.2.0/bin/kestry"));
}

TEST_F(UpdatePrefixTest, TheLinkLeadsToTheCurrentVersionOrToNone)
{
    EXPECT_EQ(prefix.current()->text(), "1.2.0");
    for (const char* target : {"/usr", "versions/..", "../versions/1.2.0", "versions/1.2.0/bin"}) {
        files.putLink("/home/kestry/current", target);
        EXPECT_FALSE(prefix.current()) << target;
    }
    files.put("/home/kestry/current", "versions/1.2.0");
    EXPECT_FALSE(prefix.current());
}

TEST_F(UpdatePrefixTest, ASwitchPutsAVersionOnTrialAndKeepsTheOneBefore)
{
    layDown("1.3.0");
    prefix.switchTo(testVersion("1.3.0"));
    EXPECT_EQ(startable(), "1.3.0");
    EXPECT_EQ(prefix.trial()->version.text(), "1.3.0");
    EXPECT_EQ(prefix.trial()->previous.text(), "1.2.0");
    EXPECT_TRUE(canGoBack());
}

TEST_F(UpdatePrefixTest, AVersionThatIsNotThereIsNotSwitchedTo)
{
    EXPECT_EQ(refusalOf([&] { prefix.switchTo(testVersion("1.4")); }),
        "Version 1.4 can't be switched to.");
    EXPECT_EQ(startable(), "1.2.0");
    EXPECT_FALSE(prefix.trial());
}

TEST_F(UpdatePrefixTest, AVersionThatHasStartedReplacesTheOneBefore)
{
    layDown("1.3.0");
    prefix.switchTo(testVersion("1.3.0"));
    prefix.confirm(testVersion("1.3.0"));
    EXPECT_EQ(startable(), "1.3.0");
    EXPECT_FALSE(prefix.trial());
    EXPECT_FALSE(isThere("versions/1.2.0"));
    EXPECT_FALSE(isThere("updates"));
}

TEST_F(UpdatePrefixTest, TheVersionBeforeStaysWhenAnotherSaysThatItHasStarted)
{
    layDown("1.3.0");
    prefix.switchTo(testVersion("1.3.0"));
    prefix.confirm(testVersion("1.2.0"));
    EXPECT_TRUE(prefix.trial());
    EXPECT_TRUE(canGoBack());
}

TEST_F(UpdatePrefixTest, AVersionThatDidNotStartGoesBackAndIsToldOnce)
{
    layDown("1.3.0");
    prefix.switchTo(testVersion("1.3.0"));
    EXPECT_TRUE(prefix.goBack());
    EXPECT_EQ(startable(), "1.2.0");
    EXPECT_FALSE(prefix.trial());
    EXPECT_EQ(prefix.takeFailed()->version.text(), "1.3.0");
    EXPECT_FALSE(prefix.takeFailed());
}

TEST_F(UpdatePrefixTest, WithoutATrialNothingGoesBack)
{
    layDown("1.3.0");
    EXPECT_FALSE(prefix.goBack());
    files.put("/home/kestry/trial", "1.3.0\n1.1.0\n"); // Of a switch that was never made.
    EXPECT_FALSE(prefix.goBack());
    EXPECT_EQ(startable(), "1.2.0");
}

TEST_F(UpdatePrefixTest, NothingGoesBackToAVersionThatIsGone)
{
    layDown("1.3.0");
    prefix.switchTo(testVersion("1.3.0"));
    files.removeDirectory("/home/kestry/versions/1.2.0");
    EXPECT_FALSE(prefix.goBack());
    EXPECT_EQ(startable(), "1.3.0");
}

TEST_F(UpdatePrefixTest, AQuitThatIsCancelledTakesTheSwitchBackWithoutAWord)
{
    layDown("1.3.0");
    prefix.switchTo(testVersion("1.3.0"));
    prefix.takeBack();
    EXPECT_EQ(startable(), "1.2.0");
    EXPECT_FALSE(isThere("trial"));
    EXPECT_FALSE(prefix.takeFailed());
    EXPECT_TRUE(isThere("versions/1.3.0"));
}

TEST_F(UpdatePrefixTest, AMarkThatIsDamagedIsNoTrial)
{
    for (const std::string& mark : {std::string(), std::string("1.2.0"), std::string("1.2.0\n\n"),
             std::string("\n1.2.0\n"), std::string("../x\n1.2.0\n"), std::string(300, '1')}) {
        files.put("/home/kestry/trial", mark);
        EXPECT_FALSE(prefix.trial()) << mark;
    }
    files.putLink("/home/kestry/trial", "current");
    EXPECT_FALSE(prefix.trial());
}

TEST_F(UpdatePrefixTest, RoomIsMadeBesideWhatIsInUse)
{
    files.putDirectory("/home/kestry/versions/1.3.0");
    files.put("/home/kestry/versions/1.3.0/half", "of an earlier attempt");
    files.putLink("/home/kestry/current.new", "versions/9");
    files.put("/home/kestry/versions/notes", "the user's");
    const UpdatePrefix::Room room = prefix.makeRoom(testVersion("1.3.0"));
    EXPECT_EQ(room.directory, "/home/kestry/versions/1.3.0");
    EXPECT_TRUE(files.list(room.directory).empty());
    EXPECT_FALSE(isThere("current.new"));
    EXPECT_EQ(files.content("/home/kestry/versions/notes"), "the user's");
    EXPECT_EQ(startable(), "1.2.0");
}

TEST_F(UpdatePrefixTest, NoRoomIsMadeOverAVersionInUse)
{
    layDown("1.3.0");
    prefix.switchTo(testVersion("1.3.0"));
    for (const char* version : {"1.3.0", "1.3", "1.2.0"}) {
        EXPECT_EQ(refusalOf([&] { (void)prefix.makeRoom(testVersion(version)); }),
            std::string("Version ") + version
                + " is installed already. Quit Kestry and start it again.");
    }
    EXPECT_EQ(startable(), "1.3.0");
    EXPECT_TRUE(canGoBack());
}

TEST_F(UpdatePrefixTest, WithoutACurrentVersionNothingIsRemoved)
{
    files.putLink("/home/kestry/current", "elsewhere");
    EXPECT_EQ(
        refusalOf([&] { prefix.clear(); }), "This installation of Kestry has no current version.");
    EXPECT_TRUE(isThere("versions/1.2.0"));
}

TEST_F(UpdatePrefixTest, OneProcessAtATimeChangesIt)
{
    files.holdLock("/home/kestry", "kestry (process 4711)");
    EXPECT_EQ(refusalOf([&] { (void)prefix.lock(); }),
        "Another program is just changing this installation of Kestry.");
}

// The rule that all others serve: whatever fails, and wherever the program or the power ends, what
// a start begins is whole, and what it could have to go back to is too.

/// Does something after each single failure, and after each end of the power, and looks.
class UpdatePrefixFaults : public testing::Test {
protected:
    using Action = std::function<void(InstalledPrefix&)>;

    void explore(const Action& before, const Action& action)
    {
        for (const int code : {ENOSPC, EIO, EACCES}) {
            for (int number = 1; failsAt(number, code, before, action); ++number) { }
        }
        for (const Unsynced unsynced : {Unsynced::lost, Unsynced::namesKept, Unsynced::kept}) {
            for (int number = 1; endsAt(number, unsynced, before, action); ++number) { }
        }
        EXPECT_GT(runs, 100);
    }

private:
    bool failsAt(int number, int code, const Action& before, const Action& action)
    {
        InstalledPrefix world;
        before(world);
        world.files.failCall(number, code);
        try {
            action(world);
        } catch (const LedgerError&) {
            SUCCEED();
        }
        const std::string call = world.files.faultyCall();
        const bool happened = world.files.faultHappened();
        world.files.heal();
        look(world, call);
        EXPECT_EQ(world.files.openHandles(), 0u) << call;
        return happened;
    }

    bool endsAt(int number, Unsynced unsynced, const Action& before, const Action& action)
    {
        InstalledPrefix world;
        before(world);
        world.files.cutPowerBefore(number);
        bool happened = false;
        std::string call;
        try {
            action(world);
        } catch (const PowerCut&) {
            happened = true;
            call = world.files.faultyCall();
        }
        world.files.restart(unsynced);
        look(world, call);
        return happened;
    }

    /// What is left is startable, can go back, and an update goes on from there.
    void look(InstalledPrefix& world, const std::string& call)
    {
        ++runs;
        const std::string version = world.startable();
        EXPECT_TRUE(version == "1.2.0" || version == "1.3.0") << version << " after " << call;
        EXPECT_TRUE(world.canGoBack()) << call;
        world.prefix.confirm(testVersion(version));
        EXPECT_EQ(world.startable(), version) << call;
        EXPECT_FALSE(world.prefix.trial()) << call;
        world.install("1.4.0");
        EXPECT_EQ(world.startable(), "1.4.0") << call;
    }

    int runs = 0;
};

TEST_F(UpdatePrefixFaults, AnInstallationIsWholeWhateverFailsAndWheneverItEnds)
{
    explore([](InstalledPrefix&) {}, [](InstalledPrefix& world) { world.install(); });
}

TEST_F(UpdatePrefixFaults, SoItIsWhenAVersionConfirmsItsStart)
{
    explore([](InstalledPrefix& world) { world.install(); },
        [](InstalledPrefix& world) { world.prefix.confirm(testVersion("1.3.0")); });
}

TEST_F(UpdatePrefixFaults, SoItIsWhenTheLinkGoesBack)
{
    explore([](InstalledPrefix& world) { world.install(); },
        [](InstalledPrefix& world) { world.prefix.goBack(); });
}

TEST_F(UpdatePrefixFaults, SoItIsWhenASwitchIsTakenBackAndMadeAgain)
{
    explore([](InstalledPrefix& world) { world.install(); },
        [](InstalledPrefix& world) {
            world.prefix.takeBack();
            world.prefix.switchTo(testVersion("1.3.0"));
        });
}

} // namespace
} // namespace Kestry
