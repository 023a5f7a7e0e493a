#include "PrivateDirectories.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "FileSystem.h"
#include "PosixFileSystem.h"
#include "Refusal.h"
#include "SystemCalls.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

mode_t modeOf(const std::string& path)
{
    struct stat found { };
    EXPECT_EQ(stat(path.c_str(), &found), 0);
    return found.st_mode & 07777;
}

/// A user with a home directory of the test's own, and no folder of a log-in.
class PrivateDirectories : public testing::Test {
protected:
    PrivateDirectories()
    {
        SystemCalls::orders().home = home.path();
        hide({ofLogIn});
    }
    ~PrivateDirectories() override { SystemCalls::orders() = {}; }

    static void hide(const std::vector<std::string>& hidden)
    {
        SystemCalls::orders().changeStatus = [=](const std::string& path, int& result,
                                                 struct stat&) {
            result = std::ranges::find(hidden, path) != hidden.end() ? -1 : result;
        };
    }
    /// Another user has taken the folder below `/tmp`.
    void squat()
    {
        SystemCalls::orders().changeStatus = [this](const std::string& path, int& result,
                                                 struct stat& found) {
            result = path == ofLogIn ? -1 : result;
            found.st_uid += path == belowTmp ? 1 : 0;
        };
    }

    const std::string ofLogIn = "/run/user/" + std::to_string(getuid());
    const std::string belowTmp = "/tmp/kestry-" + std::to_string(getuid());
    TemporaryDirectory home;
    const std::string belowCache = home.path(".cache/kestry");
    EnvironmentVariable cache{"XDG_CACHE_HOME", home.path("other-cache")};
    EnvironmentVariable runtime{"XDG_RUNTIME_DIR", std::nullopt};
    TemporaryDirectory directory;
    PosixFileSystem files;
};

class ListeningAt : public PrivateDirectories {
protected:
    static std::string withEnvironment(const std::optional<std::string>& value)
    {
        const EnvironmentVariable variable("XDG_RUNTIME_DIR", value);
        return listeningPlace().path;
    }
};

TEST_F(ListeningAt, ThePrivateFolderThatTheEnvironmentNames)
{
    EXPECT_EQ(withEnvironment(directory.path()), directory.path());
}

TEST_F(ListeningAt, NoFolderThatOthersMayWriteTo)
{
    for (const mode_t mode : {0720, 0702}) {
        ASSERT_EQ(chmod(directory.path().c_str(), mode), 0);
        EXPECT_EQ(withEnvironment(directory.path()), belowTmp);
    }
}

TEST_F(ListeningAt, NoFolderThatIsMissingOrAFile)
{
    files.close(files.open(directory.path("file"), FileUse::create));
    EXPECT_EQ(withEnvironment(directory.path("file")), belowTmp);
    EXPECT_EQ(withEnvironment(directory.path("none")), belowTmp);
}

TEST_F(ListeningAt, TheFolderOfTheLogInWithoutAPathInTheEnvironment)
{
    SystemCalls::orders().changeStatus = [this](const std::string& path, int& result,
                                             struct stat& found) {
        if (path == ofLogIn) {
            result = 0;
            found.st_mode = S_IFDIR | S_IRWXU;
            found.st_uid = getuid();
        }
    };
    for (const auto& value : {std::optional<std::string>(), std::optional<std::string>(""),
             std::optional<std::string>("relative/path")}) {
        EXPECT_EQ(withEnvironment(value), ofLogIn);
    }
}

TEST_F(ListeningAt, TheFolderBelowTmpWithoutOneOfTheLogIn)
{
    const ListeningPlace place = listeningPlace();
    EXPECT_EQ(place.path, belowTmp);
    EXPECT_EQ(place.notice, "");
    EXPECT_TRUE(files.status(belowTmp)->isDirectory);
}

TEST_F(ListeningAt, TheCacheOfTheAccountsHomeWhereThatIsSomebodyElses)
{
    squat();
    const ListeningPlace place = listeningPlace();
    EXPECT_EQ(place.path, belowCache);
    EXPECT_EQ(place.notice,
        belowTmp + " can't be had for you alone, so " + belowCache + " is used in its place.");
    EXPECT_EQ(modeOf(belowCache), 0700U);
    EXPECT_EQ(modeOf(home.path(".cache")), 0700U);
}

TEST_F(ListeningAt, NoPlaceWhereThereIsNone)
{
    squat();
    SystemCalls::orders().home = home.path("none");
    EXPECT_EQ(refusalOf([] { (void)listeningPlace(); }),
        belowTmp + " doesn't belong to you alone, so it can't be used.");
}

TEST_F(PrivateDirectories, AreLookedThroughInTheOrderInWhichTheyAreChosen)
{
    (void)listeningPlace();
    EXPECT_EQ(meetingPlaces(), std::vector{belowTmp});
    const EnvironmentVariable variable("XDG_RUNTIME_DIR", directory.path());
    EXPECT_EQ(meetingPlaces(), (std::vector{directory.path(), belowTmp}));
}

TEST_F(PrivateDirectories, AreEachLookedAtOnce)
{
    (void)listeningPlace();
    const EnvironmentVariable variable("XDG_RUNTIME_DIR", belowTmp);
    EXPECT_EQ(meetingPlaces(), std::vector{belowTmp});
}

TEST_F(PrivateDirectories, AreFoundInTheCacheWhereSomebodyListensThere)
{
    squat();
    EXPECT_TRUE(meetingPlaces().empty()) << "nobody does yet";
    EXPECT_FALSE(exists(files, belowCache));
    (void)listeningPlace();
    EXPECT_EQ(meetingPlaces(), std::vector{belowCache});
    const EnvironmentVariable variable("XDG_RUNTIME_DIR", directory.path());
    EXPECT_EQ(meetingPlaces(), (std::vector{directory.path(), belowCache}));
}

TEST_F(PrivateDirectories, ThatLastDoNotFollowTheEnvironment)
{
    const EnvironmentVariable variable("XDG_RUNTIME_DIR", directory.path());
    const EnvironmentVariable otherHome("HOME", directory.path());
    EXPECT_EQ(lastingPlaces(), (std::vector{belowTmp, belowCache}));
    squat();
    EXPECT_EQ(lastingPlaces(), std::vector{belowCache});
}

TEST_F(PrivateDirectories, OfAnAccountThatIsNotListedAreThoseOfTheEnvironmentsHome)
{
    SystemCalls::orders().home = "";
    const EnvironmentVariable variable("HOME", directory.path());
    EXPECT_EQ(lastingPlaces(), (std::vector{belowTmp, directory.path(".cache/kestry")}));
    const EnvironmentVariable none("HOME", std::nullopt);
    EXPECT_EQ(lastingPlaces(), std::vector{belowTmp});
}

TEST_F(PrivateDirectories, ADirectoryOpenToOthersIsClosedOnce)
{
    for (const mode_t mode : {0755, 0750, 0701, 0777}) {
        ASSERT_EQ(chmod(directory.path().c_str(), mode), 0);
        EXPECT_TRUE(closeToOthers(directory.path()));
        EXPECT_EQ(modeOf(directory.path()), 0700U);
        EXPECT_FALSE(closeToOthers(directory.path()));
    }
}

TEST_F(PrivateDirectories, ATighterModeIsKept)
{
    ASSERT_EQ(chmod(directory.path().c_str(), 0500), 0);
    EXPECT_FALSE(closeToOthers(directory.path()));
    EXPECT_EQ(modeOf(directory.path()), 0500U);
    ASSERT_EQ(chmod(directory.path().c_str(), 0555), 0);
    EXPECT_TRUE(closeToOthers(directory.path()));
    EXPECT_EQ(modeOf(directory.path()), 0500U);
}

TEST_F(PrivateDirectories, WhatALinkLeadsToOrIsMissingStaysAsItIs)
{
    ASSERT_EQ(chmod(directory.path().c_str(), 0755), 0);
    ASSERT_EQ(symlink(directory.path().c_str(), home.path("link").c_str()), 0);
    EXPECT_FALSE(closeToOthers(home.path("link")));
    EXPECT_FALSE(closeToOthers(home.path("none")));
    EXPECT_EQ(modeOf(directory.path()), 0755U);
}

TEST_F(PrivateDirectories, AClosedDirectoryIsToldInWords)
{
    EXPECT_EQ(closedText("/home/me/Kestry"),
        "Other users of this computer had access to the data directory /home/me/Kestry. It has "
        "been closed to them.");
}

} // namespace
} // namespace KestryCore
