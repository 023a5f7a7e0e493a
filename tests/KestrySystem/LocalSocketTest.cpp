#include "LocalSocket.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cstring>
#include <filesystem>

#include "LedgerError.h"
#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

class LocalSocketTest : public testing::Test {
protected:
    [[nodiscard]] std::optional<ListeningSocket> listen(const std::string& name = "name") const
    {
        return ListeningSocket::open(folder.path(), name);
    }
    [[nodiscard]] LocalConnection call(const std::string& name = "name") const
    {
        return connectLocally(folder.path(), name);
    }
    /// A socket file that nobody listens on, as a killed process leaves it.
    void leaveStaleSocket() const
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, folder.path("name").c_str(), sizeof address.sun_path - 1);
        const Descriptor left(socket(AF_UNIX, SOCK_STREAM, 0));
        ASSERT_EQ(
            bind(left.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    }

    KestryCore::TemporaryDirectory folder;
};

TEST_F(LocalSocketTest, ADirectoryHasOneNameThroughEveryPath)
{
    std::filesystem::create_directory(folder.path("data"));
    std::filesystem::create_symlink(folder.path("data"), folder.path("link"));
    const std::string name = localSocketName(folder.path("data"));
    EXPECT_EQ(localSocketName(folder.path("link")), name);
    EXPECT_EQ(localSocketName(folder.path("link/../data/.")), name);
    EXPECT_NE(localSocketName(folder.path()), name);
    EXPECT_FALSE(isNameOfPath(name));
}

TEST_F(LocalSocketTest, ADirectoryThatIsNotThereYetIsNamedAfterItsPath)
{
    std::filesystem::create_symlink(folder.path(), folder.path("link"));
    const std::string name = localSocketName(folder.path("data"));
    EXPECT_TRUE(isNameOfPath(name));
    EXPECT_EQ(localSocketName(folder.path("data/")), name);
    EXPECT_EQ(localSocketName(folder.path("./other/../data")), name);
    EXPECT_EQ(localSocketName(folder.path("link/data")), name);
    EXPECT_NE(localSocketName(folder.path("Data")), name);
}

TEST_F(LocalSocketTest, ACallReachesWhoeverListensAndTellsWhoThatIs)
{
    const auto listening = listen();
    const LocalConnection connection = call();
    ASSERT_TRUE(connection.socket);
    EXPECT_EQ(connection.process, getpid());
    const Descriptor caller = listening->accept();
    ASSERT_TRUE(caller);
    EXPECT_EQ(send(connection.socket.number(), "x", 1, 0), 1);
    char received = 0;
    EXPECT_EQ(recv(caller.number(), &received, 1, 0), 1);
    EXPECT_FALSE(listening->accept());
}

TEST_F(LocalSocketTest, WithoutAListenerNobodyIsReached)
{
    EXPECT_FALSE(call().socket);
    leaveStaleSocket();
    EXPECT_FALSE(call().socket);
    EXPECT_FALSE(call().isBusy);
    std::filesystem::create_directory(folder.path("folder"));
    EXPECT_FALSE(call("folder").socket);
}

TEST_F(LocalSocketTest, ASocketThatAKilledProcessHasLeftIsReplaced)
{
    leaveStaleSocket();
    const auto listening = listen();
    ASSERT_TRUE(listening);
    EXPECT_TRUE(call().socket);
}

TEST_F(LocalSocketTest, WhoListensKeepsOthersFromListeningThere)
{
    const auto first = listen();
    EXPECT_FALSE(listen());
    EXPECT_TRUE(call().socket);
    EXPECT_TRUE(listen("other"));
}

TEST_F(LocalSocketTest, ASocketIsForItsUserAloneAndGoesWithTheListener)
{
    {
        const auto listening = listen();
        struct stat found { };
        ASSERT_EQ(stat(folder.path("name").c_str(), &found), 0);
        EXPECT_EQ(found.st_mode & 0777, 0600);
    }
    EXPECT_FALSE(std::filesystem::exists(folder.path("name")));
    EXPECT_TRUE(listen());
}

TEST_F(LocalSocketTest, AFolderWithALongNameServesAsWell)
{
    const std::string deep = folder.path(std::string(120, 'x'));
    std::filesystem::create_directory(deep);
    {
        const auto listening = ListeningSocket::open(deep, "name");
        ASSERT_TRUE(listening);
        EXPECT_TRUE(connectLocally(deep, "name").socket);
    }
    EXPECT_FALSE(std::filesystem::exists(deep + "/name"));
}

TEST_F(LocalSocketTest, WithoutItsFolderListeningFailsInWords)
{
    EXPECT_THROW((void)ListeningSocket::open(folder.path("none"), "name"), KestryCore::LedgerError);
}

TEST_F(LocalSocketTest, AListenerThatTakesNoCallersIsBusyAndNotGone)
{
    const auto listening = listen();
    std::vector<LocalConnection> waiting;
    while (waiting.size() < 200 && (waiting.empty() || waiting.back().socket)) {
        waiting.push_back(call());
    }
    EXPECT_TRUE(waiting.back().isBusy);
    EXPECT_FALSE(listen());
}

} // namespace
} // namespace Kestry
