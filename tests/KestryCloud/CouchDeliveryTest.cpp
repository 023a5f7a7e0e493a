#include "CouchDelivery.h"

#include <QJsonDocument>

#include "CouchFixture.h"

namespace Kestry {
namespace {

using namespace KestryCore;
using ::testing::HasSubstr;

class CouchDeliveryTest : public CouchFixture { };

TEST_F(CouchDeliveryTest, ASaveIsOneBatchAndOneLookAtIt)
{
    (void)saved(one, record("a"));
    EXPECT_EQ(server.times("/_bulk_docs"), 1);
    EXPECT_EQ(server.times("/_all_docs"), 2) << "the zone's identity, then what was saved";
}

TEST_F(CouchDeliveryTest, ABatchThatFollowsAtOnceReliesOnTheLookAtTheOneBefore)
{
    limits.lookSeconds = 20.0;
    restart(one);
    (void)changes(one);
    (void)saved(one, record("a"));
    server.requests.clear();
    (void)saved(one, record("b"));
    (void)saved(one, record("c"));
    EXPECT_EQ(server.times("/_bulk_docs"), 2);
    EXPECT_EQ(server.times("/_all_docs"), 2);
}

TEST_F(CouchDeliveryTest, ALossBetweenTwoBatchesIsNoticedWithTheFirstOneThatCouldMeetIt)
{
    limits.lookSeconds = 20.0;
    restart(one);
    (void)changes(one);
    server.backUp();
    (void)saved(one, record("a"));
    server.fault = [&](const DoubleRequest& request) {
        // The backup comes back after the batch is in and before it is looked at.
        if (request.path.ends_with("/_all_docs") && server.times("/_bulk_docs") == 2) {
            server.fault = {};
            server.restore();
        }
        return std::optional<DoubleFault>();
    };
    (void)save(one, {record("b")});
    for (const auto code : {CloudErrorCode::other, CloudErrorCode::storeReplaced}) {
        EXPECT_EQ(failureOf(one.store().save({record("c")})).code(), code);
    }
    EXPECT_TRUE(server.shown(hours, nameOf("c")).isEmpty());
}

TEST_F(CouchDeliveryTest, AZoneThatGotAnotherIdentityBetweenTwoBatchesIsNoticed)
{
    limits.lookSeconds = 20.0;
    restart(one);
    (void)changes(one);
    server.fault = [&](const DoubleRequest& request) {
        if (request.path.ends_with("/_all_docs") && server.times("/_bulk_docs") == 1) {
            server.fault = {};
            QJsonObject marker = server.shown(hours, zoneDocument(zone));
            marker["fields"] = QJsonObject{{"incarnation", "another one"}};
            (void)server.put(hours, marker);
        }
        return std::optional<DoubleFault>();
    };
    (void)save(one, {record("a")});
    EXPECT_EQ(failureOf(one.store().save({record("b")})).code(), CloudErrorCode::storeReplaced);
    EXPECT_TRUE(server.shown(hours, nameOf("b")).isEmpty());
}

TEST_F(CouchDeliveryTest, ASaveWhoseAnswerGotLostIsDeliveredByTheNextOne)
{
    const CloudRecord first = saved(one, record("a"));
    const CloudRecord next = changed(first, "next");
    failNext("/_bulk_docs", Kind::loseAnswer);
    (void)failureOf(one.store().save({next}));
    const CloudRecord again = saved(one, next);
    EXPECT_EQ(textOf(again), "next");
    EXPECT_EQ(revisionOf(again), server.shown(hours, nameOf("a"))["_rev"].toString().toStdString());
}

TEST_F(CouchDeliveryTest, ASaveThatGotLostOnItsWayIsDeliveredByTheNextOne)
{
    failNext("/_bulk_docs", Kind::loseRequest);
    (void)failureOf(one.store().save({record("a")}));
    EXPECT_TRUE(server.shown(hours, nameOf("a")).isEmpty());
    EXPECT_EQ(textOf(saved(one, record("a"))), "text");
}

TEST_F(CouchDeliveryTest, ABatchIsNeverSentTwice)
{
    failNext("/_bulk_docs", Kind::loseAnswer);
    (void)failureOf(one.store().save({record("a")}));
    EXPECT_EQ(server.times("/_bulk_docs"), 1);
}

TEST_F(CouchDeliveryTest, AnAnswerInAnotherOrderIsMatchedByName)
{
    server.shufflesAnswers = true;
    for (const CloudRecordResult& result :
        save(one, {record("a", "of a"), record("b", "of b"), record("c", "of c")})) {
        EXPECT_EQ(textOf(std::get<CloudRecord>(result.result)), "of " + result.id.name);
    }
}

TEST_F(CouchDeliveryTest, ASaveThatTheServerShowsBehindAnotherIsNotAcknowledged)
{
    const CloudRecord first = saved(one, record("a"));
    server.fault = [&](const DoubleRequest& request) {
        // Once the batch is in, another machine of the cluster has accepted another writer.
        if (request.path.ends_with("/_all_docs") && server.times("/_bulk_docs") == 2) {
            server.fault = {};
            (void)acceptRival(changed(first, "rival"), revisionOf(first), true);
        }
        return std::optional<DoubleFault>();
    };
    const CloudError failure = refused(one, changed(first, "mine"));
    EXPECT_EQ(failure.code(), CloudErrorCode::serverRecordChanged);
    ASSERT_NE(failure.serverRecord(), nullptr);
    EXPECT_EQ(textOf(*failure.serverRecord()), "rival");
    EXPECT_EQ(server.overruled(hours, nameOf("a")).size(), 1U) << "mine stays on the server";
    ASSERT_NE(failure.overruled(), nullptr);
    EXPECT_EQ(textOf(*failure.overruled()), "mine");
    run(one.store().discard({*failure.overruled()}));
    EXPECT_TRUE(server.overruled(hours, nameOf("a")).empty());
}

TEST_F(CouchDeliveryTest, ASaveThatWasOverruledBeforeItsAnswerCameIsRecognisedWhenRepeated)
{
    const CloudRecord first = saved(one, record("a"));
    const CloudRecord mine = changed(first, "mine");
    (void)saved(one, mine); // of which, let us say, no answer came
    (void)acceptRival(changed(first, "rival"), revisionOf(first), true);
    const CloudError failure = refused(one, mine);
    EXPECT_EQ(failure.code(), CloudErrorCode::serverRecordChanged);
    ASSERT_NE(failure.overruled(), nullptr);
    run(one.store().discard({*failure.overruled()}));
    EXPECT_TRUE(server.overruled(hours, nameOf("a")).empty());
}

TEST_F(CouchDeliveryTest, ARefusedSaveBesideAnothersOverruledVersionHasNoneOfItsOwn)
{
    const CloudRecord first = saved(one, record("a"));
    (void)saved(two, changed(first, "another's"));
    (void)acceptRival(changed(first, "rival"), revisionOf(first), true);
    EXPECT_EQ(refused(one, changed(first, "mine")).overruled(), nullptr);
}

TEST_F(CouchDeliveryTest, ASaveThatStandsBeforeAnotherIsAcknowledged)
{
    const CloudRecord first = saved(one, record("a"));
    server.fault = [&](const DoubleRequest& request) {
        if (request.path.ends_with("/_all_docs") && server.times("/_bulk_docs") == 2) {
            server.fault = {};
            (void)acceptRival(changed(first, "rival"), revisionOf(first), false);
        }
        return std::optional<DoubleFault>();
    };
    EXPECT_EQ(textOf(saved(one, changed(first, "mine"))), "mine");
}

TEST_F(CouchDeliveryTest, ASaveThatAnotherDeviceHasBuiltOnIsAcknowledged)
{
    const CloudRecord first = saved(one, record("a"));
    server.fault = [&](const DoubleRequest& request) {
        if (request.path.ends_with("/_all_docs") && server.times("/_bulk_docs") == 2) {
            server.fault = {};
            QJsonObject later = server.shown(hours, nameOf("a"));
            later["fields"] = QJsonObject{{"text", "later"}};
            (void)server.put(hours, later);
        }
        return std::optional<DoubleFault>();
    };
    const CloudRecord mine = saved(one, changed(first, "mine"));
    EXPECT_EQ(textOf(mine), "mine");
    EXPECT_EQ(generationOf(revisionOf(mine)), 2);
    EXPECT_EQ(texts(changes(two)).at("a"), "later");
}

TEST_F(CouchDeliveryTest, ARequestThatIsTooLargeIsSplit)
{
    server.mostRequestBytes = 3'000;
    std::vector<CloudRecord> records;
    for (int number = 0; number < 20; ++number) {
        records.push_back(record(std::to_string(number), std::string(500, 'x')));
    }
    for (const CloudRecordResult& result : save(one, records)) {
        EXPECT_TRUE(std::holds_alternative<CloudRecord>(result.result)) << result.id.name;
    }
    EXPECT_EQ(texts(changes(two)).size(), 20U);
}

TEST_F(CouchDeliveryTest, ARecordThatIsTooLargeFailsAlone)
{
    server.mostDocumentBytes = 5'000;
    std::map<std::string, bool> isSaved;
    for (const CloudRecordResult& result :
        save(one, {record("a"), record("b", std::string(9'000, 'x')), record("c"), record("d")})) {
        isSaved[result.id.name] = std::holds_alternative<CloudRecord>(result.result);
        if (!isSaved[result.id.name]) {
            EXPECT_THAT(std::get<CloudError>(result.result).what(), HasSubstr("larger"));
        }
    }
    EXPECT_EQ(isSaved,
        (std::map<std::string, bool>{{"a", true}, {"b", false}, {"c", true}, {"d", true}}));
}

TEST_F(CouchDeliveryTest, RequestsAreBoundedInBytes)
{
    limits.requestBytes = 1'500;
    restart(one);
    (void)save(one,
        {record("a", std::string(900, 'x')), record("b", std::string(900, 'x')),
            record("c", std::string(900, 'x')), record("d", std::string(9'000, 'x'))});
    EXPECT_EQ(server.times("/_bulk_docs"), 4);
    EXPECT_EQ(texts(changes(two)).size(), 4U);
}

TEST_F(CouchDeliveryTest, WhatWasDeliveredBeforeAFailureIsAcknowledged)
{
    limits.requestBytes = 1'500;
    restart(one);
    int batches = 0;
    server.fault = [&](const DoubleRequest& request) -> std::optional<DoubleFault> {
        if (request.path.ends_with("/_bulk_docs") && ++batches == 2) {
            return DoubleFault{.kind = Kind::answer, .answer = {503, "", "Retry-After: 9\r\n"}};
        }
        return std::nullopt;
    };
    const Results results = save(one,
        {record("a", std::string(900, 'x')), record("b", std::string(900, 'x')),
            record("c", std::string(900, 'x'))});
    ASSERT_EQ(results.size(), 3U);
    EXPECT_TRUE(std::holds_alternative<CloudRecord>(results[0].result));
    EXPECT_EQ(std::get<CloudError>(results[1].result).retryAfterSeconds(), 9.0);
    EXPECT_EQ(std::get<CloudError>(results[2].result).retryAfterSeconds(), 9.0);
    EXPECT_EQ(batches, 2);
}

TEST_F(CouchDeliveryTest, ARecordThatTheAnswerLeavesOutHasNoResult)
{
    server.failNext("/_bulk_docs",
        {.kind = Kind::changeBody, .change = [](const std::string&) { return std::string("[]"); }});
    EXPECT_TRUE(save(one, {record("a")}).empty());
}

TEST_F(CouchDeliveryTest, ARecordThatTheServerForbidsFailsInWords)
{
    server.failNext("/_bulk_docs",
        {.kind = Kind::answer,
            .answer = {
                201, R"([{"id":"KestryWorkspace/a","error":"unauthorized","reason":"geheim"}])"}});
    EXPECT_THAT(refused(one, record("a")).what(), HasSubstr("does not let you use this database"));
}

TEST_F(CouchDeliveryTest, EachRequestIsCountedByTheDevice)
{
    (void)saved(one, record("a"));
    (void)saved(one, record("b"));
    int counted = 0;
    for (const std::string& name : server.documentsOf(hours)) {
        if (deviceOfDocument(name)) {
            counted += static_cast<int>(
                generationOf(server.shown(hours, name)["_rev"].toString().toStdString()));
        }
    }
    EXPECT_EQ(counted, 2);
}

TEST_F(CouchDeliveryTest, ACopyOfADeviceCountsOn)
{
    const CloudCursor cursor = changes(one).cursor;
    (void)changes(two, cursor);
    for (const char* const name : {"a", "b", "c"}) {
        (void)saved(one, record(std::string("one ") + name));
        (void)saved(two, record(std::string("two ") + name));
    }
    EXPECT_EQ(texts(changes(two, cursor)).size(), 6U);
}

} // namespace
} // namespace Kestry
