#include "TreeFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "MemoryFileSystem.h"
#include "PosixFileSystem.h"
#include "Refusal.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

/// The same rules on the real files and on those in memory, which stand in for them elsewhere.
class TreeFilesTest : public testing::TestWithParam<bool> {
protected:
    TreeFiles& files()
    {
        return GetParam() ? static_cast<TreeFiles&>(real) : static_cast<TreeFiles&>(memory);
    }
    std::string path(const std::string& name) const
    {
        return (GetParam() ? directory.path() : "/home") + "/" + name;
    }
    void write(FileSystem::Handle handle)
    {
        const std::string_view bytes = "bytes";
        EXPECT_EQ(files().write(handle, std::span(&bytes, 1)), 5u);
        files().close(handle);
    }
    bool isThere(const std::string& name) { return files().status(path(name)).has_value(); }

    TemporaryDirectory directory;
    PosixFileSystem real;
    MemoryFileSystem memory;
};

TEST_P(TreeFilesTest, ALinkKeepsItsTargetAndIsNotFollowed)
{
    files().createLink("versions/1.2", path("current"));
    EXPECT_EQ(files().linkTarget(path("current")), "versions/1.2");
    EXPECT_TRUE(files().status(path("current"))->isLink);
    EXPECT_FALSE(files().status(path("current"))->isRegular);
}

TEST_P(TreeFilesTest, ALinkTakesNoNameThatIsTaken)
{
    files().createLink("a", path("link"));
    EXPECT_EQ(refusalOf([&] { files().createLink("b", path("link")); }),
        "link could not be linked: File exists.");
    EXPECT_EQ(files().linkTarget(path("link")), "a");
}

TEST_P(TreeFilesTest, OnlyALinkHasATarget)
{
    write(files().createProgram(path("file")));
    EXPECT_EQ(refusalOf([&] { (void)files().linkTarget(path("file")); }),
        "file could not be read: Invalid argument.");
    EXPECT_EQ(refusalOf([&] { (void)files().linkTarget(path("nothing")); }),
        "nothing could not be read: No such file or directory.");
}

TEST_P(TreeFilesTest, OneLinkReplacesAnotherInOneStep)
{
    files().createLink("old", path("current"));
    files().createLink("new", path("current.new"));
    files().rename(path("current.new"), path("current"));
    EXPECT_EQ(files().linkTarget(path("current")), "new");
    EXPECT_FALSE(isThere("current.new"));
}

TEST_P(TreeFilesTest, OnlyAnEmptyDirectoryIsRemoved)
{
    EXPECT_TRUE(files().createOrdinaryDirectory(path("folder")));
    EXPECT_FALSE(files().createOrdinaryDirectory(path("folder")));
    write(files().createProgram(path("folder/file")));
    EXPECT_EQ(refusalOf([&] { files().removeEmptyDirectory(path("folder")); }),
        "folder could not be removed: Directory not empty.");
    files().remove(path("folder/file"));
    files().removeEmptyDirectory(path("folder"));
    EXPECT_FALSE(isThere("folder"));
}

TEST_P(TreeFilesTest, AProgramTakesNoNameThatIsTaken)
{
    write(files().createProgram(path("file")));
    EXPECT_EQ(refusalOf([&] { (void)files().createProgram(path("file")); }),
        "file could not be written: File exists.");
    EXPECT_EQ(readFile(files(), path("file")), "bytes");
}

TEST_P(TreeFilesTest, ATreeIsRemovedWithoutGoingThroughItsLinks)
{
    files().createOrdinaryDirectory(path("kept"));
    write(files().createProgram(path("kept/file")));
    files().createOrdinaryDirectory(path("tree"));
    files().createOrdinaryDirectory(path("tree/inner"));
    write(files().createProgram(path("tree/inner/file")));
    files().createLink("../kept", path("tree/link"));
    removeTree(files(), path("tree"));
    EXPECT_FALSE(isThere("tree"));
    EXPECT_TRUE(isThere("kept/file"));
}

TEST_P(TreeFilesTest, RemovingATreeThatIsNotThereDoesNothing)
{
    EXPECT_EQ(refusalOf([&] { removeTree(files(), path("nothing")); }), accepted);
}

INSTANTIATE_TEST_SUITE_P(OnRealFiles, TreeFilesTest, testing::Values(true));
INSTANTIATE_TEST_SUITE_P(InMemory, TreeFilesTest, testing::Values(false));

TEST(TreeFilesOnDiskTest, AProgramCanBeRunAndADirectoryEntered)
{
    const TemporaryDirectory directory;
    PosixFileSystem files;
    const mode_t mask = umask(0022);
    files.close(files.createProgram(directory.path("program")));
    files.createOrdinaryDirectory(directory.path("folder"));
    umask(mask);
    struct stat found { };
    ASSERT_EQ(stat(directory.path("program").c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777, 0755u);
    ASSERT_EQ(stat(directory.path("folder").c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777, 0755u);
}

TEST(TreeFilesOnDiskTest, NamesOutliveAPowerCutOnceTheirDirectoryIsSynced)
{
    MemoryFileSystem files;
    files.createLink("a", "/home/link");
    files.restart(Unsynced::lost);
    EXPECT_FALSE(files.status("/home/link"));
    files.createLink("a", "/home/link");
    syncDirectory(files, "/home");
    files.restart(Unsynced::lost);
    EXPECT_EQ(files.linkTarget("/home/link"), "a");
}

} // namespace
} // namespace KestryCore
