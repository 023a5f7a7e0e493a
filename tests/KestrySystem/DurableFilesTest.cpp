#include "DurableFiles.h"

#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "MemoryFileSystem.h"

namespace KestryCore {
namespace {

class DurableFilesTest : public testing::Test {
protected:
    void expectFails(const std::function<void()>& action, const std::string& message)
    {
        try {
            action();
            ADD_FAILURE() << "did not fail";
        } catch (const LedgerError& failure) {
            EXPECT_EQ(failure.what(), message);
        }
    }
    void put(const std::string& bytes) { files.put(path, bytes); }
    std::string content() { return files.content(path).value_or("(none)"); }

    MemoryFileSystem files;
    DurableFiles durable{files};
    const std::string path = "/home/file";
    /// More than one write takes.
    const std::string large = std::string(1207, 'x');
};

TEST_F(DurableFilesTest, AWriteMakesOrReplacesTheWholeFile)
{
    durable.write(path, large);
    EXPECT_EQ(content(), large);
    durable.write(path, "");
    EXPECT_EQ(content(), "");
    EXPECT_EQ(files.contents().size(), 1u);
}

TEST_F(DurableFilesTest, AWriteThatReturnedOutlivesAPowerCut)
{
    put("old");
    durable.write(path, large);
    files.restart(Unsynced::lost);
    EXPECT_EQ(content(), large);
}

TEST_F(DurableFilesTest, APowerCutAtAnyCallLeavesTheOldFileOrTheNew)
{
    for (const Unsynced unsynced : {Unsynced::lost, Unsynced::namesKept, Unsynced::kept}) {
        for (int number = 1, cut = 1; cut != 0; ++number) {
            put("old");
            files.cutPowerBefore(number);
            cut = 0;
            try {
                durable.write(path, large);
            } catch (const PowerCut&) {
                cut = 1;
            }
            files.restart(unsynced);
            EXPECT_TRUE(content() == large || (cut != 0 && content() == "old")) << number;
        }
    }
}

TEST_F(DurableFilesTest, AWriteThroughAGivenNameTouchesNoOther)
{
    files.put("/home/file.new", "somebody's");
    durable.write(path, large, "/home/.mine");
    EXPECT_EQ(content(), large);
    EXPECT_EQ(files.content("/home/file.new"), "somebody's");
    files.failCalls("/home/file replaced", ENOSPC);
    EXPECT_THROW((void)durable.write(path, "new", "/home/.mine"), FileError);
    EXPECT_EQ(content(), large);
    EXPECT_EQ(files.contents().size(), 2u);
}

TEST_F(DurableFilesTest, AFailedWriteLeavesTheOldFileAndNoTemporaryOne)
{
    for (const char* call : {"/home/file.new written", "/home/file.new written to",
             "/home/file.new synced", "/home/file.new closed", "/home/file replaced"}) {
        put("old");
        files.failCalls(call, ENOSPC);
        try {
            durable.write(path, large);
            ADD_FAILURE() << call;
        } catch (const FileError& failure) {
            EXPECT_EQ(failure.code(), ENOSPC);
        }
        EXPECT_EQ(content(), "old") << call;
        EXPECT_EQ(files.contents().size(), 1u) << call;
        EXPECT_EQ(files.openHandles(), 0u) << call;
        files.heal();
    }
}

TEST_F(DurableFilesTest, ADirectoryThatCannotBeSyncedIsSyncedByTheNextOperation)
{
    put("old");
    files.failCalls("/home synced as a directory", EIO);
    durable.write(path, "new");
    EXPECT_TRUE(files.faultHappened());
    EXPECT_EQ(content(), "new");
    files.heal();
    durable.createDirectories("/home/other");
    files.restart(Unsynced::lost);
    EXPECT_EQ(content(), "new");
}

TEST_F(DurableFilesTest, ALeftOverTemporaryFileIsReplaced)
{
    files.put(path + ".new", "left by a crash");
    durable.write(path, "new");
    EXPECT_EQ(content(), "new");
    EXPECT_EQ(files.contents().size(), 1u);
}

TEST_F(DurableFilesTest, WhereADirectoryHasTheTemporaryNameAnotherIsTaken)
{
    files.putDirectory(path + ".new");
    put("old");
    durable.write(path, "new");
    EXPECT_EQ(content(), "new");
    EXPECT_EQ(files.contents().size(), 1u);
    EXPECT_TRUE(files.isDirectory(path + ".new"));
}

TEST_F(DurableFilesTest, WhatACrashLeftUnderAnyTemporaryNameIsCleared)
{
    files.put(path + ".new-2", "left while a directory was there");
    files.put(path + ".new-3", "left while two were there");
    durable.write(path, "new");
    EXPECT_EQ(files.contents(), (std::map<std::string, std::string>{{path, "new"}}));
}

TEST_F(DurableFilesTest, DirectoriesUnderAllTemporaryNamesAreToldInWords)
{
    put("old");
    for (const char* ending : {".new", ".new-2", ".new-3"}) {
        files.putDirectory(path + ending);
    }
    expectFails(
        [&] { durable.write(path, "new"); }, "file.new could not be written: Is a directory.");
    EXPECT_EQ(content(), "old");
}

TEST_F(DurableFilesTest, NothingTakesItsNameBeforeTheNamesBeforeItAreOnTheDisk)
{
    put("old");
    files.failCalls("/home synced as a directory", EIO);
    durable.write("/home/other", "other");
    expectFails([&] { durable.write(path, "new"); },
        "home could not be synced as a directory: Input/output error.");
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(files.contents().size(), 2u);
    files.heal();
    durable.write(path, "new");
    EXPECT_EQ(content(), "new");
}

TEST_F(DurableFilesTest, ADirectoryThatCannotBeSyncedAtAllHoldsNothingUp)
{
    for (const int code : {EINVAL, EOPNOTSUPP, ENOSYS, EACCES}) {
        files.failCalls("/home synced as a directory", code);
        durable.write("/home/other", "other");
        durable.write(path, "new");
        EXPECT_EQ(content(), "new") << code;
    }
    files.heal();
    durable.createDirectories("/home/below");
    files.restart(Unsynced::lost);
    EXPECT_EQ(content(), "new") << "synced once that was possible";
}

/// A file, its backup, and what both hold before and after a write that keeps the previous one.
class DurableBackup : public DurableFilesTest {
protected:
    void SetUp() override
    {
        put("previous");
        files.put(backup, "older");
    }
    void write(bool links)
    {
        const OpenFile open(files, path);
        const std::string_view previous = "previous";
        const std::string_view bytes = large;
        durable.writeKeepingPrevious(path, {&bytes, 1},
            {links ? std::optional(open.handle()) : std::nullopt, {&previous, 1}, backup});
    }

    const std::string backup = "/home/backup";
};

TEST_F(DurableBackup, IsThePreviousFileAfterwards)
{
    for (const bool links : {true, false}) {
        SetUp();
        write(links);
        EXPECT_EQ(content(), large);
        EXPECT_EQ(files.content(backup), "previous");
        EXPECT_EQ(files.contents().size(), 2u);
    }
}

// Any of the changes of names that were not synced may have reached the disk without the others.
TEST_F(DurableBackup, IsNeverOlderThanTheFileThatWasReplacedWhateverReachesTheDisk)
{
    using Pair = std::pair<std::string, std::string>;
    for (const bool links : {true, false}) {
        SetUp();
        std::set<Pair> left;
        files.record([&](const MemoryFileSystem::Moment& moment) {
            EveryChoice choices;
            do {
                Disk disk = moment.disk;
                disk.cutPower(choices);
                const auto found = disk.contents();
                left.insert({found.at(path), found.at(backup)});
            } while (choices.next());
        });
        write(links);
        files.record(nullptr);
        EXPECT_EQ(left,
            (std::set<Pair>{{"previous", "older"}, {"previous", "previous"}, {large, "previous"}}));
    }
}

TEST_F(DurableBackup, StaysOrIsThePreviousFileWhateverCallFails)
{
    for (const bool links : {true, false}) {
        for (int number = 1, happened = 1; happened != 0; ++number) {
            SetUp();
            files.failCall(number, ENOSPC);
            try {
                write(links);
            } catch (const FileError&) {
                EXPECT_EQ(content(), "previous") << number;
            }
            happened = files.faultHappened() ? 1 : 0;
            files.heal();
            const std::string kept = files.content(backup).value();
            EXPECT_TRUE(kept == "previous" || (kept == "older" && content() == "previous"))
                << number;
        }
    }
}

TEST_F(DurableFilesTest, ACopyIsWholeAndDurableAndTheOriginalStays)
{
    put(large);
    durable.copy(path, "/home/copy");
    files.restart(Unsynced::lost);
    EXPECT_EQ(files.content("/home/copy"), large);
    EXPECT_EQ(content(), large);
    EXPECT_EQ(files.contents().size(), 2u);
}

TEST_F(DurableFilesTest, ACopyNeverReplacesAFile)
{
    put("new");
    files.put("/home/copy", "precious");
    expectFails([&] { durable.copy(path, "/home/copy"); },
        "A file with the name /home/copy exists already.");
    EXPECT_EQ(files.content("/home/copy"), "precious");
}

TEST_F(DurableFilesTest, ACopyOfNothingFailsAndMakesNothing)
{
    expectFails([&] { durable.copy(path, "/home/copy"); },
        "file could not be read: No such file or directory.");
    EXPECT_TRUE(files.contents().empty());
}

TEST_F(DurableFilesTest, WhatACopyCutOffByACrashLeavesIsClearedByTheNextWrite)
{
    put(large);
    files.cutPowerBefore(10); // Some of the copy is written.
    EXPECT_THROW(durable.copy(path, "/home/copy"), PowerCut);
    files.restart(Unsynced::kept);
    EXPECT_EQ(files.contents().size(), 2u);
    durable.write(path, "new");
    EXPECT_EQ(files.contents().size(), 1u);
}

TEST_F(DurableFilesTest, ACopyToANameThatCannotBeLookedAtFailsInTheSystemsWords)
{
    files.put(path, "original");
    files.failCalls("/home/copy looked at", EIO);
    expectFails([&] { durable.copy(path, "/home/copy"); },
        "copy could not be looked at: Input/output error.");
    EXPECT_EQ(files.contents().size(), 1u);
}

TEST_F(DurableFilesTest, ClearingRemovesWhatACrashLeftAndNothingElse)
{
    files.put(path, "old");
    files.put(path + ".new", "torn");
    durable.clear(path);
    durable.clear(path);
    EXPECT_EQ(files.contents(), (std::map<std::string, std::string>{{path, "old"}}));
}

TEST_F(DurableFilesTest, ClearingWhatCannotBeRemovedIsNoFailure)
{
    files.put(path + ".new", "torn");
    files.failCalls(path + ".new removed", EACCES);
    EXPECT_NO_THROW(durable.clear(path));
}

TEST_F(DurableFilesTest, ARemovedFileStaysRemovedAfterAPowerCut)
{
    put("old");
    durable.remove(path);
    files.restart(Unsynced::lost);
    EXPECT_TRUE(files.contents().empty());
    expectFails(
        [&] { durable.remove(path); }, "file could not be removed: No such file or directory.");
}

TEST_F(DurableFilesTest, DirectoriesAreMadeDurablyWithTheirParents)
{
    durable.createDirectories("/home/a/b/c");
    files.restart(Unsynced::lost);
    EXPECT_TRUE(files.isDirectory("/home/a/b/c"));
}

TEST_F(DurableFilesTest, ADirectoryThatIsThereIsLeftAlone)
{
    files.putDirectory("/home/a");
    put("kept");
    durable.createDirectories("/home/a");
    durable.createDirectories("/home");
    EXPECT_EQ(content(), "kept");
}

TEST_F(DurableFilesTest, ADirectoryBelowAFileCannotBeMade)
{
    put("file");
    EXPECT_THROW(durable.createDirectories("/home/file/a"), FileError);
    EXPECT_EQ(content(), "file");
}

} // namespace
} // namespace KestryCore
