#include "WriterLock.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>

#include "MemoryFileSystem.h"
#include "OtherWriter.h"
#include "PosixFileSystem.h"
#include "Refusal.h"
#include "SystemCalls.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

bool writeText(const char* path, const std::string& text)
{
    std::ofstream file(path);
    file << text << std::flush;
    return file.good();
}

/// Gives a directory a second place, visible to this process alone. Whoever is not root becomes
/// it in a namespace of its own first, where the machine allows that.
bool bindMount(const std::string& from, const std::string& to)
{
    const std::string user = std::to_string(getuid());
    if (unshare(CLONE_NEWNS) != 0
        && (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0
            || !writeText("/proc/self/uid_map", user + " " + user + " 1"))) {
        return false;
    }
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0
        && mount(from.c_str(), to.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

class WriterLockOnRealFiles : public testing::Test {
protected:
    /// What the lock must say while the other process holds it.
    static std::string holderName(const OtherWriter& other)
    {
        return "otherwriter (process " + std::to_string(other.process()) + ")";
    }

    [[nodiscard]] std::string elsewhere() const { return parent.path("elsewhere"); }
    void moveAway() const { ASSERT_EQ(rename(directory.path().c_str(), elsewhere().c_str()), 0); }
    void moveBack() const { ASSERT_EQ(rename(elsewhere().c_str(), directory.path().c_str()), 0); }

    const std::string astray =
        "The data directory has been moved, replaced or removed since it was opened, so nothing "
        "was saved. Put it back, or start Kestry again to use what is there now.";
    TemporaryDirectory parent;
    TemporaryDirectory directory;
    PosixFileSystem files;
    WriterLock lock{files, directory.path()};
};

/// What holds wherever the data lives: on a file system that locks directories (0), and on those
/// that refuse to with an error.
class OneWriter : public WriterLockOnRealFiles, public testing::WithParamInterface<int> {
protected:
    OneWriter()
    {
        SystemCalls::orders().home = home.path();
        SystemCalls::orders().directoryLockError = GetParam();
    }
    ~OneWriter() override { SystemCalls::orders() = {}; }

    TemporaryDirectory home;
};

TEST_P(OneWriter, AFreeDirectoryIsClaimedAndNoFileAdded)
{
    EXPECT_TRUE(lock.acquire());
    EXPECT_TRUE(lock.acquire()) << "held already";
    EXPECT_EQ(lock.acquireForWrite(), ClaimAge::heldBefore);
    EXPECT_TRUE(files.list(directory.path()).empty());
}

TEST_P(OneWriter, ASecondProcessIsRefusedAndToldTheHolder)
{
    const OtherWriter other(directory.path());
    ASSERT_TRUE(other.isHolding());
    EXPECT_FALSE(lock.acquire());
    EXPECT_EQ(lock.holder(), holderName(other));
    const std::string refusal = lock.holder()
        + " is using this data directory, and only one program can write to it at a time.";
    EXPECT_EQ(lock.refusal(), refusal);
    EXPECT_EQ(refusalOf([&] { (void)lock.acquireForWrite(); }), refusal);
}

TEST_P(OneWriter, TheClaimKeepsOtherProcessesOut)
{
    ASSERT_TRUE(lock.acquire());
    const OtherWriter other(directory.path());
    EXPECT_TRUE(other.hasAsked());
    EXPECT_FALSE(other.isHolding());
}

TEST_P(OneWriter, ASymbolicLinkToTheDirectoryIsTheSameLock)
{
    const TemporaryDirectory place;
    ASSERT_EQ(symlink(directory.path().c_str(), place.path("link").c_str()), 0);
    const OtherWriter other(place.path("link"));
    EXPECT_TRUE(other.isHolding());
    EXPECT_FALSE(lock.acquire());
    EXPECT_EQ(lock.holder(), holderName(other));
}

TEST_P(OneWriter, ABindMountOfTheDirectoryIsTheSameLock)
{
    const TemporaryDirectory place;
    const OtherWriter mounted(
        place.path(), [&] { return bindMount(directory.path(), place.path()); });
    if (mounted.hasAsked()) {
        EXPECT_TRUE(mounted.isHolding());
        EXPECT_FALSE(lock.acquire());
        return;
    }
    std::cerr
        << "WARNING: no mount is allowed here. A path through /proc was tried in its place.\n";
    const OtherWriter throughProc("/proc/self/root" + directory.path());
    EXPECT_TRUE(throughProc.isHolding());
    EXPECT_FALSE(lock.acquire());
}

TEST_P(OneWriter, AKilledHolderLeavesNoLock)
{
    OtherWriter other(directory.path());
    EXPECT_FALSE(lock.acquire());
    other.kill();
    EXPECT_TRUE(lock.acquire());
}

TEST_P(OneWriter, TheClaimGoesWithTheObject)
{
    {
        WriterLock first(files, directory.path());
        ASSERT_TRUE(first.acquire());
        EXPECT_FALSE(lock.acquire());
    }
    EXPECT_TRUE(lock.acquire());
}

TEST_P(OneWriter, AnotherDirectoryIsNotInTheWay)
{
    const TemporaryDirectory elsewhere;
    const OtherWriter other(elsewhere.path());
    EXPECT_TRUE(other.isHolding());
    EXPECT_TRUE(lock.acquire());
}

TEST_P(OneWriter, AProcessOfAnotherLogInIsRefusedToo)
{
    const TemporaryDirectory ownRuntime;
    const TemporaryDirectory otherRuntime;
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", ownRuntime.path());
    const OtherWriter other(directory.path(),
        [&] { return setenv("XDG_RUNTIME_DIR", otherRuntime.path().c_str(), 1) == 0; });
    EXPECT_TRUE(other.isHolding());
    EXPECT_FALSE(lock.acquire());
}

TEST_P(OneWriter, TheClaimIsOnTheDirectoryAndNotOnItsPath)
{
    ASSERT_TRUE(lock.acquire());
    moveAway();
    EXPECT_TRUE(lock.isAstray());
    EXPECT_EQ(refusalOf([&] { (void)lock.acquireForWrite(); }), astray);
    files.createDirectory(directory.path());
    EXPECT_EQ(refusalOf([&] { (void)lock.acquireForWrite(); }), astray);
    EXPECT_TRUE(WriterLock(files, directory.path()).acquire()) << "another is free";
    ASSERT_EQ(rmdir(directory.path().c_str()), 0);
    moveBack();
    EXPECT_FALSE(lock.isAstray());
    EXPECT_EQ(lock.acquireForWrite(), ClaimAge::heldBefore);
}

TEST_P(OneWriter, ThePlaceOfTheClaimIsTheDirectoryWhereverItIs)
{
    EXPECT_EQ(lock.place(), directory.path());
    ASSERT_TRUE(lock.acquire());
    moveAway();
    files.createDirectory(directory.path());
    files.close(files.open(joinPath(lock.place(), "file"), FileUse::create));
    EXPECT_TRUE(exists(files, elsewhere() + "/file"));
    EXPECT_TRUE(files.list(directory.path()).empty());
}

TEST_P(OneWriter, ALinkThatLeadsElsewhereSinceIsAnotherDirectory)
{
    const TemporaryDirectory other;
    const std::string link = other.path("link");
    ASSERT_EQ(symlink(directory.path().c_str(), link.c_str()), 0);
    WriterLock throughLink(files, link);
    ASSERT_TRUE(throughLink.acquire());
    ASSERT_EQ(unlink(link.c_str()), 0);
    EXPECT_EQ(refusalOf([&] { (void)throughLink.acquireForWrite(); }), astray);
    ASSERT_EQ(symlink(other.path().c_str(), link.c_str()), 0);
    EXPECT_EQ(refusalOf([&] { (void)throughLink.acquireForWrite(); }), astray);
}

TEST_P(OneWriter, ADirectoryMountedOverIsAnotherDirectory)
{
    ASSERT_TRUE(lock.acquire());
    const TemporaryDirectory other;
    // The claim goes over to the new process with its open files.
    const OtherWriter mounted(other.path(), [&] {
        return !bindMount(other.path(), directory.path())
            || refusalOf([&] { (void)lock.acquireForWrite(); }) == astray;
    });
    EXPECT_TRUE(mounted.hasAsked());
}

TEST_P(OneWriter, ARemovedDirectoryIsNotMadeAnewNorWrittenTo)
{
    ASSERT_TRUE(lock.acquire());
    ASSERT_EQ(rmdir(directory.path().c_str()), 0);
    EXPECT_EQ(refusalOf([&] { (void)lock.acquireForWrite(); }), astray);
    EXPECT_EQ(refusalOf([&] { (void)files.open(joinPath(lock.place(), "file"), FileUse::create); }),
        "file could not be written: No such file or directory.");
    EXPECT_FALSE(exists(files, directory.path()));
}

TEST_P(OneWriter, WithoutAWayToOpenFilesThePathIsThePlace)
{
    SystemCalls::orders().hidesProcesses = true;
    ASSERT_TRUE(lock.acquire());
    EXPECT_EQ(lock.place(), directory.path());
    EXPECT_EQ(lock.acquireForWrite(), ClaimAge::heldBefore);
}

INSTANTIATE_TEST_SUITE_P(OnAnyFileSystem, OneWriter,
    testing::Values(0, EOPNOTSUPP, ENOSYS, ENOLCK, EINVAL, EBADF),
    [](const testing::TestParamInfo<int>& error) {
        return error.param == 0 ? "WithLocks" : strerrorname_np(error.param);
    });

TEST_F(WriterLockOnRealFiles, ADirectoryThatIsMissingNeedsNoClaimUntilItIsThere)
{
    WriterLock early(files, directory.path("later"));
    EXPECT_TRUE(early.acquire());
    files.createDirectory(directory.path("later"));
    EXPECT_EQ(early.acquireForWrite(), ClaimAge::takenNow);
    EXPECT_EQ(early.acquireForWrite(), ClaimAge::heldBefore);
    EXPECT_FALSE(WriterLock(files, directory.path("later")).acquire());
}

TEST_F(WriterLockOnRealFiles, ADirectoryThatIsMissingCannotBeWrittenTo)
{
    WriterLock early(files, directory.path("later"));
    EXPECT_EQ(refusalOf([&] { (void)early.acquireForWrite(); }), astray);
    EXPECT_FALSE(early.isHeld());
}

TEST_F(WriterLockOnRealFiles, APlaceThatCannotBeLookedAtIsNoProofOfAnother)
{
    ASSERT_TRUE(lock.acquire());
    SystemCalls::orders().statusError = EIO;
    EXPECT_FALSE(lock.isAstray());
    SystemCalls::orders().statusError = EIO;
    const std::string name = directory.path().substr(directory.path().find_last_of('/') + 1);
    EXPECT_EQ(refusalOf([&] { (void)lock.acquireForWrite(); }),
        name + " could not be looked at: Input/output error.");
    EXPECT_EQ(lock.acquireForWrite(), ClaimAge::heldBefore);
}

TEST_F(WriterLockOnRealFiles, AFileInThePlaceOfTheDirectoryIsReported)
{
    files.close(files.open(directory.path("file"), FileUse::create));
    WriterLock misplaced(files, directory.path("file"));
    EXPECT_EQ(refusalOf([&] { (void)misplaced.acquire(); }),
        "file could not be locked: Not a directory.");
}

TEST(WriterLock, ADirectoryThatCannotBeLookedAtIsToldInTheSystemsWords)
{
    MemoryFileSystem files;
    WriterLock lock(files, "/home");
    files.failCall(1, EIO);
    EXPECT_EQ(refusalOf([&] { (void)lock.acquire(); }),
        "home could not be looked at: Input/output error.");
    EXPECT_TRUE(lock.acquire());
}

TEST(WriterLock, AnUnknownHolderIsAnotherProgram)
{
    MemoryFileSystem files;
    WriterLock lock(files, "/home");
    EXPECT_EQ(lock.refusal(),
        "Another program is using this data directory, and only one program can write to it at a "
        "time.");
}

} // namespace
} // namespace KestryCore
