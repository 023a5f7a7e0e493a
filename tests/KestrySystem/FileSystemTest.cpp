#include "FileSystem.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <new>
#include <stdexcept>

#include "MemoryFileSystem.h"

namespace KestryCore {
namespace {

TEST(FileSystem, AFailureNamesTheFileAndGivesTheSystemsWords)
{
    const FileError failure = fileError("/home/ledger.json", "written", ENOSPC);
    EXPECT_STREQ(failure.what(), "ledger.json could not be written: No space left on device.");
    EXPECT_EQ(failure.code(), ENOSPC);
    EXPECT_STREQ(
        fileError("/", "listed", EACCES).what(), "/ could not be listed: Permission denied.");
}

TEST(FileSystem, PathsAreJoinedWithOneSlash)
{
    EXPECT_EQ(joinPath("/home", "a"), "/home/a");
    EXPECT_EQ(joinPath("/home/", "a"), "/home/a");
    EXPECT_EQ(joinPath("/", "a"), "/a");
    EXPECT_EQ(joinPath("", "a"), "a");
}

TEST(FileSystem, TheParentOfAPathIsWhatHoldsIt)
{
    EXPECT_EQ(parentPath("/home/a"), "/home");
    EXPECT_EQ(parentPath("/home/a/"), "/home");
    EXPECT_EQ(parentPath("/home"), "/");
    EXPECT_EQ(parentPath("/"), "/");
    EXPECT_EQ(parentPath("a"), ".");
    EXPECT_EQ(parentPath("a/b"), "a");
}

TEST(FileSystem, AFileIsReadWhole)
{
    MemoryFileSystem files;
    for (const std::size_t size : {0u, 1u, 65'536u, 200'000u}) {
        files.put("/home/file", std::string(size, 'y'));
        EXPECT_EQ(readFile(files, "/home/file"), std::string(size, 'y'));
    }
    EXPECT_EQ(files.openHandles(), 0u);
}

TEST(FileSystem, AReadThatFailsClosesTheFileOnce)
{
    for (int number = 2; number <= 5; ++number) { // Measure, read, read the end, close.
        MemoryFileSystem files;
        files.put("/home/file", "content");
        files.failCall(number, EIO);
        if (number < 5) {
            EXPECT_THROW((void)readFile(files, "/home/file"), FileError) << number;
        } else {
            EXPECT_EQ(readFile(files, "/home/file"), "content");
        }
        EXPECT_TRUE(files.faultHappened());
        EXPECT_EQ(files.openHandles(), 0u);
    }
}

/// One file that says it is larger than it is, or grows while it is read.
class ChangingFile final : public FileSystem {
public:
    ChangingFile(std::uint64_t size, std::string content)
        : size_(size), content_(std::move(content))
    {
    }

    std::string applicationSupportDirectory() const override { return "/"; }
    std::optional<FileStatus> status(const std::string&) override { return FileStatus{}; }
    std::vector<std::string> list(const std::string&) override { return {}; }
    Handle open(const std::string&, FileUse) override { return 1; }
    std::uint64_t size(Handle) override { return size_; }
    std::size_t read(Handle, char* buffer, std::size_t capacity) override
    {
        const std::size_t count = content_.copy(buffer, capacity, position_);
        position_ += count;
        return count;
    }
    FileIdentity identity(Handle) override { return {}; }
    void setAccess(Handle, const std::optional<std::string>&) override { }
    std::size_t write(Handle, std::span<const std::string_view> pieces) override
    {
        return pieces.front().size();
    }
    void sync(Handle) override { }
    void close(Handle) override { ++closings; }
    void rename(const std::string&, const std::string&) override { }
    void link(Handle, const std::string&) override { }
    void remove(const std::string&) override { }
    bool createDirectory(const std::string&) override { return true; }
    LockAttempt lockDirectory(const std::string&) override { return {}; }

    int closings = 0;

private:
    std::uint64_t size_;
    std::string content_;
    std::size_t position_ = 0;
};

TEST(FileSystem, AFileThatGrowsOrShrinksWhileReadIsReadToItsEnd)
{
    ChangingFile grown(3, std::string(150'000, 'g'));
    EXPECT_EQ(readFile(grown, "f").size(), 150'000u);
    ChangingFile shrunk(150'000, "abc");
    EXPECT_EQ(readFile(shrunk, "f"), "abc");
}

TEST(FileSystem, AFileBeyondOneGigabyteIsRefusedInWordsBeforeItIsRead)
{
    ChangingFile huge(maximumFileBytes + 1, "");
    try {
        (void)readFile(huge, "f");
        ADD_FAILURE() << "was read";
    } catch (const LedgerError& refusal) {
        EXPECT_STREQ(refusal.what(), "The file is larger than 1 GB and was not read.");
    }
    EXPECT_EQ(huge.closings, 1);
}

TEST(FileSystem, AFileHoldsExactlyItsOwnBytesInWhateverPieces)
{
    MemoryFileSystem files;
    files.put("/home/file", "abcdef");
    const auto holds = [&](const std::vector<std::string_view>& pieces) {
        const OpenFile file(files, "/home/file");
        return holdsExactly(files, file.handle(), pieces);
    };
    EXPECT_TRUE(holds({"abcdef"}));
    EXPECT_TRUE(holds({"ab", "", "cdef"}));
    EXPECT_FALSE(holds({"abc", "dex"})) << "another byte";
    EXPECT_FALSE(holds({"abcde"})) << "longer than that";
    EXPECT_FALSE(holds({"abcdef", "g"})) << "shorter than that";
    EXPECT_FALSE(holds({})) << "not empty";
}

TEST(FileSystem, ErrorsOfTheMomentAreToldFromThoseOfTheDisk)
{
    for (const int code : {EMFILE, ENFILE, ENOMEM, EINTR, EAGAIN, ESTALE, ETIMEDOUT, ENOBUFS}) {
        EXPECT_TRUE(isPassing(fileError("f", "read", code))) << code;
    }
    for (const int code : {EIO, EACCES, ENOENT, ENOSPC, EROFS, EISDIR}) {
        EXPECT_FALSE(isPassing(fileError("f", "read", code))) << code;
    }
    EXPECT_TRUE(isPassing(std::bad_alloc()));
    EXPECT_FALSE(isPassing(LedgerError("Enter a name.")));
}

TEST(FileSystem, TooLittleMemoryForAFilePassesAndIsToldInWords)
{
    try {
        withinMemory([]() -> int { throw std::bad_alloc(); });
        ADD_FAILURE() << "was not refused";
    } catch (const LedgerError& refusal) {
        EXPECT_TRUE(isPassing(refusal));
        EXPECT_EQ(failureText(refusal), "The file is too large to be read into memory.");
    }
    const std::string words =
        "There isn't enough memory for that. Close other programs and try again.";
    EXPECT_EQ(failureText(std::bad_alloc()), words);
    EXPECT_EQ(failureText(std::length_error("vector::reserve")), words);
}

TEST(FileSystem, APathThatCannotBeLookedAtCountsAsThere)
{
    MemoryFileSystem files;
    EXPECT_FALSE(exists(files, "/home/file"));
    files.failCall(1, EACCES);
    EXPECT_TRUE(exists(files, "/home/file"));
}

} // namespace
} // namespace KestryCore
