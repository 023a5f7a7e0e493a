#include "CouchPull.h"

#include <QJsonDocument>

#include "CouchFixture.h"

namespace Kestry {
namespace {

using namespace KestryCore;
using ::testing::HasSubstr;
using Texts = std::map<std::string, std::string>;

class CouchPullTest : public CouchFixture { };

TEST_F(CouchPullTest, AnIdlePullAsksTwiceAndMovesNothing)
{
    (void)saved(one, record("a"));
    const CloudCursor cursor = changes(two).cursor;
    server.requests.clear();
    EXPECT_EQ(changes(two, cursor).cursor, cursor);
    EXPECT_EQ(server.requests.size(), 2U);
}

TEST_F(CouchPullTest, AnExchangeInWhichNothingHasChangedAsksTwice)
{
    limits.lookSeconds = 20.0;
    restart(two);
    (void)saved(one, record("a"));
    const CloudCursor cursor = changes(two).cursor;
    server.requests.clear();
    run(two.store().fetchZone(zone));
    EXPECT_EQ(changes(two, cursor).cursor, cursor);
    EXPECT_EQ(server.requests.size(), 2U) << "the zone and the feed";
    (void)changes(two, cursor);
    EXPECT_EQ(server.requests.size(), 4U) << "A look at the zone serves one reading.";
}

TEST_F(CouchPullTest, ALookAtTheZoneThatIsOldIsTakenAgain)
{
    const CloudCursor cursor = changes(two).cursor;
    run(two.store().fetchZone(zone));
    server.requests.clear();
    (void)changes(two, cursor);
    EXPECT_EQ(server.requests.size(), 2U);
}

TEST_F(CouchPullTest, ALookAtTheZoneDoesNotServeACursorThatKnowsMore)
{
    limits.lookSeconds = 20.0;
    const CloudCursor before = changes(two).cursor;
    (void)saved(one, record("a"));
    const CloudCursor after = changes(one, before).cursor;
    server.backUp();
    (void)saved(one, record("b"));
    const CloudCursor later = changes(one, after).cursor;
    server.restore();
    restart(two);
    run(two.store().fetchZone(zone));
    for (const auto code : {CloudErrorCode::other, CloudErrorCode::storeReplaced}) {
        EXPECT_EQ(failureOf(two.store().changes(zone, later)).code(), code);
    }
}

TEST_F(CouchPullTest, AServerThatSpellsTheSamePlaceInAnotherWayMovesNothing)
{
    (void)saved(one, record("a"));
    const CloudCursor cursor = changes(two).cursor;
    server.failNext("/_changes", {.kind = Kind::changeBody, .change = [](const std::string&) {
                                      return std::string(
                                          R"({"results":[],"last_seq":"9-other","pending":0})");
                                  }});
    EXPECT_EQ(changes(two, cursor).cursor, cursor);
}

TEST_F(CouchPullTest, RowsOutOfOrderAndRepeatedAreReadOnce)
{
    server.reversesRows = true;
    server.repeatsRows = true;
    (void)save(one, {record("a", "1"), record("b", "2"), record("c", "3")});
    const CloudChanges page = changes(two);
    EXPECT_EQ(texts(page), (Texts{{"a", "1"}, {"b", "2"}, {"c", "3"}}));
    EXPECT_EQ(page.modifications.size(), 3U);
}

TEST_F(CouchPullTest, ARowThatComesLateIsReadThen)
{
    const CloudCursor cursor = changes(two).cursor;
    server.late.insert(nameOf("a"));
    const CloudRecord first = saved(one, record("a", "late"));
    (void)saved(one, record("b", "at once"));
    const CloudChanges page = changes(two, cursor);
    EXPECT_EQ(texts(page), (Texts{{"b", "at once"}}));
    server.late.clear();
    (void)saved(one, changed(first, "later"));
    EXPECT_EQ(texts(changes(two, page.cursor)), (Texts{{"a", "later"}}));
}

TEST_F(CouchPullTest, AFeedThatGoesBackDoesNotBringAnOldVersionBack)
{
    const CloudRecord first = saved(one, record("a", "old"));
    (void)saved(one, changed(first, "new"));
    const CloudCursor cursor = changes(two).cursor;
    server.tellOldVersion(hours, nameOf("a"));
    EXPECT_EQ(texts(changes(two, cursor)), (Texts{{"a", "new"}}));
}

TEST_F(CouchPullTest, ABodyThatIsOlderThanItsRowIsReadAgain)
{
    const CloudRecord first = saved(one, record("a", "old"));
    const CloudCursor cursor = changes(two).cursor;
    (void)saved(one, changed(first, "new"));
    server.outdated[nameOf("a")] = 1;
    EXPECT_EQ(texts(changes(two, cursor)), (Texts{{"a", "new"}}));
}

TEST_F(CouchPullTest, ABodyThatStaysOlderThanItsRowIsNeitherTakenNorPassed)
{
    const CloudRecord first = saved(one, record("a", "old"));
    const CloudCursor cursor = changes(two).cursor;
    (void)saved(one, changed(first, "new"));
    server.outdated[nameOf("a")] = 2;
    EXPECT_EQ(std::string(failureOf(two.store().changes(zone, cursor)).what()),
        "The record store tells of a record and does not show it. Your local changes are saved and "
        "will retry.");
    EXPECT_EQ(texts(changes(two, cursor)), (Texts{{"a", "new"}}));
}

TEST_F(CouchPullTest, AnAnswerThatIsTooLongIsReadInSmallerPages)
{
    limits.answerBytes = 100'000;
    restart(two);
    Texts expected;
    for (int number = 0; number < 30; ++number) {
        const std::string name = std::to_string(number);
        expected[name] = std::string(10'000, 'x');
        (void)saved(one, record(name, expected[name]));
    }
    Texts found;
    CloudChanges page = changes(two);
    found.merge(texts(page));
    while (page.moreComing) {
        page = changes(two, page.cursor);
        found.merge(texts(page));
    }
    EXPECT_EQ(found, expected);
}

TEST_F(CouchPullTest, ManyLargeRecordsAfterTheFirstReadingComeInPagesToo)
{
    limits.answerBytes = 100'000;
    limits.pageBytes = 40'000;
    restart(two);
    CloudChanges page = changes(two);
    Texts expected;
    for (int number = 0; number < 30; ++number) {
        const std::string name = std::to_string(number);
        expected[name] = std::string(10'000, 'x');
        (void)saved(one, record(name, expected[name]));
    }
    Texts found;
    int pages = 0;
    do {
        page = changes(two, page.cursor);
        EXPECT_LE(page.modifications.size(), 5U);
        found.merge(texts(page));
        ++pages;
    } while (page.moreComing && pages < 100);
    EXPECT_EQ(found, expected);
}

TEST_F(CouchPullTest, ARecordThatIsLongerThanAnyAnswerIsAFailureInWords)
{
    limits.answerBytes = 5'000;
    restart(two);
    (void)saved(one, record("a", std::string(9'000, 'x')));
    const CloudChanges page = changes(two); // with the zone's own document alone
    EXPECT_TRUE(page.moreComing);
    EXPECT_THAT(failureOf(two.store().changes(zone, page.cursor)).what(), HasSubstr("too long"));
}

TEST_F(CouchPullTest, AnOverruledVersionIsToldBesideTheOneThatIsShown)
{
    const CloudRecord first = saved(one, record("a"));
    const CloudCursor cursor = changes(two).cursor;
    const CloudRecord mine = saved(one, changed(first, "mine"));
    (void)acceptRival(changed(first, "rival"), revisionOf(first), true);
    for (const auto& since : {std::optional(cursor), std::optional<CloudCursor>()}) {
        const CloudChanges page = changes(two, since);
        EXPECT_EQ(texts(page), (Texts{{"a", "rival"}}));
        ASSERT_EQ(page.overruled.size(), 1U);
        EXPECT_EQ(page.overruled[0], mine);
    }
}

TEST_F(CouchPullTest, ADiscardedVersionIsGoneAndTheOneThatIsShownStays)
{
    const CloudRecord first = saved(one, record("a"));
    (void)saved(one, changed(first, "mine"));
    (void)acceptRival(changed(first, "rival"), revisionOf(first), true);
    const CloudChanges page = changes(one);
    run(one.store().discard(page.overruled));
    EXPECT_TRUE(server.overruled(hours, nameOf("a")).empty());
    EXPECT_EQ(texts(changes(two)), (Texts{{"a", "rival"}}));
    run(one.store().discard(page.overruled)); // once more, as after a lost answer
    EXPECT_TRUE(changes(one).overruled.empty());
}

TEST_F(CouchPullTest, DocumentsOfOthersAreLeftAlone)
{
    (void)server.put(hours, QJsonObject{{"_id", "shopping list"}, {"milk", 2}});
    (void)server.put(hours, QJsonObject{{"_id", "OtherZone/a"}, {"type", "KestryRecord"}});
    (void)saved(one, record("a"));
    EXPECT_EQ(texts(changes(two)), (Texts{{"a", "text"}}));
}

TEST_F(CouchPullTest, ARecordInAnotherFormIsToldAsOneOfNoType)
{
    (void)server.put(hours, QJsonObject{{"_id", "KestryWorkspace/a"}, {"milk", 2}});
    const CloudChanges page = changes(two);
    ASSERT_EQ(page.modifications.size(), 1U);
    EXPECT_EQ(std::get<CloudRecord>(page.modifications[0].result).type, "");
}

TEST_F(CouchPullTest, ARecordThatWasGoneBeforeTheFirstReadingWasNeverThere)
{
    (void)saved(one, record("a"));
    server.removeDocument(hours, nameOf("a"));
    EXPECT_TRUE(changes(two).deletions.empty());
}

TEST_F(CouchPullTest, ACursorThatTheServerRefusesHasExpired)
{
    const CloudCursor cursor = changes(two).cursor;
    failNext("/_changes", {400, R"({"error":"bad_request"})"});
    EXPECT_EQ(
        failureOf(two.store().changes(zone, cursor)).code(), CloudErrorCode::changeTokenExpired);
}

TEST_F(CouchPullTest, APageThatMakesNoProgressIsTheLast)
{
    const CloudCursor cursor = changes(two).cursor;
    server.failNext("/_changes", {.kind = Kind::changeBody, .change = [](const std::string&) {
                                      return std::string(
                                          R"({"results":[],"last_seq":"9-other","pending":7})");
                                  }});
    EXPECT_FALSE(changes(two, cursor).moreComing);
}

} // namespace
} // namespace Kestry
