#include "CouchEarlyFeed.h"

#include "CouchFixture.h"

namespace Kestry {
namespace {

using namespace KestryCore;
using Texts = std::map<std::string, std::string>;

/// A device that has read all there was, and then another has saved a record.
class CouchEarlyFeedTest : public CouchFixture {
protected:
    CouchEarlyFeedTest()
    {
        limits.lookSeconds = 20.0;
        restart(two);
        first = changes(two).cursor;
        (void)saved(one, record("a"));
        cursor = changes(two, first).cursor;
        (void)saved(one, record("b"));
        server.requests.clear();
    }
    void lookAtZone() { run(two.store().fetchZone(zone)); }

    CloudCursor first;
    CloudCursor cursor;
};

TEST_F(CouchEarlyFeedTest, TheFeedIsAskedForWhileTheZoneIsLookedAt)
{
    server.failNext("/_all_docs", {.kind = Kind::lateAnswer, .milliseconds = 200});
    lookAtZone();
    EXPECT_EQ(server.times("/_changes"), 1);
    EXPECT_EQ(texts(changes(two, cursor)), (Texts{{"b", "text"}}));
    EXPECT_EQ(server.times("/_changes"), 1);
    EXPECT_EQ(server.times("/_all_docs"), 2) << "the zone and the body";
}

TEST_F(CouchEarlyFeedTest, WhoReadsOnFromAnotherPlaceAsksAnew)
{
    lookAtZone();
    EXPECT_EQ(texts(changes(two, first)), (Texts{{"a", "text"}, {"b", "text"}}));
}

TEST_F(CouchEarlyFeedTest, ItServesOneReading)
{
    lookAtZone();
    const CloudCursor next = changes(two, cursor).cursor;
    (void)saved(one, record("c"));
    EXPECT_EQ(texts(changes(two, next)), (Texts{{"c", "text"}}));
}

TEST_F(CouchEarlyFeedTest, ADatabaseThatCameMeanwhileIsAskedAgain)
{
    failNext("/_changes", {404, R"({"error":"not_found","reason":"Database does not exist."})"});
    lookAtZone();
    EXPECT_EQ(texts(changes(two, cursor)), (Texts{{"b", "text"}}));
}

TEST_F(CouchEarlyFeedTest, AnotherFailureIsThatOfTheReading)
{
    failNext("/_changes", {503, "{}"});
    lookAtZone();
    EXPECT_EQ(failureOf(two.store().changes(zone, cursor)).code(), CloudErrorCode::other);
    EXPECT_EQ(server.times("/_changes"), 1);
}

TEST_F(CouchEarlyFeedTest, NothingIsDoneWithItWhenTheStoreIsAnother)
{
    server.removeDatabase(hours);
    server.createDatabase(hours);
    restart(one);
    run(one.store().createZone(zone));
    lookAtZone();
    EXPECT_EQ(failureOf(two.store().changes(zone, cursor)).code(), CloudErrorCode::storeReplaced);
}

TEST_F(CouchEarlyFeedTest, AFirstReadingAsksForNothingEarly)
{
    restart(two);
    lookAtZone();
    EXPECT_EQ(server.times("/_changes"), 0);
}

} // namespace
} // namespace Kestry
