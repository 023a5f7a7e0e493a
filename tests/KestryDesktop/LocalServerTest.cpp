#include "LocalServer.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <QTest>

#include <future>
#include <thread>

#include "LocalClient.h"
#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

class LocalServerTest : public testing::Test {
protected:
    LocalServerTest() { start({}); }

    /// Listens, in place of the server that listened before.
    void start(ServerTimeouts timeouts)
    {
        server.reset();
        LocalServices services;
        services.command = [this](const LocalCommand& command, const auto& take, const auto& give) {
            return serve(command, take, give);
        };
        services.activate = [this](const LocalActivation& activation) {
            activations.push_back(activation);
        };
        server.emplace(std::move(services), timeouts);
        server->listen(*ListeningSocket::open(folder.path(), localSocketName(folder.path())));
    }

    /// A command "later" is answered when the test says so.
    bool serve(const LocalCommand& command, const LocalServices::Take& take,
        const LocalServices::Give& give)
    {
        if (command.words.empty() || !take()) {
            return false;
        }
        served += command.words.front();
        if (command.words.front() == "later") {
            given.push_back(give);
        } else {
            give({3, false, command.words.front() + output, "why"});
        }
        return true;
    }

    /// Hands a message over from another thread, as another process would.
    LocalReply handOverFromElsewhere(const std::string& message)
    {
        auto reply =
            std::async(std::launch::async, [&] { return handOver(folder.path(), message); });
        const auto isThere = [&] {
            return reply.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        };
        EXPECT_TRUE(QTest::qWaitFor(isThere, 10'000));
        return reply.get();
    }
    static std::string command(const std::string& word)
    {
        LocalCommand command;
        command.words = {word};
        return encodeMessage(command);
    }

    /// A caller that does as it likes.
    [[nodiscard]] Descriptor call() const
    {
        return connectLocally(folder.path(), localSocketName(folder.path())).socket;
    }
    static void say(const Descriptor& caller, const std::string& bytes)
    {
        EXPECT_EQ(send(caller.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
            static_cast<ssize_t>(bytes.size()));
    }
    /// Whether the other side hangs up, after whatever it says.
    bool isDropped(const Descriptor& caller)
    {
        heard.clear();
        std::string buffer(1 << 20, '\0');
        return QTest::qWaitFor([&] {
            const ssize_t count = recv(caller.number(), buffer.data(), buffer.size(), 0);
            heard.append(buffer, 0, count > 0 ? static_cast<std::size_t>(count) : 0);
            return count == 0;
        });
    }

    KestryCore::TemporaryDirectory folder;
    KestryCore::EnvironmentVariable runtime{"XDG_RUNTIME_DIR", folder.path()};
    std::optional<LocalServer> server;
    std::string served;
    std::string output;
    std::string heard; ///< By the caller that was dropped last.
    std::vector<LocalActivation> activations;
    std::vector<LocalServices::Give> given; ///< With which those that wait are answered.
};

TEST_F(LocalServerTest, ACommandIsCarriedOutAndAnswered)
{
    const LocalReply reply = handOverFromElsewhere(command("a"));
    EXPECT_EQ(reply.outcome, LocalReply::Outcome::answered);
    EXPECT_EQ(reply.answer, (LocalAnswer{3, false, "a", "why"}));
    EXPECT_EQ(served, "a");
}

TEST_F(LocalServerTest, WhatIsNotForItIsDeclined)
{
    EXPECT_EQ(handOverFromElsewhere(encodeMessage(LocalCommand{})).outcome,
        LocalReply::Outcome::declined);
}

TEST_F(LocalServerTest, AnActivationIsAnsweredAndThenCarriedOut)
{
    const LocalActivation activation{{"kestry://update"}, "token"};
    EXPECT_EQ(
        handOverFromElsewhere(encodeMessage(activation)).outcome, LocalReply::Outcome::answered);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !activations.empty(); }));
    EXPECT_EQ(activations, std::vector{activation});
}

TEST_F(LocalServerTest, AnActivationMayEndTheServer)
{
    const LocalActivation activation;
    LocalServices services;
    services.activate = [this](const auto&) {
        server->close();
        served = "ended";
    };
    server.reset();
    server.emplace(std::move(services));
    server->listen(*ListeningSocket::open(folder.path(), localSocketName(folder.path())));
    (void)handOverFromElsewhere(encodeMessage(activation));
    EXPECT_TRUE(QTest::qWaitFor([&] { return served == "ended"; }));
    EXPECT_FALSE(call());
}

TEST_F(LocalServerTest, WhatIsNoMessageIsDroppedAtOnce)
{
    std::string hostile = command("a");
    hostile[hostile.size() - 1] = '\x7F';
    for (const std::string& bytes :
        {std::string("GET / HTTP/1.1\r\n"), std::string("KST3C\xFF\xFF\xFF\xFF"), hostile,
            encodeMessage(LocalMessageKind::taken), encodeMessage(LocalAnswer{})}) {
        const Descriptor caller = call();
        say(caller, bytes);
        EXPECT_TRUE(isDropped(caller));
    }
    EXPECT_EQ(served, "");
}

TEST_F(LocalServerTest, SilentCallersHoldUpNobodyAndAreDropped)
{
    start({.forRequest = 0.2, .forAnswer = 5});
    const Descriptor silent = call();
    const Descriptor slow = call();
    say(slow, command("slow").substr(0, 9));
    EXPECT_EQ(handOverFromElsewhere(command("a")).outcome, LocalReply::Outcome::answered);
    EXPECT_TRUE(isDropped(silent));
    EXPECT_TRUE(isDropped(slow));
    EXPECT_EQ(served, "a");
}

TEST_F(LocalServerTest, ACallerThatDoesNotTakeItsAnswerIsDropped)
{
    start({.forRequest = 5, .forAnswer = 0.2});
    output.assign(20'000'000, 'x');
    const Descriptor caller = call();
    say(caller, command("long"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return served == "long"; }));
    QTest::qWait(400);
    EXPECT_EQ(handOverFromElsewhere(command("a")).answer.status, 3);
    EXPECT_TRUE(isDropped(caller));
    EXPECT_LT(heard.size(), output.size());
}

TEST_F(LocalServerTest, ALongAnswerArrivesWhole)
{
    output.assign(20'000'000, 'x');
    EXPECT_EQ(handOverFromElsewhere(command("a")).answer.output, "a" + output);
}

TEST_F(LocalServerTest, ACommandWhoseCallerHasGoneIsNotCarriedOut)
{
    {
        const Descriptor caller = call();
        say(caller, command("gone"));
    }
    QTest::qWait(50);
    EXPECT_EQ(served, "");
}

TEST_F(LocalServerTest, MoreCallersThanItTakesWaitForTheirTurn)
{
    start({.forRequest = 0.3, .forAnswer = 5});
    std::vector<Descriptor> silent(LocalServer::mostCallers + 4);
    for (Descriptor& each : silent) {
        each = call();
    }
    EXPECT_EQ(handOverFromElsewhere(command("a")).outcome, LocalReply::Outcome::answered);
}

TEST_F(LocalServerTest, InACrowdWhoeverIsSlowMakesRoomAtOnce)
{
    constexpr double patience = 30;
    start({.forRequest = patience, .forAnswer = patience, .inCrowd = 0.1});
    output.assign(20'000'000, 'x');
    std::vector<Descriptor> slow(2 * LocalServer::mostCallers);
    for (std::size_t index = 0; index < slow.size(); ++index) {
        slow[index] = call();
        say(slow[index], index % 2 == 0 ? command("x") : command("x").substr(0, 9));
    }
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(handOverFromElsewhere(command("a")).outcome, LocalReply::Outcome::answered);
    // Well before the patience with anybody of the crowd is at its end, on a busy machine too.
    EXPECT_LT(
        std::chrono::steady_clock::now() - before, std::chrono::duration<double>(patience / 2));
}

TEST_F(LocalServerTest, AnAnswerMayComeLongAfterTheCommand)
{
    start({.forRequest = 0.1, .forAnswer = 5, .inCrowd = 0.05, .untilSign = 0.1});
    const Descriptor caller = call();
    say(caller, command("later"));
    QTest::qWait(350);
    ASSERT_EQ(given.size(), 1U);
    given.front()({0, true, "done at last", ""});
    given.front()({0, true, "twice", ""});
    EXPECT_TRUE(isDropped(caller));
    const std::string sign = encodeMessage(LocalMessageKind::taken);
    EXPECT_TRUE(heard.starts_with(sign + sign));
    EXPECT_TRUE(heard.ends_with(encodeMessage(LocalAnswer{0, true, "done at last", ""})));
}

TEST_F(LocalServerTest, OthersAreServedWhileACommandIsCarriedOut)
{
    start({.forRequest = 0.3, .forAnswer = 5, .inCrowd = 0.1});
    const Descriptor waiting = call();
    say(waiting, command("later"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !given.empty(); }));
    std::vector<Descriptor> silent(LocalServer::mostCallers + 4);
    for (Descriptor& each : silent) {
        each = call();
    }
    EXPECT_EQ(handOverFromElsewhere(command("a")).outcome, LocalReply::Outcome::answered);
    given.front()({0, true, "done", ""});
    EXPECT_TRUE(isDropped(waiting));
    EXPECT_TRUE(heard.ends_with(encodeMessage(LocalAnswer{0, true, "done", ""})));
}

TEST_F(LocalServerTest, ACallerThatGoesWhileItsCommandIsCarriedOutLeavesItsPlace)
{
    start({.forRequest = 5, .forAnswer = 5, .inCrowd = 5, .untilSign = 0.05});
    {
        std::vector<Descriptor> going(LocalServer::mostCallers);
        for (Descriptor& each : going) {
            each = call();
            say(each, command("later"));
        }
        const auto allWait = [&] { return given.size() == LocalServer::mostCallers; };
        EXPECT_TRUE(QTest::qWaitFor(allWait));
    }
    EXPECT_EQ(handOverFromElsewhere(command("a")).outcome, LocalReply::Outcome::answered);
    given.front()({0, true, "to nobody", ""});
}

TEST_F(LocalServerTest, AnAnswerMayComeWhenTheServerHasGone)
{
    const Descriptor caller = call();
    say(caller, command("later"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return !given.empty(); }));
    server.reset();
    given.front()({0, true, "too late", ""});
    EXPECT_TRUE(isDropped(caller));
    EXPECT_EQ(heard, encodeMessage(LocalMessageKind::taken));
}

TEST_F(LocalServerTest, OneCallerHasOneRequest)
{
    const Descriptor caller = call();
    say(caller, command("a") + command("b"));
    EXPECT_TRUE(isDropped(caller));
    EXPECT_EQ(served, "a");
}

} // namespace
} // namespace Kestry
