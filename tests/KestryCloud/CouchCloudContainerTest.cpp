#include "CouchCloudContainer.h"

#include <QJsonDocument>

#include "CouchFixture.h"

namespace Kestry {
namespace {

using namespace KestryCore;
using ::testing::HasSubstr;
using ::testing::Not;

class CouchCloudContainerTest : public CouchFixture {
protected:
    /// The device starts anew, with an address as the user enters it.
    void restartAt(const std::string& path)
    {
        one.container =
            std::make_unique<CouchCloudContainer>(CouchAddress::parse(server.url() + path, user),
                CouchAccount{user, password}, CouchPlatform{scheduler});
    }
    std::string words() { return failureOf(one.container->isAccountAvailable()).what(); }
    std::string wordsOfChanges(DoubleFault fault)
    {
        server.failNext("/_changes", fault);
        return failureOf(one.store().changes(zone, std::nullopt)).what();
    }
};

TEST_F(CouchCloudContainerTest, AnAccountIsTheUserOnThisServer)
{
    EXPECT_TRUE(run(one.container->isAccountAvailable()));
    EXPECT_EQ(run(one.container->userRecordName()), "anna@0123456789abcdef0123456789abcdef");
}

TEST_F(CouchCloudContainerTest, WithNoUserThereIsNoAccountAndNothingIsAsked)
{
    user.clear();
    restart(one);
    EXPECT_FALSE(run(one.container->isAccountAvailable()));
    EXPECT_TRUE(server.requests.empty());
}

TEST_F(CouchCloudContainerTest, NamesAndPasswordsAreInAnyScript)
{
    user = "jürgen🎈";
    password = "Öffne dich: رسائل";
    server.passwords[user] = password;
    restartAt("");
    EXPECT_EQ(run(one.container->userRecordName()), user + "@0123456789abcdef0123456789abcdef");
    run(one.store().createZone(zone));
    EXPECT_TRUE(changes(one).modifications.empty());
}

TEST_F(CouchCloudContainerTest, AWrongPasswordIsToldAndNotSentAgain)
{
    password = "wrong";
    restart(one);
    EXPECT_THAT(words(), HasSubstr("did not accept the user name or the password"));
    const std::size_t asked = server.requests.size();
    EXPECT_THAT(words(), HasSubstr("did not accept the user name or the password"));
    EXPECT_EQ(server.requests.size(), asked);
}

TEST_F(CouchCloudContainerTest, ALockedAccountIsToldAndLeftAlone)
{
    failNext(
        "/_session", {403, R"({"error":"forbidden","reason":"Account is temporarily locked"})"});
    restart(one);
    EXPECT_THAT(words(), HasSubstr("locked your account"));
    EXPECT_THAT(words(), HasSubstr("locked your account"));
    EXPECT_EQ(server.times("/_session"), 1);
}

TEST_F(CouchCloudContainerTest, AServerThatTakesTheUserForAStrangerRefusesHim)
{
    restart(one);
    server.session = "nobody";
    EXPECT_THAT(words(), HasSubstr("did not accept"));
    restart(one);
    server.session = "berta";
    EXPECT_THAT(words(), HasSubstr("did not accept"));
}

TEST_F(CouchCloudContainerTest, AnAccountThatWasJustProvedIsNotAskedForAgain)
{
    (void)run(one.container->userRecordName());
    server.requests.clear();
    EXPECT_TRUE(run(one.container->isAccountAvailable()));
    (void)changes(one);
    EXPECT_TRUE(run(one.container->isAccountAvailable()));
    EXPECT_EQ(server.times("/_session"), 0);
}

TEST_F(CouchCloudContainerTest, AfterARefusalTheAccountIsAskedForAnew)
{
    (void)run(one.container->userRecordName());
    server.passwords["anna"] = "new";
    EXPECT_THAT(
        failureOf(one.store().changes(zone, std::nullopt)).what(), HasSubstr("did not accept"));
    EXPECT_THAT(words(), HasSubstr("did not accept"));
}

TEST_F(CouchCloudContainerTest, AnotherServerAtTheAddressIsAnotherAccount)
{
    const std::string name = run(one.container->userRecordName());
    server.identity = "another";
    server.setReachable(false);
    (void)failureOf(one.store().changes(zone, std::nullopt));
    server.setReachable(true);
    EXPECT_NE(run(one.container->userRecordName()), name);
}

TEST_F(CouchCloudContainerTest, NoSessionOfTheServerIsUsed)
{
    server.fault = [](const DoubleRequest&) -> std::optional<DoubleFault> { return std::nullopt; };
    server.failNext("/_session",
        {.kind = Kind::answer,
            .answer = {200, R"({"userCtx":{"name":"anna"}})",
                "Set-Cookie: AuthSession=stale; Path=/\r\n"}});
    restart(one);
    (void)run(one.container->userRecordName());
    (void)changes(one);
    for (const DoubleRequest& request : server.requests) {
        EXPECT_FALSE(request.headers.contains("cookie"));
        EXPECT_TRUE(request.headers.contains("authorization"));
    }
}

TEST_F(CouchCloudContainerTest, WhatIsNoCouchServerIsToldSo)
{
    failNext("/", {200, "<html>Welcome to nginx</html>"});
    restart(one);
    EXPECT_THAT(words(), HasSubstr("no CouchDB server at this address"));
    failNext("/", {404, "not here"});
    EXPECT_THAT(words(), HasSubstr("no CouchDB server at this address"));
    failNext("/", {200, R"({"couchdb":"Welcome","version":"1.6.1"})"});
    EXPECT_THAT(words(), HasSubstr("too old"));
}

TEST_F(CouchCloudContainerTest, ASlashAfterTheDatabaseIsToldWhereNothingIsFound)
{
    restartAt("/hours/");
    EXPECT_THAT(words(), HasSubstr("no CouchDB server at this address"));
    EXPECT_THAT(words(), HasSubstr("leave out the slash: " + server.url() + "/hours"));
    failNext("/hours/", {200, R"({"db_name":"hours"})"});
    EXPECT_THAT(words(), HasSubstr("leave out the slash"));
    failNext("/userdb-616e6e61", {401, "{}"});
    const std::string said = failureOf(one.store().createZone(zone)).what();
    EXPECT_THAT(said, HasSubstr("does not let you make a database"));
    EXPECT_THAT(said, HasSubstr("leave out the slash"));
}

TEST_F(CouchCloudContainerTest, EachFailureOfTheServerHasWords)
{
    const auto answered = [](int status, const std::string& body = "{}") {
        return DoubleFault{.kind = Kind::answer, .answer = {status, body}};
    };
    EXPECT_THAT(wordsOfChanges(answered(403)), HasSubstr("does not let you use"));
    EXPECT_THAT(wordsOfChanges(answered(429)), HasSubstr("busy"));
    EXPECT_THAT(wordsOfChanges(answered(500)), HasSubstr("failed (500)"));
    EXPECT_THAT(wordsOfChanges(answered(503)), HasSubstr("busy"));
    EXPECT_THAT(wordsOfChanges(answered(507)), HasSubstr("full"));
    EXPECT_THAT(wordsOfChanges(answered(302)), HasSubstr("leads elsewhere"));
    EXPECT_THAT(wordsOfChanges(answered(200, "<html>")), HasSubstr("makes no sense"));
    EXPECT_THAT(wordsOfChanges(answered(200, R"({"results":7})")), HasSubstr("makes no sense"));
    EXPECT_THAT(wordsOfChanges({.kind = Kind::cutAnswer}), HasSubstr("cannot be reached"));
    EXPECT_TRUE(changes(one).modifications.empty()) << "and then it goes on";
}

TEST_F(CouchCloudContainerTest, AServerThatClosesEachConnectionCannotBeReached)
{
    server.fault = [](const DoubleRequest&) { return DoubleFault{.kind = Kind::loseRequest}; };
    EXPECT_THAT(words(), HasSubstr("cannot be reached"));
    EXPECT_THAT(
        failureOf(one.store().changes(zone, std::nullopt)).what(), HasSubstr("cannot be reached"));
}

TEST_F(CouchCloudContainerTest, AnAnswerWithoutEndIsBrokenOff)
{
    limits.answerBytes = 300'000;
    restart(one);
    // Once for each page size that is tried.
    server.fault = [](const DoubleRequest& request) -> std::optional<DoubleFault> {
        const bool isFeed = request.path.ends_with("/_changes");
        return isFeed ? std::optional(DoubleFault{.kind = Kind::endless}) : std::nullopt;
    };
    EXPECT_THAT(failureOf(one.store().changes(zone, std::nullopt)).what(), HasSubstr("too long"));
}

TEST_F(CouchCloudContainerTest, AnAnswerThatDripsRunsOutOfTime)
{
    limits.documentSeconds = 0.5;
    restart(one);
    EXPECT_THAT(wordsOfChanges({.kind = Kind::dripAnswer}), HasSubstr("did not answer in time"));
}

TEST_F(CouchCloudContainerTest, AnAnswerThatComesLateIsTaken)
{
    (void)saved(one, record("a"));
    server.failNext("/_changes", {.kind = Kind::lateAnswer, .milliseconds = 300});
    EXPECT_EQ(texts(changes(two)).size(), 1U);
}

TEST_F(CouchCloudContainerTest, NoFailureTellsThePassword)
{
    for (const int status : {400, 401, 403, 404, 413, 429, 500, 503, 507, 302}) {
        failNext("/_changes", {status, R"({"reason":"anna secret YW5uYTpzZWNyZXQ="})"});
        const std::string said = failureOf(one.store().changes(zone, std::nullopt)).what();
        EXPECT_THAT(said, Not(HasSubstr("secret")));
        EXPECT_THAT(said, Not(HasSubstr("YW5u")));
        restart(one);
    }
}

} // namespace
} // namespace Kestry
