#include "LocalClient.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>

#include <functional>
#include <thread>

#include "LocalSocket.h"
#include "PrivateDirectories.h"
#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

/// What a caller hears from a listener that does what it is told to.
class LocalClientTest : public testing::Test {
protected:
    LocalClientTest() { command.words = {"status"}; }

    using Listener = std::function<void(int caller)>;

    /// Calls a listener that reads the request and then does something with the caller.
    LocalReply callOn(const Listener& listener, ClientTimeouts timeouts = {})
    {
        const auto socket = ListeningSocket::open(folder.path(), localSocketName(folder.path()));
        std::thread other([&] {
            pollfd waiting{socket->descriptor(), POLLIN, 0};
            (void)poll(&waiting, 1, 5'000);
            const Descriptor caller = socket->accept();
            request = read(caller.number());
            listener(caller.number());
        });
        LocalReply reply = handOver(folder.path(), encodeMessage(command), timeouts);
        other.join();
        return reply;
    }

    static std::string read(int caller)
    {
        LocalFrameReader reader(maximumRequestBytes);
        std::string buffer(65'536, '\0');
        while (true) {
            pollfd waiting{caller, POLLIN, 0};
            (void)poll(&waiting, 1, 5'000);
            const ssize_t count = recv(caller, buffer.data(), buffer.size(), 0);
            if (count <= 0) {
                return {};
            }
            reader.add(std::string_view(buffer).substr(0, static_cast<std::size_t>(count)));
            if (const auto frame = reader.next()) {
                return frame->content;
            }
        }
    }
    static bool say(int caller, const std::string& message)
    {
        return send(caller, message.data(), message.size(), MSG_NOSIGNAL)
            == static_cast<ssize_t>(message.size());
    }

    KestryCore::TemporaryDirectory folder;
    KestryCore::EnvironmentVariable runtime{"XDG_RUNTIME_DIR", folder.path()};
    LocalCommand command;
    std::string request;
};

using Outcome = LocalReply::Outcome;

TEST_F(LocalClientTest, AListenerOfAnotherEnvironmentIsFoundBelowTmp)
{
    const KestryCore::TemporaryDirectory other;
    const KestryCore::EnvironmentVariable none("XDG_RUNTIME_DIR", std::nullopt);
    const std::string place = KestryCore::listeningPlace().path;
    const auto socket = ListeningSocket::open(place, localSocketName(folder.path()));
    ASSERT_TRUE(socket);
    const KestryCore::EnvironmentVariable own("XDG_RUNTIME_DIR", other.path());
    // It never answers, which is how it shows that it was found.
    EXPECT_EQ(handOver(folder.path(), encodeMessage(command), {.untilTaken = 0.05}).outcome,
        LocalReply::Outcome::silent);
}

TEST_F(LocalClientTest, AnAnswerComesBackWithTheProcessThatGaveIt)
{
    const LocalAnswer answer{1, false, "out", "why"};
    const LocalReply reply = callOn([&](int caller) {
        say(caller, encodeMessage(LocalMessageKind::taken));
        say(caller, encodeMessage(answer));
    });
    EXPECT_EQ(reply.outcome, Outcome::answered);
    EXPECT_EQ(reply.answer, answer);
    EXPECT_EQ(reply.process, getpid());
    EXPECT_EQ(decodeCommand(request), command);
}

TEST_F(LocalClientTest, WhatIsDeclinedOrDroppedBeforeItIsTakenWasNotDone)
{
    EXPECT_EQ(
        callOn([](int caller) { say(caller, encodeMessage(LocalMessageKind::declined)); }).outcome,
        Outcome::declined);
    EXPECT_EQ(callOn([](int) {}).outcome, Outcome::unreached);
    EXPECT_EQ(callOn([](int caller) { say(caller, "HTTP/1.1 400"); }).outcome, Outcome::unreached);
}

TEST_F(LocalClientTest, WithoutAListenerNobodyIsReached)
{
    EXPECT_EQ(handOver(folder.path(), encodeMessage(command)).outcome, Outcome::unreached);
    const KestryCore::EnvironmentVariable none("XDG_RUNTIME_DIR", "/nonexistent");
    EXPECT_EQ(handOver(folder.path("none"), encodeMessage(command)).outcome, Outcome::unreached);
}

TEST_F(LocalClientTest, AListenerThatSaysNothingIsGivenUpAndCannotTakeTheCommandAnyMore)
{
    bool isTaken = true;
    const auto listener = [&](int caller) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        isTaken = say(caller, encodeMessage(LocalMessageKind::taken));
    };
    EXPECT_EQ(callOn(listener, {.untilTaken = 0.05}).outcome, Outcome::silent);
    EXPECT_FALSE(isTaken);
}

TEST_F(LocalClientTest, ACommandThatIsTakenAndNotAnsweredIsLost)
{
    const auto take = [](int caller) { say(caller, encodeMessage(LocalMessageKind::taken)); };
    EXPECT_EQ(callOn(take).outcome, Outcome::lost);
    const auto takeAndSleep = [&](int caller) {
        take(caller);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
    };
    const LocalReply reply = callOn(takeAndSleep, {.untilTaken = 5, .untilAnswered = 0.05});
    EXPECT_EQ(reply.outcome, Outcome::lost);
    EXPECT_EQ(lostCommandText(reply),
        "Kestry (process " + std::to_string(getpid())
            + ") took the command on and has not answered. Look at \"kestryctl status\" before you "
              "repeat it: it may have been carried out.");
}

TEST_F(LocalClientTest, AListenerThatShowsThatItIsStillAtWorkIsWaitedFor)
{
    const LocalReply reply = callOn(
        [](int caller) {
            for (int sign = 0; sign < 6; ++sign) {
                say(caller, encodeMessage(LocalMessageKind::taken));
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
            say(caller, encodeMessage(LocalAnswer{0, true, "done", ""}));
        },
        {.untilTaken = 5, .untilAnswered = 0.4});
    EXPECT_EQ(reply.outcome, Outcome::answered);
    EXPECT_EQ(reply.answer.output, "done");
}

TEST_F(LocalClientTest, ALongRequestAndALongAnswerGoThroughInPieces)
{
    command.words.assign(LocalMessageLimits::words, std::string(LocalMessageLimits::word, 'x'));
    const LocalAnswer answer{0, false, std::string(5'000'000, 'y'), ""};
    const LocalReply reply = callOn([&](int caller) {
        std::string message = encodeMessage(answer);
        while (!message.empty()) {
            pollfd waiting{caller, POLLOUT, 0};
            (void)poll(&waiting, 1, 5'000);
            const ssize_t count = send(caller, message.data(), message.size(), MSG_NOSIGNAL);
            message.erase(0, count > 0 ? static_cast<std::size_t>(count) : 0);
        }
    });
    EXPECT_EQ(reply.answer, answer);
    EXPECT_EQ(decodeCommand(request), command);
}

} // namespace
} // namespace Kestry
