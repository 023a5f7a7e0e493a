#include "HttpClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTimer>

#include "Awaited.h"
#include "QtScheduler.h"
#include "RawServer.h"
#include "TestCertificate.h"

namespace Kestry {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class HttpClientTest : public ::testing::Test {
protected:
    HttpAnswer get(const std::string& path = "/") { return send({.url = server.url(path)}); }
    HttpAnswer post(const std::string& body)
    {
        return send({.method = "POST", .url = server.url(), .body = body});
    }
    HttpAnswer send(HttpRequest request)
    {
        request.seconds = seconds;
        return await(scheduler, client.send(std::move(request)));
    }
    /// Which failure a request ends with; none has this number.
    template <class Ask>
    int failureOf(const Ask& ask)
    {
        try {
            ask();
        } catch (const HttpFailure& failure) {
            words = failure.what();
            return static_cast<int>(failure.kind());
        }
        return -1;
    }
    static constexpr int unreachable = static_cast<int>(HttpFailureKind::unreachable);
    static constexpr int timedOut = static_cast<int>(HttpFailureKind::timedOut);
    static constexpr int tooLong = static_cast<int>(HttpFailureKind::tooLong);

    double seconds = 5.0;
    std::string words;
    QtScheduler scheduler;
    RawServer server;
    HttpClient client{scheduler, "Kestry-test/1"};
};

TEST_F(HttpClientTest, AnAnswerHasStatusHeadersAndBody)
{
    server.say(RawServer::plain("201 Created", "{\"ok\":true}", "X-Some-Thing: yes\r\n"));
    const HttpAnswer answer = post("{}");
    EXPECT_EQ(answer.status, 201);
    EXPECT_EQ(answer.headers.at("x-some-thing"), "yes");
    EXPECT_EQ(answer.body, "{\"ok\":true}");
}

TEST_F(HttpClientTest, ARequestSaysWhoSendsItAndWantsNothingPacked)
{
    server.say(RawServer::plain("200 OK", ""));
    send({.method = "POST",
        .url = server.url("/a/b%2Fc?d=e"),
        .body = "[1]",
        .authorization = "Basic eDp5"});
    const std::string& request = server.requests.at(0);
    EXPECT_THAT(request, ::testing::StartsWith("POST /a/b%2Fc?d=e HTTP/1.1\r\n"));
    EXPECT_THAT(request, HasSubstr("User-Agent: Kestry-test/1\r\n"));
    EXPECT_THAT(request, HasSubstr("Accept-Encoding: identity\r\n"));
    EXPECT_THAT(request, HasSubstr("Content-Type: application/json\r\n"));
    EXPECT_THAT(request, HasSubstr("Authorization: Basic eDp5\r\n"));
    EXPECT_THAT(request, ::testing::EndsWith("\r\n\r\n[1]"));
}

TEST_F(HttpClientTest, ARefusalIsAnAnswerWithItsBody)
{
    for (const std::string status :
        {"400", "401", "403", "404", "409", "412", "413", "429", "500", "503", "507"}) {
        server.say(RawServer::plain(status + " Refused", "{\"error\":\"" + status + "\"}"));
        EXPECT_EQ(std::to_string(get().status), status);
        const HttpAnswer answer = post("{}");
        EXPECT_EQ(std::to_string(answer.status), status);
        EXPECT_EQ(answer.body, "{\"error\":\"" + status + "\"}");
    }
}

TEST_F(HttpClientTest, ABodyIsNeverSentTwice)
{
    server.answer = [](QTcpSocket& socket) { socket.disconnectFromHost(); };
    EXPECT_EQ(failureOf([&] { post("{\"once\":true}"); }), unreachable);
    EXPECT_EQ(server.requests.size(), 1U);
}

TEST_F(HttpClientTest, ABodyIsNotSentTwiceOnAConnectionThatWasInUse)
{
    server.say(RawServer::plain("200 OK", "a"));
    post("{}");
    server.answer = [](QTcpSocket& socket) { socket.disconnectFromHost(); };
    EXPECT_EQ(failureOf([&] { post("{\"once\":true}"); }), unreachable);
    EXPECT_EQ(server.requests.size(), 2U);
}

TEST_F(HttpClientTest, ALargeBodyArrivesWhole)
{
    server.say(RawServer::plain("200 OK", ""));
    const std::string body(6'000'000, 'x');
    post(body);
    EXPECT_EQ(server.requests.at(0).substr(server.requests.at(0).size() - body.size()), body);
}

TEST_F(HttpClientTest, ARedirectIsNotFollowed)
{
    RawServer other;
    server.say(RawServer::plain("302 Found", "", "Location: " + other.url("/there") + "\r\n"));
    const HttpAnswer answer = send({.url = server.url(), .authorization = "Basic eDp5"});
    EXPECT_EQ(answer.status, 302);
    EXPECT_EQ(answer.headers.at("location"), other.url("/there"));
    EXPECT_TRUE(other.requests.empty());
}

TEST_F(HttpClientTest, CookiesAreNotKept)
{
    server.say(RawServer::plain("200 OK", "", "Set-Cookie: AuthSession=abc; Path=/\r\n"));
    get();
    get();
    EXPECT_THAT(server.requests.at(1), Not(HasSubstr("ookie")));
}

TEST_F(HttpClientTest, ACredentialIsNotKept)
{
    server.say(RawServer::plain("200 OK", ""));
    send({.url = server.url(), .authorization = "Basic eDp5"});
    server.say(RawServer::plain("401 No", "", "WWW-Authenticate: Basic realm=\"x\"\r\n"));
    EXPECT_EQ(get().status, 401);
    EXPECT_THAT(server.requests.back(), Not(HasSubstr("Authorization")));
}

TEST_F(HttpClientTest, AnAnswerThatIsCutShortIsNoAnswer)
{
    server.sayAndClose("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"rows\":[]}");
    EXPECT_EQ(failureOf([&] { get(); }), unreachable);
    server.sayAndClose("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5\r\n{\"a\":");
    EXPECT_EQ(failureOf([&] { post("{}"); }), unreachable);
}

TEST_F(HttpClientTest, ASilentServerRunsOutOfTime)
{
    seconds = 0.1;
    EXPECT_EQ(failureOf([&] { get(); }), timedOut);
}

TEST_F(HttpClientTest, AServerThatDripsRunsOutOfTime)
{
    seconds = 0.3;
    server.answer = [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
        auto* const drip = new QTimer(&socket);
        QObject::connect(drip, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
        drip->start(20);
    };
    EXPECT_EQ(failureOf([&] { get(); }), timedOut);
}

TEST_F(HttpClientTest, AnEndlessAnswerIsBrokenOff)
{
    server.answer = [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket,
            [&socket] { socket.write(QByteArray(65'536, 'x')); });
    };
    EXPECT_EQ(failureOf([&] { send({.url = server.url(), .mostBytes = 1'000'000}); }), tooLong);
}

TEST_F(HttpClientTest, AnAnswerOfExactlyTheAllowedLengthIsTaken)
{
    server.say(RawServer::plain("200 OK", std::string(1000, 'x')));
    EXPECT_EQ(send({.url = server.url(), .mostBytes = 1000}).body.size(), 1000U);
    EXPECT_EQ(failureOf([&] { send({.url = server.url(), .mostBytes = 999}); }), tooLong);
}

TEST_F(HttpClientTest, AnUnknownHostAndAClosedPortAreUnreachable)
{
    EXPECT_EQ(failureOf([&] { send({.url = "http://127.0.0.1:1/"}); }), unreachable);
    EXPECT_EQ(failureOf([&] { send({.url = "http://nowhere.invalid/"}); }), unreachable);
}

TEST_F(HttpClientTest, NoFailureTellsTheCredential)
{
    server.answer = [](QTcpSocket& socket) { socket.disconnectFromHost(); };
    failureOf([&] {
        send({.method = "POST",
            .url = server.url(),
            .body = "{}",
            .authorization = "Basic c2VjcmV0"});
    });
    EXPECT_THAT(words, Not(HasSubstr("c2VjcmV0")));
    EXPECT_THAT(words, Not(HasSubstr("secret")));
}

TEST_F(HttpClientTest, AServerThatSpeaksNoHttpIsUnreachable)
{
    server.sayAndClose("220 mail.example.org ESMTP\r\n");
    EXPECT_EQ(failureOf([&] { get(); }), unreachable);
}

TEST_F(HttpClientTest, ACertificateThatTheSystemDoesNotTrustIsRefused)
{
    QSslServer secure;
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate(testCertificate));
    configuration.setPrivateKey(QSslKey(testKey, QSsl::Ec));
    secure.setSslConfiguration(configuration);
    ASSERT_TRUE(secure.listen(QHostAddress::LocalHost));
    const std::string url = "https://127.0.0.1:" + std::to_string(secure.serverPort()) + "/";
    EXPECT_EQ(failureOf([&] { send({.url = url, .authorization = "Basic eDp5"}); }),
        static_cast<int>(HttpFailureKind::notTrusted));
    EXPECT_FALSE(secure.hasPendingConnections()) << "nothing was said before the refusal";
}

TEST_F(HttpClientTest, ATaskThatIsLetGoBreaksOff)
{
    const auto isClosed = std::make_shared<bool>(false);
    server.answer = [isClosed](QTcpSocket& socket) {
        QObject::connect(
            &socket, &QTcpSocket::disconnected, &socket, [isClosed] { *isClosed = true; });
    };
    {
        Awaited<HttpAnswer> waiting(scheduler);
        waiting.start(client.send({.method = "POST", .url = server.url(), .body = "{}"}));
        ASSERT_TRUE(QTest::qWaitFor([&] { return server.requests.size() == 1; }));
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return *isClosed; }));
}

} // namespace
} // namespace Kestry
