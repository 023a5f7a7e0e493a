#include "WriterLock.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "MemoryFileSystem.h"
#include "PosixFileSystem.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

/// A second process that holds the lock of a directory until it is killed or ends.
class OtherWriter {
public:
    explicit OtherWriter(const std::string& directory)
    {
        int ready[2];
        if (pipe(ready) != 0) {
            throw LedgerError("No pipe.");
        }
        process_ = fork();
        if (process_ == 0) {
            holdLock(directory, ready[1]);
        }
        ::close(ready[1]);
        char answer = '-';
        isHolding_ = ::read(ready[0], &answer, 1) == 1 && answer == '+';
        ::close(ready[0]);
    }
    OtherWriter(const OtherWriter&) = delete;
    OtherWriter& operator=(const OtherWriter&) = delete;
    ~OtherWriter() { kill(); }

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
    bool isHolding_ = false;
};

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
