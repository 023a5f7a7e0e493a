#include "UpdateDownload.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTimer>

#include <fstream>

#include "AppcastFeed.h"
#include "AwaitedUpdate.h"
#include "MemoryFileSystem.h"
#include "QtScheduler.h"
#include "SecureServer.h"
#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

using namespace KestryCore;
using ::testing::HasSubstr;
using ::testing::Not;

const std::string unreachable = "The update server can't be reached. Try again later.";
const std::string tooSlow = "The update server takes too long to answer.";
const std::string insecure = "The update server leads to a connection that isn't secure.";

class UpdateDownloadTest : public testing::Test {
protected:
    UpdateDownloadTest()
    {
        std::ofstream(directory.path("ca.pem")) << testCertificate;
        files.limitWrites(std::size_t{1} << 20U);
    }

    std::string feed(const std::string& url)
    {
        UpdateDownload download(scheduler, files, limits, directory.path("ca.pem"));
        AwaitedUpdate awaited(scheduler);
        awaited.start(keep(download.feed(url)));
        return awaited.words();
    }
    std::string archive(const std::string& path, std::int64_t bytes)
    {
        UpdateDownload download(scheduler, files, limits, directory.path("ca.pem"));
        AwaitedUpdate awaited(scheduler);
        awaited.start(download.archive(request(path, bytes)));
        return awaited.words();
    }
    ArchiveRequest request(const std::string& path, std::int64_t bytes)
    {
        return {server.url(path), "/home/archive", bytes,
            [this](std::int64_t received) { progress.push_back(received); }};
    }
    /// Says one byte after another for as long as anybody listens.
    void drip(const std::string& path)
    {
        server.answers[path] = [](QTcpSocket& socket) {
            socket.write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
            auto* const timer = new QTimer(&socket);
            QObject::connect(timer, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
            timer->start(20);
        };
    }
    void expectNothingLeft() { EXPECT_FALSE(files.content("/home/archive")); }

    TemporaryDirectory directory;
    QtScheduler scheduler;
    MemoryFileSystem files;
    SecureServer server;
    DownloadLimits limits{.feedSeconds = 10.0, .archiveSeconds = 10.0};
    std::vector<std::int64_t> progress;
    std::string fed;

    Task<void> keep(Task<std::string> task)
    {
        std::string bytes = co_await task;
        fed = std::move(bytes);
    }
};

TEST_F(UpdateDownloadTest, AFeedIsFetched)
{
    server.serve("/feed", "<rss/>");
    EXPECT_EQ(feed(server.url("/feed")), "(accepted)");
    EXPECT_EQ(fed, "<rss/>");
}

TEST_F(UpdateDownloadTest, AnArchiveIsWrittenToItsFileAndToldOf)
{
    const std::string bytes(300'000, 'a');
    server.serve("/archive", bytes);
    EXPECT_EQ(archive("/archive", 300'000), "(accepted)");
    EXPECT_EQ(files.content("/home/archive"), bytes);
    EXPECT_EQ(progress.back(), 300'000);
    EXPECT_EQ(files.openHandles(), 0u);
}

TEST_F(UpdateDownloadTest, ARequestTellsNobodyFromAnother)
{
    server.say("/feed",
        "HTTP/1.1 200 OK\r\nSet-Cookie: who=you\r\nETag: \"you\"\r\nContent-Length: 1\r\n\r\nx");
    UpdateDownload download(scheduler, files, limits, directory.path("ca.pem"));
    for (int time = 0; time < 2; ++time) {
        AwaitedUpdate awaited(scheduler);
        awaited.start(keep(download.feed(server.url("/feed"))));
        ASSERT_EQ(awaited.words(), "(accepted)");
    }
    EXPECT_EQ(server.requests.at(0), server.requests.at(1));
    EXPECT_THAT(server.requests.at(0), HasSubstr("User-Agent: Kestry\r\n"));
    EXPECT_THAT(server.requests.at(0), HasSubstr("Accept-Language: en\r\n"));
    EXPECT_THAT(server.requests.at(0), HasSubstr("Accept-Encoding: identity\r\n"));
    for (const char* header : {"ookie", "Referer", "Authorization", "If-None-Match", "Qt"}) {
        EXPECT_THAT(server.requests.at(1), Not(HasSubstr(header)));
    }
}

TEST_F(UpdateDownloadTest, ACertificateThatIsNotTrustedIsRefused)
{
    server.serve("/feed", "<rss/>");
    UpdateDownload download(scheduler, files, limits);
    AwaitedUpdate awaited(scheduler);
    awaited.start(keep(download.feed(server.url("/feed"))));
    EXPECT_EQ(awaited.words(), "The update server's certificate isn't trusted.");
    EXPECT_TRUE(server.requests.empty());
}

TEST_F(UpdateDownloadTest, AnAddressThatIsNotSecureIsNotAsked)
{
    for (const char* url : {"http://127.0.0.1:1/feed", "file:///etc/passwd", "feed", ""}) {
        EXPECT_EQ(feed(url), insecure) << url;
    }
}

TEST_F(UpdateDownloadTest, RedirectsAreFollowedToSecureAddresses)
{
    for (const char* status : {"301", "302", "303", "307", "308"}) {
        server.redirect("/feed", server.url("/next"), status);
        server.redirect("/next", "../there?a=b", status);
        server.serve("/there?a=b", status);
        EXPECT_EQ(feed(server.url("/feed")), "(accepted)");
        EXPECT_EQ(fed, status) << "and nothing of what the redirects say";
    }
}

TEST_F(UpdateDownloadTest, ARedirectToAnythingElseIsRefused)
{
    for (const char* to : {"http://127.0.0.1:1/", "ftp://example.org/", "file:///etc/passwd",
             "https://user@example.org/", "https:///", "data:,x", ""}) {
        server.redirect("/feed", to);
        EXPECT_EQ(feed(server.url("/feed")), insecure) << to;
    }
    server.redirect("/archive", "http://127.0.0.1:1/");
    EXPECT_EQ(archive("/archive", 5), insecure);
    expectNothingLeft();
}

TEST_F(UpdateDownloadTest, RedirectsInACircleEnd)
{
    server.redirect("/feed", "/feed");
    EXPECT_EQ(feed(server.url("/feed")),
        "The update server leads from one address to another without end.");
    EXPECT_EQ(server.requests.size(), 6u);
}

TEST_F(UpdateDownloadTest, AnErrorIsToldWithItsNumber)
{
    for (const std::string status : {"404", "401", "500", "503", "204", "206", "304"}) {
        server.say("/feed", "HTTP/1.1 " + status + " No\r\nContent-Length: 0\r\n\r\n");
        EXPECT_EQ(feed(server.url("/feed")),
            "The update server answers with an error (" + status + "). Try again later.");
    }
}

TEST_F(UpdateDownloadTest, AnAnswerThatIsCutOffIsNone)
{
    server.say("/archive", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nabc", true);
    EXPECT_EQ(archive("/archive", 1000), unreachable);
    expectNothingLeft();
}

TEST_F(UpdateDownloadTest, ALargerArchiveThanAnnouncedIsBrokenOff)
{
    server.serve("/archive", std::string(1001, 'a'));
    EXPECT_EQ(
        archive("/archive", 1000), "The new version was refused: it is larger than announced.");
    expectNothingLeft();
}

TEST_F(UpdateDownloadTest, ASmallerArchiveThanAnnouncedIsRefused)
{
    server.serve("/archive", std::string(999, 'a'));
    EXPECT_EQ(
        archive("/archive", 1000), "The new version was refused: it is smaller than announced.");
    expectNothingLeft();
}

TEST_F(UpdateDownloadTest, AnEndlessAnswerIsBrokenOff)
{
    server.answers["/endless"] = [](QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\n\r\n");
        auto* const timer = new QTimer(&socket);
        QObject::connect(timer, &QTimer::timeout, &socket, [&socket] {
            if (socket.bytesToWrite() < 200'000) {
                socket.write(QByteArray(65'536, 'x'));
            }
        });
        timer->start(1);
    };
    EXPECT_EQ(feed(server.url("/endless")), "The list of new versions could not be read.");
    EXPECT_EQ(archive("/endless", 2'000'000),
        "The new version was refused: it is larger than announced.");
    expectNothingLeft();
}

TEST_F(UpdateDownloadTest, AFeedOfExactlyTheMostBytesIsTaken)
{
    server.serve("/feed", std::string(maximumAppcastBytes, ' '));
    EXPECT_EQ(feed(server.url("/feed")), "(accepted)");
    EXPECT_EQ(fed.size(), maximumAppcastBytes);
}

TEST_F(UpdateDownloadTest, AServerThatIsSilentOrDripsRunsOutOfTime)
{
    limits.feedSeconds = limits.archiveSeconds = 0.3;
    server.answers["/silent"] = [](QTcpSocket&) {};
    drip("/drip");
    EXPECT_EQ(feed(server.url("/silent")), tooSlow);
    EXPECT_EQ(archive("/drip", 100'000), tooSlow);
    expectNothingLeft();
}

TEST_F(UpdateDownloadTest, AServerThatLetsALongTimePassBetweenBytesRunsOutOfTime)
{
    limits.silenceSeconds = 0.2;
    server.answers["/silent"] = [](QTcpSocket&) {};
    EXPECT_EQ(feed(server.url("/silent")), tooSlow);
}

TEST_F(UpdateDownloadTest, TheTimeIsForAllRedirectsTogether)
{
    limits.feedSeconds = 0.5;
    server.answers["/feed"] = [this](QTcpSocket& socket) {
        QTimer::singleShot(200, &socket, [this, &socket] {
            const std::string answer = "HTTP/1.1 302 Found\r\nLocation: " + server.url("/feed")
                + "\r\nContent-Length: 0\r\n\r\n";
            socket.write(QByteArray::fromStdString(answer));
        });
    };
    EXPECT_EQ(feed(server.url("/feed")), tooSlow);
}

TEST_F(UpdateDownloadTest, AClosedPortIsUnreachable)
{
    EXPECT_EQ(feed("https://127.0.0.1:1/"), unreachable);
}

TEST_F(UpdateDownloadTest, AFullDiskEndsADownloadAndLeavesNothing)
{
    server.serve("/archive", std::string(1000, 'a'));
    files.failCalls("/home/archive written to", ENOSPC);
    EXPECT_EQ(
        archive("/archive", 1000), "archive could not be written to: No space left on device.");
    files.heal();
    expectNothingLeft();
    EXPECT_EQ(files.openHandles(), 0u);
}

TEST_F(UpdateDownloadTest, ADiskThatFailsAtTheEndLeavesNothing)
{
    server.serve("/archive", std::string(1000, 'a'));
    files.failCalls("/home/archive closed", EIO);
    EXPECT_NE(archive("/archive", 1000), "(accepted)");
    files.heal();
    expectNothingLeft();
}

TEST_F(UpdateDownloadTest, ADownloadThatIsLetGoBreaksOffAndLeavesNothing)
{
    drip("/drip");
    UpdateDownload download(scheduler, files, limits, directory.path("ca.pem"));
    {
        AwaitedUpdate awaited(scheduler);
        awaited.start(download.archive(request("/drip", 100'000)));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !progress.empty(); }));
        EXPECT_TRUE(files.content("/home/archive"));
    }
    expectNothingLeft();
    EXPECT_EQ(files.openHandles(), 0u);
}

} // namespace
} // namespace Kestry
