#include "CouchZone.h"

#include <QJsonDocument>

#include "CouchFixture.h"

namespace Kestry {
namespace {

using namespace KestryCore;
using ::testing::HasSubstr;
using Code = CloudErrorCode;

class CouchZoneTest : public CouchFixture {
protected:
    Code codeOf(const Device& device, const CloudCursor& cursor)
    {
        return failureOf(device.store().changes(zone, cursor)).code();
    }
    void remakeDatabase()
    {
        server.removeDatabase(hours);
        server.createDatabase(hours);
        restart(two);
        run(two.store().createZone(zone));
    }
};

TEST_F(CouchZoneTest, ADatabaseMadeAnewIsNoticedBeforeAnythingIsRead)
{
    (void)saved(one, record("a"));
    const CloudCursor cursor = changes(one).cursor;
    remakeDatabase();
    server.requests.clear();
    const CloudError failure = failureOf(one.store().changes(zone, cursor));
    EXPECT_EQ(failure.code(), Code::storeReplaced);
    EXPECT_EQ(failure.what(),
        std::string("The record store was restored from a backup or made anew, so it may lack "
                    "records that this device has delivered. Nothing was changed here. Upload this "
                    "device's records again to go on."));
    EXPECT_EQ(server.times("/_changes"), 0);
}

TEST_F(CouchZoneTest, ADatabaseMadeAnewTakesNoSaveOfAnOldVersion)
{
    const CloudRecord first = saved(one, record("a"));
    (void)changes(one);
    remakeDatabase();
    EXPECT_EQ(failureOf(one.store().save({changed(first, "late")})).code(), Code::storeReplaced);
    EXPECT_TRUE(server.shown(hours, nameOf("a")).isEmpty());
}

TEST_F(CouchZoneTest, AVersionOfAnotherIncarnationIsNotSentEitherAfterANewStart)
{
    const CloudRecord first = saved(one, record("a"));
    remakeDatabase();
    restart(one);
    EXPECT_EQ(refused(one, changed(first, "late")).serverRecord(), nullptr);
    EXPECT_TRUE(server.shown(hours, nameOf("a")).isEmpty());
}

TEST_F(CouchZoneTest, ABackupThatLacksADeliveryOfThisDeviceIsNoticed)
{
    (void)saved(one, record("a"));
    server.backUp();
    const CloudCursor before = changes(one).cursor;
    (void)saved(one, record("b"));
    const CloudCursor after = changes(one, before).cursor;
    server.restore();
    EXPECT_EQ(codeOf(one, after), Code::storeReplaced);
}

TEST_F(CouchZoneTest, ABackupFromBetweenADeliveryAndTheNextPullIsNoticedByTheWitness)
{
    const CloudCursor before = changes(one).cursor;
    server.backUp();
    (void)saved(one, record("a"));
    const CloudCursor witnessed = one.store().witnessed(before);
    server.restore();
    restart(one);
    EXPECT_EQ(codeOf(one, witnessed), Code::storeReplaced);
}

TEST_F(CouchZoneTest, AWitnessReadsOnFromTheSamePlace)
{
    const CloudCursor before = changes(one).cursor;
    (void)saved(one, record("a"));
    EXPECT_EQ(texts(changes(two, one.store().witnessed(before))).count("a"), 1U);
}

TEST_F(CouchZoneTest, ABackupThatLacksAnothersDeliveryIsNoticedByWhoOnlyReads)
{
    server.backUp();
    (void)saved(one, record("a"));
    const CloudCursor cursor = changes(two).cursor;
    server.restore();
    EXPECT_EQ(codeOf(two, cursor), Code::storeReplaced);
}

TEST_F(CouchZoneTest, OnceOneDeviceHasNoticedAllLearnOfIt)
{
    (void)saved(one, record("a"));
    const CloudCursor ofTwo = changes(two).cursor;
    server.backUp();
    (void)saved(one, record("b"));
    const CloudCursor ofOne = changes(one).cursor;
    server.restore();
    EXPECT_EQ(codeOf(one, ofOne), Code::storeReplaced);
    EXPECT_EQ(codeOf(two, ofTwo), Code::storeReplaced) << "though all that it knew is there";
    EXPECT_EQ(texts(changes(two)).size(), 1U) << "and it can be read from the start";
}

TEST_F(CouchZoneTest, NothingIsSavedToARestoredServer)
{
    server.backUp();
    (void)changes(one);
    const CloudRecord first = saved(one, record("a"));
    server.restore();
    EXPECT_EQ(failureOf(one.store().save({changed(first, "next")})).code(), Code::storeReplaced);
    EXPECT_TRUE(server.shown(hours, nameOf("a")).isEmpty());
}

TEST_F(CouchZoneTest, AMachineThatLagsBehindForAMomentIsNotARestoredServer)
{
    (void)saved(one, record("a"));
    const CloudCursor cursor = changes(one).cursor;
    int looks = 0;
    server.fault = [&](const DoubleRequest& request) -> std::optional<DoubleFault> {
        if (!request.path.ends_with("/_all_docs") || ++looks > 2) {
            return std::nullopt;
        }
        return DoubleFault{.kind = Kind::changeBody, .change = [](std::string body) {
                               const QByteArray bytes = QByteArray::fromStdString(body);
                               QJsonObject answer = QJsonDocument::fromJson(bytes).object();
                               QJsonArray rows = answer["rows"].toArray();
                               while (rows.size() > 1) {
                                   rows.removeLast(); // The devices' documents are not there yet.
                               }
                               answer["rows"] = rows;
                               return QJsonDocument(answer).toJson().toStdString();
                           }};
    };
    EXPECT_EQ(changes(one, cursor).cursor, cursor);
    EXPECT_EQ(looks, 3);
}

TEST_F(CouchZoneTest, TwoMarkersThatWereBothAcceptedAreOneZone)
{
    const CloudRecord a = saved(one, record("a"));
    const CloudCursor cursor = changes(one).cursor;
    QJsonObject rival = server.shown(hours, zoneDocument(zone));
    rival["fields"] = QJsonObject{{"incarnation", "another one"}};
    (void)server.accept(hours, rival, "", true);
    EXPECT_TRUE(changes(one, cursor).deletions.empty());
    EXPECT_EQ(textOf(saved(one, changed(a, "next"))), "next");
    EXPECT_EQ(texts(changes(two)).at("a"), "next");
}

TEST_F(CouchZoneTest, ADatabaseThatComesLateIsFound)
{
    server.removeDatabase(hours);
    int looks = 0;
    server.fault = [&](const DoubleRequest&) {
        if (++looks == 2) {
            server.fault = {};
            server.createDatabase(hours);
            (void)server.put(hours,
                QJsonObject{{"_id", "zone:KestryWorkspace"},
                    {"fields", QJsonObject{{"incarnation", "new"}}}});
        }
        return std::optional<DoubleFault>();
    };
    run(two.store().fetchZone(zone));
    EXPECT_EQ(looks, 2);
}

TEST_F(CouchZoneTest, ADatabaseThatNeverComesIsAMissingZone)
{
    server.removeDatabase(hours);
    EXPECT_EQ(failureOf(two.store().fetchZone(zone)).code(), Code::zoneNotFound);
}

TEST_F(CouchZoneTest, AZoneIsMadeWithItsDatabase)
{
    server.removeDatabase(hours);
    run(two.store().createZone(zone));
    run(one.store().fetchZone(zone));
}

TEST_F(CouchZoneTest, ADatabaseThatAnotherDeviceHasMadeMeanwhileIsTaken)
{
    server.removeDatabase(hours);
    failNext("/hours", {412, R"({"error":"file_exists"})"});
    server.fault = [&](const DoubleRequest& request) {
        if (request.method == "PUT") {
            server.fault = {};
            server.createDatabase(hours);
        }
        return std::optional<DoubleFault>();
    };
    run(two.store().createZone(zone));
    run(one.store().fetchZone(zone));
}

TEST_F(CouchZoneTest, AUserWhoMayMakeNoDatabaseIsToldWhoCan)
{
    server.removeDatabase(hours);
    server.mayCreate = false;
    EXPECT_THAT(failureOf(two.store().createZone(zone)).what(), HasSubstr("Ask its administrator"));
}

TEST_F(CouchZoneTest, AnExistingDatabaseIsNotAskedFor)
{
    run(two.store().createZone(zone));
    EXPECT_EQ(server.times("/hours"), 0);
}

} // namespace
} // namespace Kestry
