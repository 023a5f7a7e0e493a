#include "PosixFileSystem.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <set>

#include "DurableFiles.h"
#include "Refusal.h"
#include "SystemCalls.h"
#include "TemporaryDirectory.h"
#include "TimeStore.h"

namespace KestryCore {
namespace {

/// A second process that has a lease on a file, and gives it up some time after it is asked to.
class LeaseHolder {
public:
    explicit LeaseHolder(const std::string& path)
    {
        int ready[2];
        if (pipe(ready) != 0) {
            return;
        }
        process_ = fork();
        if (process_ == 0) {
            hold(path, ready[1]);
        }
        ::close(ready[1]);
        char answer = '-';
        isHolding_ = ::read(ready[0], &answer, 1) == 1 && answer == '+';
        ::close(ready[0]);
    }
    LeaseHolder(const LeaseHolder&) = delete;
    LeaseHolder& operator=(const LeaseHolder&) = delete;
    ~LeaseHolder()
    {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }

    [[nodiscard]] bool isHolding() const { return isHolding_; }

private:
    [[noreturn]] static void hold(const std::string& path, int ready)
    {
        sigset_t asked;
        sigemptyset(&asked);
        sigaddset(&asked, SIGIO);
        sigprocmask(SIG_BLOCK, &asked, nullptr);
        const int handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        const bool isHolding = fcntl(handle, F_SETLEASE, F_WRLCK) == 0;
        (void)!::write(ready, isHolding ? "+" : "-", 1);
        int signal = 0;
        sigwait(&asked, &signal);
        usleep(100'000);
        fcntl(handle, F_SETLEASE, F_UNLCK);
        pause();
        _exit(0);
    }

    pid_t process_ = -1;
    bool isHolding_ = false;
};

class PosixFiles : public testing::Test {
protected:
    ~PosixFiles() override { SystemCalls::orders() = {}; }
    std::string path(const std::string& name) const { return directory.path(name); }
    void put(const std::string& name, const std::string& bytes)
    {
        DurableFiles(files).write(path(name), bytes);
    }
    void expectFails(const std::function<void()>& action, const std::string& message)
    {
        try {
            action();
            ADD_FAILURE() << "did not fail";
        } catch (const FileError& failure) {
            EXPECT_EQ(failure.what(), message);
        }
    }

    TemporaryDirectory directory;
    PosixFileSystem files;
};

TEST_F(PosixFiles, WhatIsWrittenDurablyReadsBack)
{
    const std::string large(3'000'000, 'z');
    put("file", large);
    put("file", large + "!");
    EXPECT_EQ(readFile(files, path("file")), large + "!");
    EXPECT_EQ(files.list(directory.path()), (std::vector<std::string>{"file"}));
}

TEST_F(PosixFiles, NamesAreListedSorted)
{
    for (const char* name : {"b", "a", "c"}) {
        put(name, "");
    }
    EXPECT_EQ(files.list(directory.path()), (std::vector<std::string>{"a", "b", "c"}));
    expectFails([&] { (void)files.list(path("none")); },
        "none could not be listed: No such file or directory.");
}

TEST_F(PosixFiles, StatusTellsFilesDirectoriesAndNothing)
{
    put("file", "12345");
    EXPECT_TRUE(files.status(path("file"))->isRegular);
    EXPECT_EQ(files.status(path("file"))->size, 5u);
    EXPECT_TRUE(files.status(directory.path())->isDirectory);
    EXPECT_FALSE(files.status(path("none")).has_value());
    EXPECT_FALSE(files.status(path("file/below")).has_value());
}

TEST_F(PosixFiles, ADanglingLinkIsThereAndCannotBeRead)
{
    ASSERT_EQ(symlink("nowhere", path("link").c_str()), 0);
    EXPECT_TRUE(exists(files, path("link")));
    expectFails([&] { (void)readFile(files, path("link")); },
        "link could not be read: No such file or directory.");
}

TEST_F(PosixFiles, APipeIsRefusedAndNotWaitedFor)
{
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    expectFails([&] { (void)readFile(files, path("pipe")); },
        "pipe could not be read: it isn't a regular file.");
}

TEST_F(PosixFiles, ADirectoryCannotBeReadAsAFile)
{
    files.createDirectory(path("directory"));
    expectFails([&] { (void)readFile(files, path("directory")); },
        "directory could not be read: it isn't a regular file.");
}

TEST_F(PosixFiles, ANewFileNeverTakesAnExistingName)
{
    put("file", "kept");
    expectFails([&] { (void)files.open(path("file"), FileUse::create); },
        "file could not be written: File exists.");
    EXPECT_EQ(readFile(files, path("file")), "kept");
}

TEST_F(PosixFiles, ANewFileIsNotMadeThroughADanglingLink)
{
    ASSERT_EQ(symlink("nowhere", path("link").c_str()), 0);
    EXPECT_THROW((void)files.open(path("link"), FileUse::create), FileError);
    EXPECT_FALSE(exists(files, path("nowhere")));
}

TEST_F(PosixFiles, ANameThatIsTooLongIsRefusedInTheSystemsWords)
{
    const std::string name(300, 'n');
    expectFails([&] { (void)files.open(path(name), FileUse::create); },
        name + " could not be written: File name too long.");
    EXPECT_TRUE(exists(files, path(name))) << "not known to be free";
}

TEST_F(PosixFiles, ADirectoryInTheWayOfAFileIsLeftAlone)
{
    files.createDirectory(path("taken"));
    expectFails([&] { put("taken", "bytes"); }, "taken could not be replaced: Is a directory.");
    EXPECT_EQ(files.list(directory.path()), (std::vector<std::string>{"taken"}));
    expectFails(
        [&] { files.remove(path("taken")); }, "taken could not be removed: Is a directory.");
}

TEST_F(PosixFiles, MakingADirectoryTellsWhetherTheNameWasFree)
{
    EXPECT_TRUE(files.createDirectory(path("a")));
    EXPECT_FALSE(files.createDirectory(path("a")));
    expectFails([&] { files.createDirectory(path("b/c")); },
        "c could not be created: No such file or directory.");
}

TEST_F(PosixFiles, AFullDiskIsReported)
{
    const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    const std::string_view bytes = "bytes";
    expectFails([&] { (void)files.write(full, std::span(&bytes, 1)); },
        "full could not be written: No space left on device.");
    files.close(full);
}

TEST_F(PosixFiles, AFailureOfAnOpenFileNamesItEvenWhenItIsRemoved)
{
    const FileSystem::Handle file = files.open(path("ledger.json.new"), FileUse::create);
    char byte = 0;
    const std::string message = "ledger.json.new could not be read: Bad file descriptor.";
    expectFails([&] { (void)files.read(file, &byte, 1); }, message);
    files.remove(path("ledger.json.new"));
    expectFails([&] { (void)files.read(file, &byte, 1); }, message);
    files.close(file);
    expectFails([&] { (void)files.read(file, &byte, 1); },
        "The file could not be read: Bad file descriptor.");
}

TEST_F(PosixFiles, AHandleThatIsNotOpenFailsEveryCall)
{
    char buffer[4];
    const FileSystem::Handle closed = files.open(directory.path(), FileUse::directory);
    files.close(closed);
    EXPECT_THROW((void)files.size(closed), FileError);
    EXPECT_THROW((void)files.read(closed, buffer, sizeof buffer), FileError);
    const std::string_view bytes = "x";
    EXPECT_THROW((void)files.write(closed, std::span(&bytes, 1)), FileError);
    EXPECT_THROW((void)files.identity(closed), FileError);
    EXPECT_THROW(files.sync(closed), FileError);
    EXPECT_THROW(files.close(closed), FileError);
}

TEST_F(PosixFiles, ACallThatASignalInterruptsIsRepeated)
{
    for (const bool hasHappened : {false, true}) {
        put("file", "bytes");
        const OpenFile file(files, path("file"));
        SystemCalls::orders().interruptedBefore = {"opendir", "flock"};
        (hasHappened ? SystemCalls::orders().interruptedAfter
                     : SystemCalls::orders().interruptedBefore)
            .merge(std::set<std::string>{"rename", "linkat", "unlink", "mkdir"});
        files.link(file.handle(), path("other"));
        files.rename(path("other"), path("third"));
        files.remove(path("file"));
        EXPECT_TRUE(files.createDirectory(path("directory")));
        EXPECT_EQ(files.list(directory.path()), (std::vector<std::string>{"directory", "third"}));
        EXPECT_NE(files.lockDirectory(directory.path()).lock, nullptr);
        EXPECT_TRUE(SystemCalls::orders().interruptedBefore.empty());
        EXPECT_TRUE(SystemCalls::orders().interruptedAfter.empty());
        rmdir(path("directory").c_str());
    }
}

TEST_F(PosixFiles, WithoutAnInterruptionAMissingOrTakenNameIsAFailure)
{
    EXPECT_THROW(files.rename(path("none"), path("other")), FileError);
    EXPECT_THROW(files.remove(path("none")), FileError);
    files.createDirectory(path("directory"));
    EXPECT_FALSE(files.createDirectory(path("directory")));
}

TEST_F(PosixFiles, ALeaseOfAnotherProgramIsWaitedFor)
{
    put("file", "bytes");
    const LeaseHolder holder(path("file"));
    ASSERT_TRUE(holder.isHolding());
    EXPECT_EQ(readFile(files, path("file")), "bytes");
}

TEST_F(PosixFiles, TheUsersDataLivesWhereTheEnvironmentSays)
{
    const EnvironmentVariable data("XDG_DATA_HOME", "/somewhere/data");
    EXPECT_EQ(files.applicationSupportDirectory(), "/somewhere/data");
}

TEST_F(PosixFiles, ARelativeOrMissingDataHomeIsTheOneBelowTheHomeDirectory)
{
    const EnvironmentVariable home("HOME", "/home/someone");
    for (const char* value : {"", "relative/data"}) {
        const EnvironmentVariable data("XDG_DATA_HOME", value);
        EXPECT_EQ(files.applicationSupportDirectory(), "/home/someone/.local/share");
    }
    const EnvironmentVariable data("XDG_DATA_HOME", std::nullopt);
    EXPECT_EQ(files.applicationSupportDirectory(), "/home/someone/.local/share");
}

TEST_F(PosixFiles, WithoutAHomeInTheEnvironmentItIsTheOneOfTheUsersAccount)
{
    const EnvironmentVariable data("XDG_DATA_HOME", std::nullopt);
    const std::string expected = joinPath(getpwuid(getuid())->pw_dir, ".local/share");
    const EnvironmentVariable none("HOME", std::nullopt);
    EXPECT_EQ(files.applicationSupportDirectory(), expected);
    const EnvironmentVariable empty("HOME", "");
    EXPECT_EQ(files.applicationSupportDirectory(), expected);
}

TEST_F(PosixFiles, ALinkNeverTakesAnExistingName)
{
    put("from", "one");
    put("to", "two");
    const OpenFile from(files, path("from"));
    expectFails(
        [&] { files.link(from.handle(), path("to")); }, "to could not be linked: File exists.");
    EXPECT_EQ(readFile(files, path("to")), "two");
}

class StoreOnRealFiles : public PosixFiles {
protected:
    TimeStore& open()
    {
        StoreOptions options;
        options.directory = path("ledgers");
        store.reset();
        return store.emplace(StorePlatform{files}, options);
    }
    std::string content(const std::string& name)
    {
        return readFile(files, path("ledgers/" + name));
    }
    void addClient(const std::string& name)
    {
        store->addClient(NewClient{name, 100, "112233", true, std::nullopt, true});
    }

    std::optional<TimeStore> store;
};

TEST_F(StoreOnRealFiles, SavesBacksUpAndReopens)
{
    open();
    addClient("One");
    const std::string first = content("ledger.json");
    addClient("Two");
    EXPECT_EQ(content("ledger.backup.json"), first);
    const LedgerData published = *store->data();
    EXPECT_TRUE(*open().data() == published);
}

TEST_F(StoreOnRealFiles, ALedgerDamagedInPlaceUnderItsOldTimeIsNoticed)
{
    open();
    addClient("One");
    const std::string ledger = path("ledgers/ledger.json");
    struct stat before { };
    ASSERT_EQ(stat(ledger.c_str(), &before), 0);
    const int handle = ::open(ledger.c_str(), O_WRONLY);
    ASSERT_EQ(pwrite(handle, "damaged", 7, 0), 7);
    const timespec times[] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(futimens(handle, times), 0);
    ::close(handle);
    const std::string damaged = content("ledger.json");
    EXPECT_EQ(refusalOf([&] { addClient("Two"); }),
        "The ledger on disk could not be read. It has been preserved. Restore the last backup in "
        "Settings if available.");
    EXPECT_EQ(content("ledger.json"), damaged);
}

TEST_F(StoreOnRealFiles, APipeInThePlaceOfTheLedgerOpensReadOnlyOnTheBackup)
{
    open();
    addClient("One");
    addClient("Two");
    files.remove(path("ledgers/ledger.json"));
    ASSERT_EQ(mkfifo(path("ledgers/ledger.json").c_str(), 0600), 0);
    open();
    EXPECT_TRUE(store->blocked());
    EXPECT_TRUE(*store->recoveryAvailable());
    EXPECT_EQ(store->data()->clients.size(), 1u);
}

TEST_F(StoreOnRealFiles, ADanglingLinkInThePlaceOfTheLedgerIsNeverReplaced)
{
    files.createDirectory(path("ledgers"));
    ASSERT_EQ(symlink("elsewhere", path("ledgers/ledger.json").c_str()), 0);
    open();
    EXPECT_TRUE(store->blocked());
    EXPECT_THROW(addClient("One"), LedgerError);
    EXPECT_EQ(files.list(path("ledgers")), (std::vector<std::string>{"ledger.json"}));
}

TEST_F(StoreOnRealFiles, ALinkedLedgerIsReadAndNeverReplaced)
{
    open();
    addClient("One");
    const std::string before = content("ledger.json");
    ASSERT_EQ(rename(path("ledgers/ledger.json").c_str(), path("target").c_str()), 0);
    ASSERT_EQ(symlink("../target", path("ledgers/ledger.json").c_str()), 0);
    open();
    EXPECT_EQ(store->data()->clients.size(), 1u);
    EXPECT_EQ(refusalOf([&] { addClient("Two"); }),
        "ledger.json is a symbolic link, and saving would put a file in its place. Link the whole "
        "data directory instead.");
    EXPECT_EQ(readFile(files, path("target")), before);
    EXPECT_EQ(files.list(path("ledgers")), (std::vector<std::string>{"ledger.json"}));
    EXPECT_FALSE(store->blocked());
}

TEST_F(StoreOnRealFiles, ALinkedLedgerIsSavedAgainOnceItIsAFile)
{
    open();
    addClient("One");
    ASSERT_EQ(rename(path("ledgers/ledger.json").c_str(), path("target").c_str()), 0);
    ASSERT_EQ(symlink("../target", path("ledgers/ledger.json").c_str()), 0);
    EXPECT_THROW(addClient("Two"), LedgerError);
    ASSERT_EQ(rename(path("target").c_str(), path("ledgers/ledger.json").c_str()), 0);
    EXPECT_NO_THROW(addClient("Two"));
    EXPECT_EQ(open().data()->clients.size(), 2u);
}

TEST_F(StoreOnRealFiles, ALinkedBackupIsNeverReplaced)
{
    open();
    addClient("One");
    put("elsewhere", "another disk's");
    ASSERT_EQ(symlink("../elsewhere", path("ledgers/ledger.backup.json").c_str()), 0);
    const std::string before = content("ledger.json");
    EXPECT_EQ(refusalOf([&] { addClient("Two"); }),
        "ledger.backup.json is a symbolic link, and saving would put a file in its place. Link the "
        "whole data directory instead.");
    EXPECT_EQ(content("ledger.json"), before);
    EXPECT_EQ(readFile(files, path("elsewhere")), "another disk's");
}

TEST_F(StoreOnRealFiles, ALinkedLedgerIsNotReplacedByARestoreEither)
{
    open();
    addClient("One");
    addClient("Two");
    put("target", "damaged");
    files.remove(path("ledgers/ledger.json"));
    ASSERT_EQ(symlink("../target", path("ledgers/ledger.json").c_str()), 0);
    open();
    EXPECT_TRUE(*store->recoveryAvailable());
    EXPECT_EQ(refusalOf([&] { store->restoreBackup(); }),
        "ledger.json is a symbolic link, and saving would put a file in its place. Link the whole "
        "data directory instead.");
    EXPECT_EQ(readFile(files, path("target")), "damaged");
}

TEST_F(StoreOnRealFiles, ALedgerWithAFurtherNameIsBackedUpAsACopyThatNobodyElseCanWriteTo)
{
    open();
    addClient("One");
    const std::string before = content("ledger.json");
    ASSERT_EQ(link(path("ledgers/ledger.json").c_str(), path("other").c_str()), 0);
    addClient("Two");
    EXPECT_EQ(content("ledger.backup.json"), before);
    EXPECT_EQ(readFile(files, path("other")), before) << "the old ledger stays under the name";
    std::ofstream(path("other")) << "overwritten in place";
    EXPECT_EQ(content("ledger.backup.json"), before);
}

TEST_F(StoreOnRealFiles, EveryFileHasTheAccessThatTheUserGaveToTheLedger)
{
    const auto mode = [&](const std::string& name) {
        struct stat found { };
        EXPECT_EQ(stat(path("ledgers/" + name).c_str(), &found), 0) << name;
        return found.st_mode & 07777U;
    };
    open();
    addClient("One");
    EXPECT_EQ(mode("ledger.json"), 0600U);
    EXPECT_EQ(mode(""), 0700U);
    ASSERT_EQ(chmod(path("ledgers/ledger.json").c_str(), 0640), 0);
    for (const char* name : {"Two", "Three"}) {
        addClient(name);
        EXPECT_EQ(mode("ledger.json"), 0640U);
        EXPECT_EQ(mode("ledger.backup.json"), 0640U);
    }
    std::ofstream(path("ledgers/ledger.json")) << "damaged";
    open().restoreBackup();
    EXPECT_EQ(mode("ledger.json"), 0640U);
    EXPECT_EQ(mode(files.list(path("ledgers")).at(1)), 0640U) << "the preserved one";
    files.remove(path("ledgers/ledger.json"));
    open().restoreBackup();
    EXPECT_EQ(mode("ledger.json"), 0640U) << "with the backup alone to take it from";
    store->prepareForUpdate(Uuid::random(), currentDate());
    EXPECT_EQ(mode("update-handoff.json"), 0600U);
}

TEST_F(StoreOnRealFiles, AFileInThePlaceOfTheDirectoryIsReportedAndStays)
{
    put("ledgers", "a file");
    open();
    EXPECT_THROW(addClient("One"), LedgerError);
    EXPECT_EQ(*store->errorMessage(), "ledgers could not be created: Not a directory.");
    EXPECT_EQ(readFile(files, path("ledgers")), "a file");
}

TEST_F(StoreOnRealFiles, ARestorePreservesTheDamagedLedger)
{
    open();
    addClient("One");
    addClient("Two");
    put("ledgers/ledger.json", "damaged");
    open().restoreBackup();
    const std::vector<std::string> names = files.list(path("ledgers"));
    ASSERT_EQ(names.size(), 3u);
    EXPECT_TRUE(names[1].starts_with("ledger.corrupt-20"));
    EXPECT_EQ(content(names[1]), "damaged");
    EXPECT_EQ(content("ledger.json"), content("ledger.backup.json"));
}

} // namespace
} // namespace KestryCore
