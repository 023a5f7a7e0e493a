// Who may do what with a file that replaces another, on real files. A file is made for its owner
// alone, and is never open to more than it is in the end.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "DurableFiles.h"
#include "PosixFileSystem.h"
#include "SystemCalls.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

const char* const accessList = "system.posix_acl_access";
const char* const listForNewFiles = "system.posix_acl_default";

/// One line of an access control list, in the form in which the kernel takes it.
struct ListEntry {
    std::uint16_t tag;
    std::uint16_t permissions;
    std::uint32_t id;
};

/// rw for the owner, r for the user 12345, `group` for the group, nothing for others.
std::string listWithAUser(std::uint16_t group)
{
    constexpr std::uint32_t version = 2;
    constexpr std::uint32_t nobody = UINT32_MAX;
    const std::vector<ListEntry> entries{{0x01, 6, nobody}, {0x02, 4, 12345}, {0x04, group, nobody},
        {0x10, 4, nobody}, {0x20, 0, nobody}};
    std::string list(reinterpret_cast<const char*>(&version), sizeof version);
    list.append(reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof(ListEntry));
    return list;
}

class PosixFileAccess : public testing::Test {
protected:
    ~PosixFileAccess() override
    {
        SystemCalls::orders() = {};
        umask(mask_);
    }
    std::string path(const std::string& name) const { return directory.path(name); }
    mode_t mode(const std::string& name) const
    {
        struct stat found { };
        EXPECT_EQ(lstat(path(name).c_str(), &found), 0);
        return found.st_mode & 07777U;
    }
    /// A file as its user has left it.
    void put(const std::string& name, mode_t mode)
    {
        DurableFiles(files).write(path(name), "old");
        ASSERT_EQ(chmod(path(name).c_str(), mode), 0);
    }
    void replace(const std::string& name) { DurableFiles(files).write(path(name), "new"); }
    std::optional<std::string> attribute(const std::string& name, const char* attribute) const
    {
        std::string value(1000, '\0');
        const ssize_t size = getxattr(path(name).c_str(), attribute, value.data(), value.size());
        return size < 0 ? std::nullopt
                        : std::optional(value.substr(0, static_cast<std::size_t>(size)));
    }
    void setAttribute(const std::string& name, const char* attribute, const std::string& value)
    {
        ASSERT_EQ(setxattr(path(name).c_str(), attribute, value.data(), value.size(), 0), 0);
    }
    /// Files seem to belong to a group that they cannot be given to.
    static void refuseTheGroup()
    {
        SystemCalls::orders().changeStatus = [](const std::string&, int&, struct stat& found) {
            found.st_gid += 4321;
        };
        SystemCalls::orders().ownerError = EPERM;
    }

    TemporaryDirectory directory;
    PosixFileSystem files;

private:
    mode_t mask_ = umask(022);
};

TEST_F(PosixFileAccess, NewFilesAndDirectoriesAreForTheirOwnerAloneWhateverTheMask)
{
    for (const mode_t mask : {0U, 022U, 0777U}) {
        umask(mask);
        const std::string name = std::to_string(mask);
        DurableFiles(files).createDirectories(path(name + "/below"));
        replace(name + "/below/file");
        umask(022);
        EXPECT_EQ(mode(name), 0700U) << mask;
        EXPECT_EQ(mode(name + "/below"), 0700U) << mask;
        EXPECT_EQ(mode(name + "/below/file"), 0600U) << mask;
    }
}

TEST_F(PosixFileAccess, AnOrdinaryFileIsMadeAsTheProcessMakesFiles)
{
    umask(027);
    files.close(files.open(path("file"), FileUse::createOrdinary));
    EXPECT_EQ(mode("file"), 0640U);
}

TEST_F(PosixFileAccess, AFileKeepsTheModeOfTheOneThatItReplaces)
{
    for (const mode_t kept : {0600U, 0640U, 0644U, 0666U, 0400U, 0604U}) {
        put("file", kept);
        replace("file");
        EXPECT_EQ(mode("file"), kept);
    }
}

TEST_F(PosixFileAccess, AFileIsForItsOwnerAloneUntilItsAccessIsKnown)
{
    umask(0);
    put("file", 0664);
    const FileSystem::Handle handle = files.open(path("new"), FileUse::create);
    EXPECT_EQ(mode("new"), 0600U);
    files.setAccess(handle, path("file"));
    EXPECT_EQ(mode("new"), 0664U);
    files.close(handle);
}

TEST_F(PosixFileAccess, WithoutAFileToTakeItFromOnlyTheOwnerHasAccess)
{
    const FileSystem::Handle handle = files.open(path("new"), FileUse::createOrdinary);
    ASSERT_EQ(mode("new"), 0644U);
    files.setAccess(handle, path("none"));
    EXPECT_EQ(mode("new"), 0600U);
    ASSERT_EQ(chmod(path("new").c_str(), 0644), 0);
    files.setAccess(handle, directory.path());
    EXPECT_EQ(mode("new"), 0600U) << "a directory";
    files.close(handle);
}

TEST_F(PosixFileAccess, APrivateFileIsPrivateWhateverItReplaces)
{
    put("file", 0644);
    DurableFiles(files).writePrivate(path("file"), "new");
    EXPECT_EQ(mode("file"), 0600U);
}

TEST_F(PosixFileAccess, ACopyAndAKeptPreviousFileHaveTheModeOfTheOriginal)
{
    put("file", 0640);
    put("backup", 0644);
    DurableFiles durable(files);
    durable.copy(path("file"), path("copy"));
    EXPECT_EQ(mode("copy"), 0640U);
    const std::string_view old = "old";
    const std::string_view bytes = "new";
    durable.writeKeepingPrevious(
        path("file"), {&bytes, 1}, {std::nullopt, {&old, 1}, path("backup")});
    EXPECT_EQ(mode("file"), 0640U);
    EXPECT_EQ(mode("backup"), 0640U);
}

TEST_F(PosixFileAccess, AnAccessControlListIsKept)
{
    put("file", 0600);
    setAttribute("file", accessList, listWithAUser(0));
    const auto before = attribute("file", accessList);
    const mode_t modeBefore = mode("file");
    replace("file");
    EXPECT_EQ(attribute("file", accessList), before);
    EXPECT_EQ(mode("file"), modeBefore);
}

TEST_F(PosixFileAccess, AListThatTheDirectoryGivesToNewFilesOpensNone)
{
    put("file", 0660);
    ASSERT_EQ(setxattr(directory.path().c_str(), listForNewFiles, listWithAUser(4).data(),
                  listWithAUser(4).size(), 0),
        0);
    replace("file");
    EXPECT_EQ(attribute("file", accessList), std::nullopt);
    EXPECT_EQ(mode("file"), 0660U);
    replace("first");
    EXPECT_EQ(mode("first"), 0600U) << "what the list allows is cut off by the group's part";
}

TEST_F(PosixFileAccess, WhatTheUserHasPutOnTheFileIsKept)
{
    put("file", 0600);
    const std::string tag = "billing";
    // Some file systems take no such attributes.
    const bool isPossible =
        setxattr(path("file").c_str(), "user.xdg.tags", tag.data(), tag.size(), 0) == 0;
    replace("file");
    EXPECT_EQ(attribute("file", "user.xdg.tags"), isPossible ? std::optional(tag) : std::nullopt);
}

TEST_F(PosixFileAccess, AGroupThatCannotBeKeptLosesItsPartAndNobodyGains)
{
    const std::vector<std::pair<mode_t, mode_t>> cases{
        {0640, 0600}, {0660, 0600}, {0644, 0604}, {0604, 0600}, {0646, 0604}, {0600, 0600}};
    for (const auto& [before, after] : cases) {
        put("file", before);
        refuseTheGroup();
        replace("file");
        SystemCalls::orders() = {};
        EXPECT_EQ(mode("file"), after);
    }
}

TEST_F(PosixFileAccess, AListForAGroupThatCannotBeKeptIsLeftOutForTheOwnerAlone)
{
    put("file", 0604);
    setAttribute("file", accessList, listWithAUser(4));
    refuseTheGroup();
    replace("file");
    SystemCalls::orders() = {};
    EXPECT_EQ(attribute("file", accessList), std::nullopt);
    EXPECT_EQ(mode("file"), 0600U);
}

TEST_F(PosixFileAccess, AFileStaysWithItsOwnersWhoeverReplacesIt)
{
    // Only the superuser can give a file away; for everybody else it is the own file.
    const bool isSuperuser = geteuid() == 0;
    put("file", 0640);
    ASSERT_EQ(chown(path("file").c_str(), isSuperuser ? 12345 : geteuid(),
                  isSuperuser ? 12346 : getegid()),
        0);
    struct stat before { };
    struct stat after { };
    ASSERT_EQ(stat(path("file").c_str(), &before), 0);
    replace("file");
    ASSERT_EQ(stat(path("file").c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(mode("file"), 0640U);
}

} // namespace
} // namespace KestryCore
