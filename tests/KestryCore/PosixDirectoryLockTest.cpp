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

class OwnDirectory : public testing::Test {
protected:
    OwnDirectory() = default;
    ~OwnDirectory() override { SystemCalls::orders() = {}; }

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

    const std::string folder = "/tmp/kestry-" + std::to_string(getuid());
    TemporaryDirectory directory;
    PosixFileSystem files;
};

/// Where the program keeps what lives as long as the log-in.
class RuntimeDirectory : public OwnDirectory {
protected:
    std::string withEnvironment(const std::optional<std::string>& value) const
    {
        const EnvironmentVariable runtime("XDG_RUNTIME_DIR", value);
        return userRuntimeDirectory();
    }

    const std::string ofLogIn = "/run/user/" + std::to_string(getuid());
};

TEST_F(RuntimeDirectory, IsThePrivateOneThatTheEnvironmentNames)
{
    EXPECT_EQ(withEnvironment(directory.path()), directory.path());
}

TEST_F(RuntimeDirectory, ThatOthersMayWriteToIsNotUsed)
{
    for (const mode_t mode : {0720, 0702}) {
        ASSERT_EQ(chmod(directory.path().c_str(), mode), 0);
        EXPECT_NE(withEnvironment(directory.path()), directory.path());
    }
}

TEST_F(RuntimeDirectory, ThatIsMissingOrAFileIsNotUsed)
{
    files.close(files.open(directory.path("file"), FileUse::create));
    EXPECT_NE(withEnvironment(directory.path("file")), directory.path("file"));
    EXPECT_NE(withEnvironment(directory.path("none")), directory.path("none"));
}

TEST_F(RuntimeDirectory, ThatBelongsToSomebodyElseIsNotUsed)
{
    changeStatus(directory.path(), [](int&, struct stat& found) { found.st_uid += 1; });
    EXPECT_NE(withEnvironment(directory.path()), directory.path());
}

TEST_F(RuntimeDirectory, WithoutAPathInTheEnvironmentIsTheOneOfTheLogIn)
{
    changeStatus(ofLogIn, [](int& result, struct stat& found) {
        result = 0;
        found.st_mode = S_IFDIR | S_IRWXU;
        found.st_uid = getuid();
    });
    EXPECT_EQ(withEnvironment(std::nullopt), ofLogIn);
    EXPECT_EQ(withEnvironment(""), ofLogIn);
    EXPECT_EQ(withEnvironment("relative/path"), ofLogIn);
}

TEST_F(RuntimeDirectory, WithoutOneOfTheLogInIsTheUsersOwnBelowTmp)
{
    changeStatus(ofLogIn, [](int& result, struct stat&) { result = -1; });
    EXPECT_EQ(withEnvironment(std::nullopt), folder);
    EXPECT_TRUE(files.status(folder)->isDirectory);
}

/// What holds of the file that stands in for the lock of a directory.
class StandInForALock : public OwnDirectory {
protected:
    StandInForALock()
    {
        SystemCalls::orders().directoryLockError = EOPNOTSUPP;
        // An earlier directory may have had the same inode.
        unlink(standIn().c_str());
    }
    ~StandInForALock() override { unlink(standIn().c_str()); }

    std::string standIn() const
    {
        struct stat found { };
        stat(directory.path().c_str(), &found);
        return folder + "/kestry-" + std::to_string(major(found.st_dev)) + "-"
            + std::to_string(minor(found.st_dev)) + "-" + std::to_string(found.st_ino) + ".lock";
    }
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

TEST_F(StandInForALock, AFolderThatCannotBeMadeIsToldInTheSystemsWords)
{
    SystemCalls::orders().createError = EROFS;
    EXPECT_EQ(refusal(),
        "kestry-" + std::to_string(getuid()) + " could not be created: Read-only file system.");
}

TEST_F(StandInForALock, AFolderThatIsNotTheUsersAloneIsNotUsed)
{
    changeStatus(folder, [](int&, struct stat& found) { found.st_mode |= S_IWOTH; });
    EXPECT_EQ(refusal(), folder + " doesn't belong to you alone, so it can't be used.");
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
