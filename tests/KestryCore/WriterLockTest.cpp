#include "WriterLock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <functional>
#include <iostream>
#include <utility>

#include "MemoryFileSystem.h"
#include "PosixFileSystem.h"
#include "Refusal.h"
#include "TemporaryDirectory.h"

namespace {

/// The error number of every exclusive flock on a directory, as on a file system that knows none;
/// 0 for the kernel's own answer.
int directoryLockError = 0;

/// Done before the next flock on a file.
std::function<void()> beforeFileLock;

} // namespace

/// Takes the place of the C library's `flock` for the whole test program.
extern "C" int flockOrError(int handle, int operation) noexcept __asm__("flock");

extern "C" int flockOrError(int handle, int operation) noexcept
{
    struct stat found { };
    const bool isDirectory = fstat(handle, &found) == 0 && S_ISDIR(found.st_mode);
    if (isDirectory && directoryLockError != 0 && (operation & LOCK_EX) != 0) {
        errno = directoryLockError;
        return -1;
    }
    if (!isDirectory && beforeFileLock) {
        std::exchange(beforeFileLock, nullptr)();
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
    /// What the lock must say while the other process holds it.
    static std::string holderName(const OtherWriter& other)
    {
        return "otherwriter (process " + std::to_string(other.process()) + ")";
    }

    TemporaryDirectory directory;
    PosixFileSystem files;
    WriterLock lock{files, directory.path()};
};

/// What holds wherever the data lives: on a file system that locks directories (0), and on those
/// that refuse to with an error.
class OneWriter : public WriterLockOnRealFiles, public testing::WithParamInterface<int> {
protected:
    OneWriter() { directoryLockError = GetParam(); }
    ~OneWriter() override { directoryLockError = 0; }
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

TEST_F(WriterLockOnRealFiles, AFileInThePlaceOfTheDirectoryIsReported)
{
    files.close(files.open(directory.path("file"), FileUse::create));
    WriterLock misplaced(files, directory.path("file"));
    EXPECT_EQ(refusalOf([&] { (void)misplaced.acquire(); }),
        "file could not be locked: Not a directory.");
}

/// What holds of the file that stands in for the lock of a directory.
class StandInForALock : public WriterLockOnRealFiles {
protected:
    StandInForALock() { directoryLockError = EOPNOTSUPP; }
    ~StandInForALock() override { directoryLockError = 0; }

    const std::string folder = "/tmp/kestry-" + std::to_string(getuid());
    std::string standIn() const
    {
        struct stat found { };
        stat(directory.path().c_str(), &found);
        return folder + "/kestry-" + std::to_string(major(found.st_dev)) + "-"
            + std::to_string(minor(found.st_dev)) + "-" + std::to_string(found.st_ino) + ".lock";
    }
};

TEST_F(StandInForALock, EveryWayOfHavingNoLocksLeadsToTheSame)
{
    const OtherWriter other(directory.path());
    ASSERT_TRUE(other.isHolding());
    for (const int code : {EOPNOTSUPP, ENOSYS, ENOLCK, EINVAL, EBADF}) {
        directoryLockError = code;
        EXPECT_FALSE(lock.acquire()) << code;
    }
}

TEST_F(StandInForALock, AFailureThatMayPassIsToldAndTakesNone)
{
    directoryLockError = EIO;
    unlink(standIn().c_str()); // An earlier directory may have had the same inode.
    const std::string refusal = refusalOf([&] { (void)lock.acquire(); });
    EXPECT_TRUE(refusal.ends_with("could not be locked: Input/output error.")) << refusal;
    EXPECT_FALSE(exists(files, standIn()));
    directoryLockError = 0;
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
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_TRUE(lock.acquire());
    EXPECT_EQ(syscall(SYS_flock, handle, LOCK_EX | LOCK_NB), -1);
    EXPECT_EQ(errno, EWOULDBLOCK);
    ::close(handle);
}

TEST_F(StandInForALock, AFileRemovedBeforeItIsLockedIsMadeAnew)
{
    beforeFileLock = [this] { unlink(standIn().c_str()); };
    ASSERT_TRUE(lock.acquire());
    const OtherWriter other(directory.path());
    EXPECT_TRUE(other.hasAsked());
    EXPECT_FALSE(other.isHolding());
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
