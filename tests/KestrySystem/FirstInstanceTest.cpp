#include "FirstInstance.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "LocalClient.h"
#include "MemoryFileSystem.h"
#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

using Outcome = InstanceClaim::Outcome;

class FirstInstanceTest : public testing::Test {
protected:
    FirstInstanceTest()
    {
        std::filesystem::create_directory(directory);
        files.putDirectory(directory);
    }

    InstanceClaim claim()
    {
        return claimInstance(files, directory, {}, [this](double seconds) {
            waited += seconds;
            if (waited >= heldSeconds) {
                files.holdLock(directory, "");
            }
        });
    }
    /// Another process has the directory for some time.
    void hold(const std::string& holder, double seconds)
    {
        files.holdLock(directory, holder);
        heldSeconds = seconds;
    }

    KestryCore::TemporaryDirectory folder;
    KestryCore::EnvironmentVariable runtime{"XDG_RUNTIME_DIR", folder.path()};
    std::string directory = folder.path("data");
    KestryCore::MemoryFileSystem files;
    double waited = 0;
    double heldSeconds = 0;
};

TEST_F(FirstInstanceTest, TheFirstHasTheDirectoryAndCanBeReached)
{
    const InstanceClaim first = claim();
    EXPECT_EQ(first.outcome, Outcome::first);
    EXPECT_TRUE(first.socket);
    EXPECT_TRUE(files.isLocked(directory));
    EXPECT_EQ(waited, 0);
}

TEST_F(FirstInstanceTest, ADirectoryThatIsNotThereYetHasAFirstOneToo)
{
    directory = folder.path("none");
    const InstanceClaim first = claim();
    EXPECT_EQ(first.outcome, Outcome::first);
    ASSERT_TRUE(first.socket);
    EXPECT_FALSE(std::filesystem::exists(directory));
    EXPECT_TRUE(connectLocally(folder.path(), localSocketName(directory)).socket);
}

TEST_F(FirstInstanceTest, ASecondOneHandsOverWhatItWasStartedFor)
{
    const InstanceClaim first = claim();
    std::optional<LocalActivation> heard;
    std::thread other([&] {
        Descriptor caller;
        while (!caller) {
            caller = first.socket->accept();
        }
        LocalFrameReader reader(maximumRequestBytes);
        std::string buffer(1'000, '\0');
        while (!heard) {
            const ssize_t count = read(caller.number(), buffer.data(), buffer.size());
            reader.add(buffer.substr(0, count > 0 ? static_cast<std::size_t>(count) : 0));
            if (const auto frame = reader.next()) {
                heard = decodeActivation(frame->content);
            }
        }
        const std::string answer = encodeMessage(LocalAnswer{});
        EXPECT_EQ(write(caller.number(), answer.data(), answer.size()),
            static_cast<ssize_t>(answer.size()));
    });
    const LocalActivation activation{{"kestry://update"}, "token"};
    EXPECT_EQ(
        claimInstance(files, directory, activation, [](double) {}).outcome, Outcome::handedOver);
    other.join();
    EXPECT_EQ(heard, activation);
}

TEST_F(FirstInstanceTest, ACommandInPassingIsWaitedFor)
{
    hold("kestryctl (process 4711)", 0.14);
    EXPECT_EQ(claim().outcome, Outcome::first);
    EXPECT_NEAR(waited, 0.15, 0.001);
}

TEST_F(FirstInstanceTest, AnApplicationThatNeverListensIsNamedAfterFiveSeconds)
{
    hold("kestry (process 4711)", 100);
    const InstanceClaim refused = claim();
    EXPECT_EQ(refused.outcome, Outcome::refused);
    EXPECT_EQ(refused.refusal,
        "kestry (process 4711) is using this data directory, and only one program can write to it "
        "at a time.");
    EXPECT_NEAR(waited, 5, 0.1);
}

TEST_F(FirstInstanceTest, AnotherProgramIsNotWaitedFor)
{
    hold("rsync (process 4711)", 1);
    EXPECT_EQ(claim().outcome, Outcome::refused);
    EXPECT_EQ(waited, 0);
}

TEST_F(FirstInstanceTest, WithoutAPlaceForASocketTheFirstGoesOnAlone)
{
    std::filesystem::create_directory(folder.path(localSocketName(directory)));
    const InstanceClaim alone = claim();
    EXPECT_EQ(alone.outcome, Outcome::first);
    EXPECT_FALSE(alone.socket);
}

} // namespace
} // namespace Kestry
