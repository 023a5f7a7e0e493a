#include "RealServer.h"

#include <gtest/gtest.h>

#include <QTest>

#include "Awaited.h"
#include "CloudContract.h"
#include "CloudRefusal.h"
#include "CouchCloudContainer.h"
#include "SentRecord.h"

namespace Kestry {
namespace {

using namespace KestryCore;

CouchLimits serverLimits()
{
    CouchLimits limits;
    limits.pageBytes = std::size_t{1} << 20U;
    limits.answerBytes = std::size_t{16} << 20U;
    limits.patienceSeconds = 0.05;
    return limits;
}

std::unique_ptr<CouchCloudContainer> openOn(RealServer& server)
{
    CouchPlatform platform{server.scheduler()};
    platform.limits = serverLimits();
    return std::make_unique<CouchCloudContainer>(server.address(), server.account(), platform);
}

/// Of the second version of a document, and higher than any other.
const std::string winningRevision = "2-" + std::string(32, 'f');

class RealCouchUnderTest final : public CloudUnderTest {
public:
    std::unique_ptr<CloudContainer> open() override { return openOn(server_); }
    Scheduler& scheduler() override { return server_.scheduler(); }
    void runUntil(const std::function<bool()>& holds) override
    {
        (void)QTest::qWaitFor(holds, 120'000);
    }
    void removeZone(const CloudZoneID& /*zone*/) override { server_.remakeDatabase(); }
    void removeRecord(const CloudRecordID& record) override
    {
        server_.removeDocument(recordDocument(record));
    }
    void setReachable(bool isReachable) override { server_.setReachable(isReachable); }
    bool overrule(const CloudRecord& base, const CloudRecord& rival) override
    {
        server_.accept(sentDocument(rival), winningRevision, revisionOf(base));
        return true;
    }
    std::size_t pageBytes() const override { return serverLimits().pageBytes; }
    CloudErrorCode codeOfZoneMadeAnew() const override { return CloudErrorCode::storeReplaced; }

private:
    RealServer server_;
};

INSTANTIATE_TEST_SUITE_P(Server, CloudContract,
    testing::Values(
        CloudStoreKind{"RealCouch", [] { return std::make_unique<RealCouchUnderTest>(); }}),
    CloudStoreKind::nameOf);

/// One device on a real server, and what a cluster does to it.
class RealServerTest : public ::testing::Test {
protected:
    RealServerTest() { await(server.scheduler(), store().createZone(zone)); }

    [[nodiscard]] CloudDatabase& store() const { return device->privateDatabase(); }
    CloudChanges changes(std::optional<CloudCursor> since = {})
    {
        return await(server.scheduler(), store().changes(zone, std::move(since)));
    }
    CloudRecord saved(const std::string& text, const std::string& version = {})
    {
        CloudRecord record{{"a", zone}, "KestryRecord", version, {}};
        record.fields["text"] = text;
        const auto results = await(server.scheduler(), store().save({record}));
        return std::get<CloudRecord>(results.at(0).result);
    }
    static std::string textOf(const CloudChanges& page)
    {
        const auto& record = std::get<CloudRecord>(page.modifications.at(0).result);
        return std::get<std::string>(record.fields.at("text"));
    }
    /// Another writer's version over the same one as this record's, which is shown or not.
    void acceptRival(const CloudRecord& mine, bool wins)
    {
        const CloudRecord rival{mine.id, mine.type, {}, {{"text", std::string("rival")}}};
        const std::string losing = "2-" + std::string(32, '0');
        server.accept(sentDocument(rival), wins ? winningRevision : losing, parent);
        ASSERT_EQ(revisionOf(mine).substr(0, 2), "2-");
    }

    static inline const CloudZoneID zone{"KestryWorkspace"};
    RealServer server;
    std::unique_ptr<CouchCloudContainer> device = openOn(server);
    std::string parent;
};

TEST_F(RealServerTest, AnOverruledVersionIsToldAndCanBeDiscarded)
{
    const CloudRecord first = saved("first");
    parent = revisionOf(first);
    const CloudRecord mine = saved("mine", first.serverVersion);
    acceptRival(mine, true);
    const CloudChanges page = changes();
    EXPECT_EQ(textOf(page), "rival");
    ASSERT_EQ(page.overruled.size(), 1U);
    EXPECT_EQ(page.overruled[0], mine);
    await(server.scheduler(), store().discard(page.overruled));
    await(server.scheduler(), store().discard(page.overruled));
    EXPECT_TRUE(changes().overruled.empty());
    EXPECT_EQ(textOf(changes()), "rival");
}

TEST_F(RealServerTest, AVersionThatStandsBeforeAnotherCanBeChanged)
{
    const CloudRecord first = saved("first");
    parent = revisionOf(first);
    const CloudRecord mine = saved("mine", first.serverVersion);
    acceptRival(mine, false);
    (void)saved("next", mine.serverVersion);
    EXPECT_EQ(textOf(changes()), "next");
    EXPECT_EQ(changes().overruled.size(), 1U);
}

TEST_F(RealServerTest, ADatabaseMadeAnewIsNoticed)
{
    (void)saved("first");
    const CloudCursor cursor = changes().cursor;
    server.remakeDatabase();
    await(server.scheduler(), openOn(server)->privateDatabase().createZone(zone));
    const auto failure = cloudFailureOf([&] { (void)changes(cursor); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->code(), CloudErrorCode::storeReplaced);
}

TEST_F(RealServerTest, DeliveriesAreCounted)
{
    const CloudCursor cursor = changes().cursor;
    const CloudRecord first = saved("first");
    const CloudCursor once = store().witnessed(cursor);
    (void)saved("second", first.serverVersion);
    EXPECT_NE(once, cursor);
    EXPECT_NE(store().witnessed(cursor), once);
}

TEST_F(RealServerTest, AWrongPasswordIsRefused)
{
    CouchPlatform platform{server.scheduler()};
    CouchCloudContainer stranger(
        server.address(), CouchAccount{server.account().user, "wrong"}, platform);
    EXPECT_TRUE(cloudFailureOf([&] {
        (void)await(server.scheduler(), stranger.isAccountAvailable());
    }).has_value());
}

TEST_F(RealServerTest, AForeignDatabaseIsRefused)
{
    RealServer other;
    CouchPlatform platform{server.scheduler()};
    CouchCloudContainer stranger(server.address(), other.account(), platform);
    const auto failure = cloudFailureOf([&] {
        (void)await(server.scheduler(), stranger.privateDatabase().changes(zone, std::nullopt));
    });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->code(), CloudErrorCode::other);
}

} // namespace
} // namespace Kestry
