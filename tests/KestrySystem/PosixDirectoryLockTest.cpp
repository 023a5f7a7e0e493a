#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

#include "OtherWriter.h"
#include "PosixFileSystem.h"
#include "Refusal.h"
#include "SystemCalls.h"
#include "TemporaryDirectory.h"
#include "WriterLock.h"

namespace KestryCore {
namespace {

/// What holds of the file that stands in for the lock of a directory.
class StandInForALock : public testing::Test {
protected:
    StandInForALock()
    {
        SystemCalls::orders().home = home.path();
        SystemCalls::orders().directoryLockError = EOPNOTSUPP;
        // An earlier directory may have had the same inode.
        removeFiles();
    }
    ~StandInForALock() override
    {
        removeFiles();
        SystemCalls::orders() = {};
    }

    /// Changes what is found at one path.
    template <class Change>
    void changeStatus(const std::string& changed, Change change)
    {
        SystemCalls::orders().changeStatus = [=](const std::string& path, int& result,
                                                 struct stat& found) {
            if (path == changed) {
                change(result, found);
            }
        };
    }
    /// Makes a folder appear as another user's.
    void giveAway(const std::string& given)
    {
        changeStatus(given, [](int&, struct stat& found) { found.st_uid += 1; });
    }
    void removeFiles() const
    {
        for (const std::string& each : {folder, cache, logIn}) {
            unlink((each + name()).c_str());
        }
    }

    std::string name() const
    {
        struct stat found { };
        stat(directory.path().c_str(), &found);
        return "/kestry-" + std::to_string(major(found.st_dev)) + "-"
            + std::to_string(minor(found.st_dev)) + "-" + std::to_string(found.st_ino) + ".lock";
    }
    std::string standIn() const { return folder + name(); }
    std::string refusal()
    {
        return refusalOf([&] { (void)lock.acquire(); });
    }
    /// The refusal with which the system's words are told.
    std::string notLocked(const std::string& words) const
    {
        return std::filesystem::path(directory.path()).filename().string()
            + " could not be locked: " + words + ".";
    }
    void expectOthersKeptOut()
    {
        const OtherWriter other(directory.path());
        EXPECT_TRUE(other.hasAsked());
        EXPECT_FALSE(other.isHolding());
    }
    static auto openHandles()
    {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
            std::filesystem::directory_iterator());
    }

    const std::string folder = "/tmp/kestry-" + std::to_string(getuid());
    const std::string logIn = "/run/user/" + std::to_string(getuid());
    TemporaryDirectory home;
    const std::string cache = home.path(".cache/kestry");
    TemporaryDirectory directory;
    PosixFileSystem files;
    WriterLock lock{files, directory.path()};
};

TEST_F(StandInForALock, EveryWayOfHavingNoLocksLeadsToTheSame)
{
    const OtherWriter other(directory.path());
    ASSERT_TRUE(other.isHolding());
    for (const int code : {EOPNOTSUPP, ENOSYS, ENOLCK, EINVAL, EBADF}) {
        SystemCalls::orders().directoryLockError = code;
        EXPECT_FALSE(lock.acquire()) << code;
    }
}

TEST_F(StandInForALock, AFailureThatMayPassIsToldAndTakesNone)
{
    SystemCalls::orders().directoryLockError = EIO;
    EXPECT_EQ(refusal(), notLocked("Input/output error"));
    EXPECT_FALSE(exists(files, standIn()));
    SystemCalls::orders().directoryLockError = 0;
    EXPECT_TRUE(lock.acquire());
}

TEST_F(StandInForALock, AFileLeftThereByADeadProcessHoldsNothing)
{
    OtherWriter(directory.path()).kill();
    ASSERT_TRUE(exists(files, standIn()));
    EXPECT_TRUE(lock.acquire());
}

TEST_F(StandInForALock, WhileItIsHeldTheFolderIsMarkedAsInUse)
{
    ASSERT_TRUE(lock.acquire());
    SystemCalls::orders().directoryLockError = 0;
    const FileSystem::Handle marked = files.open(folder, FileUse::directory);
    EXPECT_EQ(flock(marked, LOCK_EX | LOCK_NB), -1);
    EXPECT_EQ(errno, EWOULDBLOCK);
    files.close(marked);
}

TEST_F(StandInForALock, AFileRemovedBeforeItIsLockedIsMadeAnew)
{
    SystemCalls::orders().beforeFileLock = [this] { unlink(standIn().c_str()); };
    ASSERT_TRUE(lock.acquire());
    expectOthersKeptOut();
}

TEST_F(StandInForALock, AFileReplacedBeforeItIsLockedIsLeftForTheNewOne)
{
    SystemCalls::orders().beforeFileLock = [this] {
        unlink(standIn().c_str());
        files.close(files.open(standIn(), FileUse::create));
    };
    ASSERT_TRUE(lock.acquire());
    expectOthersKeptOut();
}

TEST_F(StandInForALock, AFileOfTheSameNumberOnAnotherDeviceIsAnotherFile)
{
    int looks = 0;
    changeStatus(
        standIn(), [&](int&, struct stat& found) { found.st_dev += looks++ == 0 ? 1 : 0; });
    ASSERT_TRUE(lock.acquire());
    EXPECT_EQ(looks, 2);
    expectOthersKeptOut();
}

TEST_F(StandInForALock, ALinkInItsPlaceIsNotFollowed)
{
    ASSERT_EQ(symlink(directory.path("elsewhere").c_str(), standIn().c_str()), 0);
    EXPECT_EQ(refusal(), notLocked("Too many levels of symbolic links"));
    EXPECT_FALSE(exists(files, directory.path("elsewhere")));
}

TEST_F(StandInForALock, AFileThatCannotBeLookedAtIsToldAndClosed)
{
    const auto before = openHandles();
    SystemCalls::orders().statusError = EIO;
    EXPECT_EQ(refusal(), notLocked("Input/output error"));
    EXPECT_EQ(openHandles(), before);
}

TEST_F(StandInForALock, AFolderThatCannotBeMadeForAPassingReasonIsToldInTheSystemsWords)
{
    SystemCalls::orders().createError = ENOSPC;
    EXPECT_EQ(refusal(),
        "kestry-" + std::to_string(getuid()) + " could not be created: No space left on device.");
}

TEST_F(StandInForALock, AFileIsLockedInEveryFolderThatAllProcessesFind)
{
    ASSERT_TRUE(lock.acquire());
    EXPECT_TRUE(exists(files, folder + name()));
    EXPECT_TRUE(exists(files, cache + name()));
}

TEST_F(StandInForALock, AFolderThatSomebodyElseHasTakenIsLeftOutAndKeepsNobodyApart)
{
    const OtherWriter other(directory.path());
    ASSERT_TRUE(other.isHolding());
    giveAway(folder);
    EXPECT_FALSE(lock.acquire());
}

TEST_F(StandInForALock, AFolderThatOthersCanWriteToIsLeftOut)
{
    changeStatus(folder, [](int&, struct stat& found) { found.st_mode |= S_IWOTH; });
    ASSERT_TRUE(lock.acquire());
    EXPECT_FALSE(exists(files, standIn()));
    SystemCalls::orders().changeStatus = nullptr;
    expectOthersKeptOut();
}

TEST_F(StandInForALock, AFolderThatIsOnlyThereForOneOfTwoKeepsNobodyApart)
{
    changeStatus(cache, [](int& result, struct stat&) { result = -1; });
    ASSERT_TRUE(lock.acquire());
    SystemCalls::orders().changeStatus = nullptr;
    expectOthersKeptOut();
}

TEST_F(StandInForALock, AFolderWithoutLocksIsLeftOut)
{
    SystemCalls::orders().fileLockErrors = {EOPNOTSUPP};
    ASSERT_TRUE(lock.acquire());
    expectOthersKeptOut();
}

TEST_F(StandInForALock, AnInterruptedLockIsAskedForAgain)
{
    SystemCalls::orders().fileLockErrors = {EINTR, EINTR};
    ASSERT_TRUE(lock.acquire());
    expectOthersKeptOut();
}

TEST_F(StandInForALock, WithoutAFolderThereIsNoLock)
{
    SystemCalls::orders().home = home.path("none");
    giveAway(folder);
    EXPECT_EQ(refusal(),
        "The data directory can't be locked: its file system has no locks, and there is no folder "
        "of your own for one. Move it to another disk.");
    EXPECT_FALSE(exists(files, standIn()));
}

TEST_F(StandInForALock, LocksOfOtherKindsAndOnOtherFilesNameNoHolder)
{
    const OtherWriter nameless(directory.path(), [] { return prctl(PR_SET_NAME, "") == 0; });
    ASSERT_TRUE(nameless.isHolding());
    const FileSystem::Handle other = files.open(directory.path("other"), FileUse::create);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    struct flock whole { };
    whole.l_type = F_WRLCK;
    ASSERT_EQ(fcntl(other, F_SETLK, &whole), 0);
    EXPECT_FALSE(lock.acquire());
    EXPECT_EQ(lock.holder(), "");
    files.close(other);
}

} // namespace
} // namespace KestryCore
