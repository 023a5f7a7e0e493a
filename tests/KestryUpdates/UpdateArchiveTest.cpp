#include "UpdateArchive.h"

#include <gtest/gtest.h>

#include "MemoryFileSystem.h"
#include "PosixFileSystem.h"
#include "Refusal.h"
#include "TemporaryDirectory.h"
#include "TestArchive.h"

namespace Kestry {
namespace {

using namespace KestryCore;

const std::string refused = "The new version was refused: ";

class UpdateArchiveTest : public testing::Test {
protected:
    UpdateArchiveTest() { files.putDirectory("/home/new"); }

    UnpackedTree unpack(const std::string& bytes, const ArchiveLimits& limits = {})
    {
        return unpackArchive(bytes, files, "/home/new", limits);
    }
    /// With which words an archive of these entries is refused.
    std::string refusal(const std::vector<TestEntry>& entries, const ArchiveLimits& limits = {})
    {
        const std::string bytes = testArchive(entries);
        return refusalOf([&] { (void)unpack(bytes, limits); });
    }
    std::string content(const std::string& path)
    {
        return files.content("/home/new/" + path).value_or("(none)");
    }
    /// Everything that does not lie where the archive is unpacked.
    std::set<std::string> outside()
    {
        std::set<std::string> found;
        for (const auto& [path, bytes] : files.contents()) {
            if (!path.starts_with("/home/new/")) {
                found.insert(path);
            }
        }
        return found;
    }

    MemoryFileSystem files;
};

TEST_F(UpdateArchiveTest, FilesFoldersProgramsAndLinksComeOut)
{
    const UnpackedTree tree = unpack(testArchive(versionEntries("1.3")));
    EXPECT_EQ(content("bin/kestry"), "program 1.3");
    EXPECT_EQ(content("lib/libkestry.so.1.0"), std::string(3000, 'l'));
    EXPECT_EQ(files.linkTarget("/home/new/lib/libkestry.so.1"), "libkestry.so.1.0");
    EXPECT_EQ(tree.programs, std::set<std::string>{"bin/kestry"});
    EXPECT_EQ(files.openHandles(), 0u);
}

TEST_F(UpdateArchiveTest, BothCompressionsAreRead)
{
    (void)unpack(testArchive(versionEntries("1.3"), archive_write_add_filter_zstd));
    EXPECT_EQ(content("bin/kestry"), "program 1.3");
}

TEST_F(UpdateArchiveTest, WhatWasUnpackedOutlivesAPowerCut)
{
    (void)unpack(testArchive(versionEntries("1.3")));
    files.restart(Unsynced::lost);
    EXPECT_EQ(content("bin/kestry"), "program 1.3");
    EXPECT_EQ(content("share/kestry/Info.json"), "{\"CFBundleShortVersionString\": \"1.3\"}");
    EXPECT_EQ(files.linkTarget("/home/new/lib/libkestry.so.1"), "libkestry.so.1.0");
}

TEST_F(UpdateArchiveTest, APathThatLeadsOutIsRefused)
{
    for (const char* path : {"../evil", "a/../../evil", "a/..", "/etc/evil", "./../evil", ".."}) {
        EXPECT_EQ(refusal({{.path = path}}),
            refused + "“" + path + "” in its archive leads out of its folder.");
    }
    EXPECT_TRUE(outside().empty());
}

TEST_F(UpdateArchiveTest, AFileThroughALinkIsRefused)
{
    EXPECT_EQ(
        refusal({{.path = "out", .type = AE_IFLNK, .symbolicLink = "lib"}, {.path = "out/evil"}}),
        refused + "“out” is in its archive twice.");
    EXPECT_EQ(refusal({{.path = "b", .type = AE_IFLNK, .symbolicLink = "lib"},
                  {.path = "b", .content = "evil"}}),
        refused + "“b” is in its archive twice.");
}

TEST_F(UpdateArchiveTest, ALinkThatLeadsOutIsRefused)
{
    for (const char* target :
        {"/etc/passwd", "..", "../evil", "../../evil", "lib/../..", "./../x"}) {
        EXPECT_EQ(refusal({{.path = "link", .type = AE_IFLNK, .symbolicLink = target}}),
            refused + "the link “link” in its archive leads out of its folder.")
            << target;
    }
    EXPECT_EQ(refusal({{.path = "a/link", .type = AE_IFLNK, .symbolicLink = "../../evil"}}),
        refused + "the link “a/link” in its archive leads out of its folder.");
    EXPECT_TRUE(outside().empty());
}

TEST_F(UpdateArchiveTest, ALinkMayGoUpInsideTheArchive)
{
    EXPECT_EQ(refusal({{.path = "lib/file"},
                  {.path = "bin/link", .type = AE_IFLNK, .symbolicLink = "../lib/file"}}),
        accepted);
    EXPECT_EQ(files.linkTarget("/home/new/bin/link"), "../lib/file");
}

TEST_F(UpdateArchiveTest, AHardLinkIsRefused)
{
    EXPECT_EQ(refusal({{.path = "a", .content = "x"}, {.path = "b", .hardLink = "a"}}),
        refused + "“b” in its archive is a hard link.");
    EXPECT_EQ(refusal({{.path = "c", .hardLink = "/etc/passwd"}}),
        refused + "“c” in its archive is a hard link.");
}

TEST_F(UpdateArchiveTest, DevicesAndPipesAreRefused)
{
    for (const unsigned type : {AE_IFCHR, AE_IFBLK, AE_IFIFO}) {
        EXPECT_EQ(refusal({{.path = "dev", .type = type}}),
            refused + "“dev” in its archive is neither a file nor a folder.");
    }
}

TEST_F(UpdateArchiveTest, RightsToActForAnotherUserAreRefused)
{
    for (const unsigned mode : {04755U, 02755U, 01755U}) {
        EXPECT_EQ(refusal({{.path = "bin/su", .mode = mode}}),
            refused + "“bin/su” in its archive asks for the rights of others.");
    }
}

TEST_F(UpdateArchiveTest, ANameTwiceIsRefused)
{
    EXPECT_EQ(refusal({{.path = "a"}, {.path = "./a"}}), refused + "“a” is in its archive twice.");
    EXPECT_EQ(refusal({{.path = "b", .type = AE_IFDIR}, {.path = "b"}}),
        refused + "“b” is in its archive twice.");
    EXPECT_EQ(refusal({{.path = "c"}, {.path = "c/d"}}), refused + "“c” is in its archive twice.");
    EXPECT_EQ(
        refusal({{.path = "e", .type = AE_IFDIR}, {.path = "e/", .type = AE_IFDIR}}), accepted);
}

TEST_F(UpdateArchiveTest, ANameThatIsNotPlainIsRefused)
{
    for (const std::string& path : {std::string("a\nb"), std::string("\xFF"),
             std::string("f\xC3\xBCr"), std::string(501, 'a'), std::string("a\x1b[2J")}) {
        EXPECT_EQ(refusal({{.path = path}}), refused + "a file in its archive has no plain name.");
    }
}

TEST_F(UpdateArchiveTest, TooManyFilesAreRefused)
{
    const std::vector<TestEntry> three{{.path = "a"}, {.path = "b"}, {.path = "c"}};
    EXPECT_EQ(refusal(three, {.entries = 3}), accepted);
    EXPECT_EQ(refusal({{.path = "d"}, {.path = "e"}, {.path = "f"}}, {.entries = 2}),
        refused + "its archive holds too many files.");
    EXPECT_EQ(refusal({{.path = "g/h/i/j"}}, {.entries = 2}),
        refused + "its archive holds too many files.");
}

TEST_F(UpdateArchiveTest, AFewBytesThatUnpackToTooManyAreRefused)
{
    const std::string bomb = testArchive({{.path = "a", .content = std::string(5'000'000, '\0')}});
    ASSERT_LT(bomb.size(), 50'000u);
    files.limitWrites(1 << 20);
    EXPECT_EQ(refusalOf([&] { (void)unpack(bomb, {.bytes = 1'000'000}); }),
        refused + "its archive holds too much.");
    EXPECT_LE(content("a").size(), 1'000'000u);
}

TEST_F(UpdateArchiveTest, WhatIsNoArchiveIsRefused)
{
    for (const std::string& bytes :
        {std::string(), std::string("program"), std::string(100'000, 'x'),
            testArchive(versionEntries("1"), archive_write_add_filter_gzip)}) {
        EXPECT_EQ(refusalOf([&] { (void)unpack(bytes); }), refused + "its archive is damaged.");
    }
}

TEST_F(UpdateArchiveTest, AnArchiveThatIsCutOffIsRefused)
{
    // The last bytes belong to the compression and come behind all files.
    constexpr std::size_t afterAllFiles = 40;
    const std::string bytes = testArchive(versionEntries("1.3"));
    for (std::size_t length = 0; length < bytes.size() - afterAllFiles; length += 7) {
        files.removeDirectory("/home/new");
        files.putDirectory("/home/new");
        EXPECT_EQ(refusalOf([&] { (void)unpack(bytes.substr(0, length)); }),
            refused + "its archive is damaged.")
            << length;
    }
}

TEST_F(UpdateArchiveTest, AFullDiskIsToldAndNothingStaysOpen)
{
    files.failCalls("/home/new/lib/libkestry.so.1.0 written to", ENOSPC);
    EXPECT_EQ(refusalOf([&] { (void)unpack(testArchive(versionEntries("1.3"))); }),
        "libkestry.so.1.0 could not be written to: No space left on device.");
    EXPECT_EQ(files.openHandles(), 0u);
}

TEST(UpdateArchiveOnDiskTest, ProgramsCanBeRunAndOtherFilesCannot)
{
    const TemporaryDirectory directory;
    PosixFileSystem files;
    (void)unpackArchive(testArchive(versionEntries("1.3")), files, directory.path());
    struct stat program { };
    struct stat library { };
    ASSERT_EQ(stat(directory.path("bin/kestry").c_str(), &program), 0);
    ASSERT_EQ(stat(directory.path("lib/libkestry.so.1").c_str(), &library), 0);
    EXPECT_NE(program.st_mode & S_IXUSR, 0u);
    EXPECT_EQ(library.st_mode & 0111, 0u);
}

} // namespace
} // namespace Kestry
