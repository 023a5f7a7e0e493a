#include "HelperProgram.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <stop_token>
#include <thread>

#include "FileSystem.h"

namespace Kestry {
namespace {

using namespace std::chrono_literals;

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

TEST(HelperProgram, ItIsKilledAfterItsTime)
{
    EXPECT_EQ(helperOutput("/bin/sh", "echo half; exec sleep 60", {.most = 50ms}), "half\n");
    EXPECT_EQ(helperOutput("/bin/sh", "echo whole", {.most = 1min}), "whole\n");
}

TEST(HelperProgram, ItIsKilledWhenThatIsRequestedWhileItRuns)
{
    std::stop_source source;
    const std::jthread other([&] {
        std::this_thread::sleep_for(50ms);
        source.request_stop();
    });
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(helperOutput("/bin/sh", "exec sleep 60", {.stop = source.get_token()}), "");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
}

TEST(HelperProgram, ItIsKilledAtOnceWhenThatWasRequestedBefore)
{
    std::stop_source source;
    source.request_stop();
    EXPECT_EQ(helperOutput("/bin/sh", "exec sleep 60", {.stop = source.get_token()}), "");
}

} // namespace
} // namespace Kestry
