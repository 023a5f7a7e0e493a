#include "WriterLock.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <functional>
#include <iostream>

#include "MemoryFileSystem.h"
#include "PosixFileSystem.h"
#include "TemporaryDirectory.h"

namespace {

/// The error number of every flock on a directory, as on a file system that knows none; 0 for the
/// kernel's own answer.
int directoryLockError = 0;

} // namespace

/// Takes the place of the C library's `flock` for the whole test program.
extern "C" int flockOrError(int handle, int operation) noexcept __asm__("flock");

extern "C" int flockOrError(int handle, int operation) noexcept
{
    struct stat found { };
    if (directoryLockError != 0 && fstat(handle, &found) == 0 && S_ISDIR(found.st_mode)) {
        errno = directoryLockError;
        return -1;
    }
    return static_cast<int>(syscall(SYS_flock, handle, operation));
}

namespace KestryCore {
namespace {

/// A second process that holds the lock of a directory until it is killed or ends.
class OtherWriter {
public:
    /// The preparation is done in that process, before it asks for the lock.
    explicit OtherWriter(
        const std::string& directory, const std::function<bool()>& prepare = [] { return true; })
    {
        int ready[2];
        if (pipe(ready) != 0) {
            throw LedgerError("No pipe.");
        }
        process_ = fork();
        if (process_ == 0) {
            if (!prepare()) {
                _exit(1);
            }
            holdLock(directory, ready[1]);
        }
        ::close(ready[1]);
        char answer = '-';
        hasAsked_ = ::read(ready[0], &answer, 1) == 1;
        isHolding_ = answer == '+';
        ::close(ready[0]);
    }
    OtherWriter(const OtherWriter&) = delete;
    OtherWriter& operator=(const OtherWriter&) = delete;
    ~OtherWriter() { kill(); }

    /// False when its preparation failed.
    bool hasAsked() const { return hasAsked_; }
    bool isHolding() const { return isHolding_; }
    pid_t process() const { return process_; }
    void kill()
    {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
            process_ = 0;
        }
    }

private:
    [[noreturn]] static void holdLock(const std::string& directory, int ready)
    {
        prctl(PR_SET_NAME, "otherwriter");
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        PosixFileSystem files;
        const LockAttempt attempt = files.lockDirectory(directory);
        const char answer = attempt.lock ? '+' : '-';
        if (::write(ready, &answer, 1) == 1) {
            pause();
        }
        _exit(0);
    }

    pid_t process_ = 0;
    bool hasAsked_ = false;
    bool isHolding_ = false;
};

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
    TemporaryDirectory directory;
    PosixFileSystem files;
    WriterLock lock{files, directory.path()};
};

TEST_F(WriterLockOnRealFiles, AFreeDirectoryIsClaimedAndNoFileAdded)
{
    EXPECT_TRUE(lock.acquire());
    EXPECT_TRUE(lock.acquire()) << "held already";
    EXPECT_EQ(lock.acquireForWrite(), ClaimAge::heldBefore);
    EXPECT_TRUE(files.list(directory.path()).empty());
}

TEST_F(WriterLockOnRealFiles, ASecondProcessIsRefusedAndToldTheHolder)
{
    const OtherWriter other(directory.path());
    ASSERT_TRUE(other.isHolding());
    EXPECT_FALSE(lock.acquire());
    EXPECT_EQ(lock.holder(), "otherwriter (process " + std::to_string(other.process()) + ")");
    const std::string refusal = lock.holder()
        + " is using this data directory, and only one program can write to it at a time.";
    EXPECT_EQ(lock.refusal(), refusal);
    try {
        (void)lock.acquireForWrite();
        ADD_FAILURE() << "was not refused";
    } catch (const LedgerError& failure) {
        EXPECT_EQ(failure.what(), refusal);
    }
}

TEST_F(WriterLockOnRealFiles, TheClaimKeepsOtherProcessesOut)
{
    ASSERT_TRUE(lock.acquire());
    const OtherWriter other(directory.path());
    EXPECT_FALSE(other.isHolding());
}

TEST_F(WriterLockOnRealFiles, ASymbolicLinkToTheDirectoryIsTheSameLock)
{
    const std::string link = directory.path() + "-link";
    ASSERT_EQ(symlink(directory.path().c_str(), link.c_str()), 0);
    const OtherWriter other(link);
    EXPECT_TRUE(other.isHolding());
    EXPECT_FALSE(lock.acquire());
    unlink(link.c_str());
}

TEST_F(WriterLockOnRealFiles, ABindMountOfTheDirectoryIsTheSameLock)
{
    const TemporaryDirectory place;
    const OtherWriter other(
        place.path(), [&] { return bindMount(directory.path(), place.path()); });
    if (other.hasAsked()) {
        EXPECT_TRUE(other.isHolding());
        EXPECT_FALSE(lock.acquire());
        return;
    }
    std::cout << "No mount is allowed here, so a path through /proc stands in for one.\n";
    const OtherWriter throughProc("/proc/self/root" + directory.path());
    EXPECT_TRUE(throughProc.isHolding());
    EXPECT_FALSE(lock.acquire());
}

TEST_F(WriterLockOnRealFiles, AKilledHolderLeavesNoLock)
{
    OtherWriter other(directory.path());
    EXPECT_FALSE(lock.acquire());
    other.kill();
    EXPECT_TRUE(lock.acquire());
}

TEST_F(WriterLockOnRealFiles, TheClaimGoesWithTheObject)
{
    {
        WriterLock first(files, directory.path());
        ASSERT_TRUE(first.acquire());
        EXPECT_FALSE(lock.acquire());
    }
    EXPECT_TRUE(lock.acquire());
}

TEST_F(WriterLockOnRealFiles, ADirectoryThatIsMissingNeedsNoClaimUntilItIsThere)
{
    WriterLock early(files, directory.path("later"));
    EXPECT_TRUE(early.acquire());
    files.createDirectory(directory.path("later"));
    EXPECT_EQ(early.acquireForWrite(), ClaimAge::takenNow);
    EXPECT_EQ(early.acquireForWrite(), ClaimAge::heldBefore);
    EXPECT_FALSE(WriterLock(files, directory.path("later")).acquire());
}

TEST_F(WriterLockOnRealFiles, AFileInThePlaceOfTheDirectoryIsReported)
{
    files.close(files.open(directory.path("file"), FileUse::create));
    WriterLock misplaced(files, directory.path("file"));
    try {
        (void)misplaced.acquire();
        ADD_FAILURE() << "was locked";
    } catch (const FileError& failure) {
        EXPECT_STREQ(failure.what(), "file could not be locked: Not a directory.");
    }
}

/// The same on a file system on which directories cannot be locked.
class WriterLockWithoutDirectoryLocks : public WriterLockOnRealFiles {
protected:
    WriterLockWithoutDirectoryLocks() { directoryLockError = EOPNOTSUPP; }
    ~WriterLockWithoutDirectoryLocks() override { directoryLockError = 0; }
};

TEST_F(WriterLockWithoutDirectoryLocks, AFreeDirectoryIsClaimedAndNoFileAdded)
{
    EXPECT_TRUE(lock.acquire());
    EXPECT_TRUE(files.list(directory.path()).empty());
}

TEST_F(WriterLockWithoutDirectoryLocks, EveryWayOfHavingNoneLeadsToTheStandIn)
{
    const OtherWriter other(directory.path());
    ASSERT_TRUE(other.isHolding());
    for (const int code : {EOPNOTSUPP, ENOSYS, ENOLCK, EINVAL, EBADF}) {
        directoryLockError = code;
        EXPECT_FALSE(lock.acquire()) << code;
    }
}

TEST_F(WriterLockWithoutDirectoryLocks, AFailureThatMayPassIsToldAndTakesNoStandIn)
{
    directoryLockError = EIO;
    try {
        (void)lock.acquire();
        ADD_FAILURE() << "was locked";
    } catch (const FileError& failure) {
        EXPECT_EQ(failure.code(), EIO);
        EXPECT_TRUE(
            std::string(failure.what()).ends_with("could not be locked: Input/output error."));
    }
    directoryLockError = 0;
    EXPECT_TRUE(lock.acquire());
}

TEST_F(WriterLockWithoutDirectoryLocks, ASecondProcessIsRefusedAndToldTheHolder)
{
    const OtherWriter other(directory.path());
    ASSERT_TRUE(other.isHolding());
    EXPECT_FALSE(lock.acquire());
    EXPECT_EQ(lock.holder(), "otherwriter (process " + std::to_string(other.process()) + ")");
}

TEST_F(WriterLockWithoutDirectoryLocks, ASymbolicLinkToTheDirectoryIsTheSameLock)
{
    const std::string link = directory.path() + "-link";
    ASSERT_EQ(symlink(directory.path().c_str(), link.c_str()), 0);
    const OtherWriter other(link);
    EXPECT_TRUE(other.isHolding());
    EXPECT_FALSE(lock.acquire());
    unlink(link.c_str());
}

TEST_F(WriterLockWithoutDirectoryLocks, AProcessOfAnotherLogInIsRefusedToo)
{
    const TemporaryDirectory ownRuntime;
    const TemporaryDirectory otherRuntime;
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", ownRuntime.path());
    const OtherWriter other(directory.path(),
        [&] { return setenv("XDG_RUNTIME_DIR", otherRuntime.path().c_str(), 1) == 0; });
    EXPECT_TRUE(other.isHolding());
    EXPECT_FALSE(lock.acquire());
}

TEST_F(WriterLockWithoutDirectoryLocks, AKilledHolderLeavesNoLock)
{
    OtherWriter other(directory.path());
    EXPECT_FALSE(lock.acquire());
    other.kill();
    EXPECT_TRUE(lock.acquire());
}

TEST_F(WriterLockWithoutDirectoryLocks, AnotherDirectoryIsNotInTheWay)
{
    const TemporaryDirectory elsewhere;
    const OtherWriter other(elsewhere.path());
    EXPECT_TRUE(other.isHolding());
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
