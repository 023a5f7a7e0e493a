#include "HelperProgram.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "FileSystem.h"

namespace Kestry {
namespace {

// The shell reads its orders from standard input, so it can be any helper.
std::string shell(std::string_view orders)
{
    return helperOutput("/bin/sh", orders);
}

TEST(HelperProgram, WhatTheProgramWritesIsReturned)
{
    EXPECT_EQ(shell("echo done"), "done\n");
    EXPECT_EQ(shell("exit 3"), "");
}

TEST(HelperProgram, AnyBytesOfAnyLengthGoInAndOut)
{
    std::string bytes(20'971'520, '\0');
    bytes.back() = '\xFF';
    EXPECT_EQ(helperOutput("/bin/cat", bytes), bytes);
    EXPECT_EQ(helperOutput("/bin/cat", ""), "");
}

TEST(HelperProgram, ItsWarningsAreDropped)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(shell("echo warning >&2; echo done"), "done\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(HelperProgram, ACrashLeavesWhatWasWrittenBefore)
{
    EXPECT_EQ(shell("kill -SEGV $$"), "");
    EXPECT_EQ(shell("echo half; kill -KILL $$; echo whole"), "half\n");
}

TEST(HelperProgram, AProgramThatIsMissingIsAFailureInWords)
{
    try {
        (void)helperOutput("/missing/program", "");
        FAIL();
    } catch (const KestryCore::FileError& failure) {
        EXPECT_STREQ(failure.what(), "program could not be started: No such file or directory.");
    }
}

TEST(HelperProgram, ItsEndIsAwaitedWhereEndedProcessesAreNotReported)
{
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(shell("sleep 0.05; echo done"), "done\n");
    std::signal(SIGCHLD, before);
}

TEST(HelperProgram, ItHasNoOpenFileButItsStreams)
{
    EXPECT_EQ(shell("ls /proc/self/fd | wc -l"), "4\n"); // The fourth is the one that lists them.
}

TEST(HelperProgram, AProgramIsFoundFromTheFolderOfTheRunningOne)
{
    const auto running = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(programNear("other"), running.parent_path() / "other");
    EXPECT_EQ(programNear("../libexec/other"), running.parent_path() / "../libexec/other");
}

} // namespace
} // namespace Kestry
