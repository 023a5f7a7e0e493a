#include "OutputFile.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

#include "CommandFixture.h"
#include "Descriptor.h"
#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

class OutputFile : public testing::Test {
protected:
    OutputFile() { std::filesystem::create_directory(folder.path("ledger")); }

    FileWritten write(const std::string& name)
    {
        return writeOutputFile({name, bytes}, folder.path("ledger"));
    }
    std::string refusal(const std::string& name)
    {
        try {
            (void)write(name);
        } catch (const KestryCore::LedgerError& failure) {
            return failure.what();
        }
        return "written";
    }
    void put(const std::string& name, mode_t mode)
    {
        std::ofstream(folder.path(name)) << std::string(5000, 'x');
        EXPECT_EQ(chmod(folder.path(name).c_str(), mode), 0);
    }
    [[nodiscard]] mode_t mode(const std::string& name) const
    {
        struct stat found { };
        EXPECT_EQ(stat(folder.path(name).c_str(), &found), 0);
        return found.st_mode & 07777U;
    }
    [[nodiscard]] std::string content(const std::string& name) const
    {
        return fileContent(folder.path(name));
    }
    [[nodiscard]] std::size_t count() const
    {
        const std::filesystem::directory_iterator files(folder.path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    KestryCore::TemporaryDirectory folder;
    const std::string bytes = "a,\x1B[2J\xFF\r\n";
};

TEST_F(OutputFile, ANewOneHasWhatTheUmaskLeaves)
{
    const mode_t before = umask(027);
    EXPECT_EQ(write(folder.path("new")), FileWritten::beside);
    umask(before);
    EXPECT_EQ(content("new"), bytes);
    EXPECT_EQ(mode("new"), 0640U);
    EXPECT_EQ(count(), 2U);
}

TEST_F(OutputFile, AnOldOneIsReplacedWholeAndKeepsItsMode)
{
    for (const mode_t kept : {0600U, 0644U, 0666U, 0755U}) {
        put("old", kept);
        write(folder.path("old"));
        EXPECT_EQ(content("old"), bytes);
        EXPECT_EQ(mode("old"), kept);
    }
    EXPECT_EQ(count(), 2U);
}

TEST_F(OutputFile, AnOldOneThatIsNotWritableIsRefused)
{
    if (geteuid() == 0) { // nothing is closed to this user: another one looks
        EXPECT_EQ(chmod(folder.path().c_str(), 0777), 0);
    }
    put("old", 0444);
    std::string reason;
    // The user belongs to the thread.
    std::thread([&] {
        if (geteuid() == 0) {
            EXPECT_EQ(syscall(SYS_setresuid, -1, 65534, -1), 0);
        }
        reason = refusal(folder.path("old"));
    }).join();
    EXPECT_EQ(reason, "old could not be written: Permission denied.");
    EXPECT_EQ(content("old"), std::string(5000, 'x'));
}

TEST_F(OutputFile, ALinkStaysAndItsTargetIsReplaced)
{
    put("old", 0600);
    std::filesystem::create_symlink("old", folder.path("near"));
    std::filesystem::create_symlink(folder.path("near"), folder.path("far"));
    write(folder.path("far"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("near")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("far")));
    EXPECT_EQ(content("old"), bytes);
}

TEST_F(OutputFile, LinksThatLeadNowhereOrRoundAreRefused)
{
    std::filesystem::create_symlink("nothing", folder.path("link"));
    EXPECT_EQ(refusal(folder.path("link")), folder.path("link") + " is a link that leads nowhere.");
    std::filesystem::create_symlink("round", folder.path("round"));
    EXPECT_EQ(refusal(folder.path("round")),
        "round could not be written: Too many levels of symbolic links.");
}

TEST_F(OutputFile, AStreamGetsTheBytesAsTheyAre)
{
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    const Descriptor reader(open(folder.path("pipe").c_str(), O_RDONLY | O_NONBLOCK));
    EXPECT_EQ(write(folder.path("pipe")), FileWritten::beside);
    std::string buffer(100, '\0');
    buffer.resize(static_cast<std::size_t>(::read(reader.number(), buffer.data(), buffer.size())));
    EXPECT_EQ(buffer, bytes);
    EXPECT_EQ(write("/dev/null"), FileWritten::beside);
    EXPECT_EQ(refusal("/dev/full"), "full could not be written: No space left on device.");
}

TEST_F(OutputFile, ATerminalGetsThemVisible)
{
    const Descriptor terminal(posix_openpt(O_RDWR | O_NOCTTY));
    ASSERT_EQ(grantpt(terminal.number()), 0);
    ASSERT_EQ(unlockpt(terminal.number()), 0);
    const std::string name = ptsname(terminal.number());
    const Descriptor open1(open(name.c_str(), O_RDWR | O_NOCTTY));
    write(name);
    std::string buffer(100, '\0');
    buffer.resize(
        static_cast<std::size_t>(::read(terminal.number(), buffer.data(), buffer.size())));
    EXPECT_EQ(buffer, "a,\\x1B[2J\xEF\xBF\xBD\r\n"); // the terminal's own line end
}

TEST_F(OutputFile, ADescriptorOfThisProcessKeepsItsPlace)
{
    put("log", 0600);
    const Descriptor log(open(folder.path("log").c_str(), O_WRONLY | O_APPEND));
    for (const char* place : {"/dev/fd/", "/proc/self/fd/"}) {
        EXPECT_EQ(write(place + std::to_string(log.number())), FileWritten::beside);
    }
    EXPECT_EQ(content("log"), std::string(5000, 'x') + bytes + bytes);
    EXPECT_EQ(refusal("/dev/fd/987"), "987 could not be written: No such file or directory.");
    EXPECT_EQ(refusal("/dev/fd/x"), "x could not be written: No such file or directory.");
}

TEST_F(OutputFile, WhatIsNoFileAndNoStreamIsRefused)
{
    EXPECT_EQ(refusal(folder.path("ledger")), folder.path("ledger") + " is a directory.");
    EXPECT_EQ(refusal(folder.path() + "/"), folder.path() + "/ is a directory.");
    EXPECT_EQ(refusal(""), " could not be written: No such file or directory.");
    EXPECT_EQ(
        refusal(folder.path("none/out")), "out could not be written: No such file or directory.");
    const Descriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address{AF_UNIX, {}};
    std::strncpy(address.sun_path, folder.path("socket").c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(socket.number(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(refusal(folder.path("socket")),
        folder.path("socket")
            + " is no ordinary file. Leave FILE out to write to the standard output.");
}

TEST_F(OutputFile, NothingButCsvIsWrittenBesideTheLedger)
{
    put("ledger/ledger.json", 0600);
    std::filesystem::create_symlink(folder.path("ledger"), folder.path("link"));
    std::filesystem::create_symlink(folder.path("ledger/ledger.json"), folder.path("link.csv"));
    for (const char* name : {"ledger/ledger.json", "link/ledger.backup.json", "link.csv",
             "ledger/x", "ledger/.csv", "link/../ledger/ledger.json"}) {
        EXPECT_THAT(
            refusal(folder.path(name)), testing::HasSubstr("may be one of the ledger's own files"));
    }
    EXPECT_EQ(content("ledger/ledger.json"), std::string(5000, 'x'));
    EXPECT_EQ(write(folder.path("ledger/out.csv")), FileWritten::beside);
}

} // namespace
} // namespace Kestry
