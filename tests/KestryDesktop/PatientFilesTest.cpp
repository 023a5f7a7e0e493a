#include "PatientFiles.h"

#include <gtest/gtest.h>

#include <future>
#include <string>
#include <thread>
#include <vector>

#include "LedgerError.h"
#include "MemoryFileSystem.h"
#include "VirtualScheduler.h"

namespace Kestry {
namespace {

using std::chrono::milliseconds;

/// Files on a disk that does nothing until it is let go.
class StuckFiles final : public KestryCore::FileSystem {
public:
    void letGo() { mayGo_.set_value(); }

    [[nodiscard]] std::string applicationSupportDirectory() const override { return {}; }
    [[nodiscard]] std::optional<KestryCore::FileStatus> status(const std::string&) override
    {
        return std::nullopt;
    }
    [[nodiscard]] std::vector<std::string> list(const std::string&) override { return {}; }
    [[nodiscard]] Handle open(const std::string&, KestryCore::FileUse) override { return 0; }
    [[nodiscard]] std::uint64_t size(Handle) override { return 0; }
    [[nodiscard]] std::size_t read(Handle, char*, std::size_t) override { return 0; }
    [[nodiscard]] KestryCore::FileIdentity identity(Handle) override { return {}; }
    void setAccess(Handle, const std::optional<std::string>&) override { }
    [[nodiscard]] std::size_t write(Handle, std::span<const std::string_view>) override
    {
        return 0;
    }
    void sync(Handle) override
    {
        thread = std::this_thread::get_id();
        gone_.wait();
    }
    void close(Handle) override { }
    void rename(const std::string&, const std::string&) override { }
    void link(Handle, const std::string&) override { }
    void remove(const std::string&) override { }
    bool createDirectory(const std::string&) override { return false; }
    [[nodiscard]] KestryCore::LockAttempt lockDirectory(const std::string&) override { return {}; }

    std::thread::id thread; ///< That of the latest sync.

private:
    std::promise<void> mayGo_;
    std::shared_future<void> gone_ = mayGo_.get_future().share();
};

class PatientFilesTest : public ::testing::Test {
protected:
    /// Remembers the signs, and lets the disk go as soon as it is called slow.
    void follow(PatientFiles& files)
    {
        files.tell({.slow =
                        [this] {
                            signs.emplace_back("slow");
                            stuck.letGo();
                        },
            .over = [this] { signs.emplace_back("over"); }});
    }

    KestryCore::VirtualScheduler scheduler;
    StuckFiles stuck;
    std::vector<std::string> signs;
};

TEST_F(PatientFilesTest, ASlowCallIsToldWhileItLastsAndOverAfterTheTurn)
{
    PatientFiles files(stuck, scheduler, milliseconds(10));
    follow(files);
    files.sync(1);
    EXPECT_EQ(signs, std::vector<std::string>{"slow"});
    files.sync(1);
    EXPECT_EQ(signs, std::vector<std::string>{"slow"});
    scheduler.turn();
    EXPECT_EQ(signs, (std::vector<std::string>{"slow", "over"}));
}

TEST_F(PatientFilesTest, QuickCallsAreNotTold)
{
    PatientFiles files(stuck, scheduler, milliseconds(60'000));
    follow(files);
    stuck.letGo();
    files.sync(1);
    scheduler.turn();
    EXPECT_TRUE(signs.empty());
    EXPECT_NE(stuck.thread, std::this_thread::get_id());
}

TEST_F(PatientFilesTest, TheCallsOfOneTurnAreWaitedForTogether)
{
    PatientFiles files(stuck, scheduler, milliseconds(30));
    follow(files);
    EXPECT_EQ(files.size(1), 0U);
    std::this_thread::sleep_for(milliseconds(40));
    files.sync(1); // would wait for ever if its own time counted anew
    EXPECT_EQ(signs, std::vector<std::string>{"slow"});
}

TEST_F(PatientFilesTest, ATurnOfItsOwnIsWaitedForAnew)
{
    // Long enough for the second call on any machine.
    PatientFiles files(stuck, scheduler, milliseconds(500));
    follow(files);
    files.sync(1);
    scheduler.turn();
    signs.clear();
    files.sync(1);
    scheduler.turn();
    EXPECT_TRUE(signs.empty());
}

TEST_F(PatientFilesTest, WhileNobodyIsToldCallsAreMadeWhereTheyCome)
{
    PatientFiles files(stuck, scheduler, milliseconds(0));
    stuck.letGo();
    files.sync(1);
    EXPECT_EQ(stuck.thread, std::this_thread::get_id());
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(PatientFilesTest, AFailureReachesTheCaller)
{
    KestryCore::MemoryFileSystem disk;
    PatientFiles files(disk, scheduler);
    follow(files);
    EXPECT_THROW(files.rename("/home/missing", "/home/b"), KestryCore::FileError);
}

TEST_F(PatientFilesTest, WhatIsWrittenIsThere)
{
    KestryCore::MemoryFileSystem disk;
    PatientFiles files(disk, scheduler);
    follow(files);
    const auto handle = files.open("/home/a", KestryCore::FileUse::create);
    const std::vector<std::string_view> pieces{"content"};
    EXPECT_GT(files.write(handle, pieces), 0U);
    files.sync(handle);
    files.close(handle);
    EXPECT_TRUE(files.status("/home/a")->isRegular);
    EXPECT_EQ(files.list("/home"), std::vector<std::string>{"a"});
}

} // namespace
} // namespace Kestry
