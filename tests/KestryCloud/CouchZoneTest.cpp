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
    /// Of a loss that has shown before.
    Code codeOfSecondLook(const Device& device, const CloudCursor& cursor)
    {
        EXPECT_EQ(codeOf(device, cursor), Code::other);
        return codeOf(device, cursor);
    }
    /// So many looks meet a machine that does not have the devices' documents yet.
    void lagBehind(int looks)
    {
        lagging = looks;
        server.fault = [this](const DoubleRequest& request) -> std::optional<DoubleFault> {
            if (!request.path.ends_with("/_all_docs") || lagging-- <= 0) {
                return std::nullopt;
            }
            return DoubleFault{.kind = Kind::changeBody, .change = withFirstRowOnly};
        };
    }
    static std::string withFirstRowOnly(const std::string& body)
    {
        QJsonObject answer = QJsonDocument::fromJson(QByteArray::fromStdString(body)).object();
        answer["rows"] = QJsonArray{answer["rows"].toArray().first()};
        return QJsonDocument(answer).toJson().toStdString();
    }
    void remakeDatabase()
    {
        server.removeDatabase(hours);
        server.createDatabase(hours);
        restart(two);
        run(two.store().createZone(zone));
    }

    int lagging = 0;
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
        std::string("The record store was restored from a backup or made anew, or the address is "
                    "that of another one, so it may lack records that this device has delivered. "
                    "Nothing was changed here. If the address is right, upload this device's "
                    "records again to go on."));
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
    EXPECT_EQ(codeOfSecondLook(one, after), Code::storeReplaced);
}

TEST_F(CouchZoneTest, ABackupFromBetweenADeliveryAndTheNextPullIsNoticedByTheWitness)
{
    const CloudCursor before = changes(one).cursor;
    server.backUp();
    (void)saved(one, record("a"));
    const CloudCursor witnessed = one.store().witnessed(before);
    server.restore();
    restart(one);
    EXPECT_EQ(codeOfSecondLook(one, witnessed), Code::storeReplaced);
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
    EXPECT_EQ(codeOfSecondLook(two, cursor), Code::storeReplaced);
}

TEST_F(CouchZoneTest, OnceOneDeviceHasNoticedAllLearnOfIt)
{
    (void)saved(one, record("a"));
    const CloudCursor ofTwo = changes(two).cursor;
    server.backUp();
    (void)saved(one, record("b"));
    const CloudCursor ofOne = changes(one).cursor;
    server.restore();
    EXPECT_EQ(codeOfSecondLook(one, ofOne), Code::storeReplaced);
    EXPECT_EQ(codeOf(two, ofTwo), Code::storeReplaced) << "though all that it knew is there";
    EXPECT_EQ(texts(changes(two)).size(), 1U) << "and it can be read from the start";
}

TEST_F(CouchZoneTest, NothingIsSavedToARestoredServer)
{
    server.backUp();
    (void)changes(one);
    const CloudRecord first = saved(one, record("a"));
    server.restore();
    for (const Code code : {Code::other, Code::storeReplaced}) {
        EXPECT_EQ(failureOf(one.store().save({changed(first, "next")})).code(), code);
    }
    EXPECT_TRUE(server.shown(hours, nameOf("a")).isEmpty());
}

TEST_F(CouchZoneTest, AMachineThatLagsBehindForAMomentIsNotARestoredServer)
{
    (void)saved(one, record("a"));
    const CloudCursor cursor = changes(one).cursor;
    lagBehind(2);
    server.requests.clear();
    EXPECT_EQ(changes(one, cursor).cursor, cursor);
    EXPECT_EQ(server.times("/_all_docs"), 3);
}

TEST_F(CouchZoneTest, AMachineThatLagsBehindForSecondsIsToldAndNoDeviceIsHeldUp)
{
    limits.doubtSeconds = 60.0;
    restart(one);
    (void)saved(one, record("a"));
    const CloudCursor cursor = changes(one).cursor;
    lagBehind(6);
    for (int exchange = 0; exchange < 2; ++exchange) {
        EXPECT_EQ(std::string(failureOf(one.store().changes(zone, cursor)).what()),
            "The record store lacks what it had before. One of its machines may lag behind, so "
            "Kestry looks again in a minute. Your local changes are saved.");
    }
    EXPECT_EQ(changes(one, cursor).cursor, cursor);
    EXPECT_EQ(texts(changes(two, cursor)).size(), 0U);
}

TEST_F(CouchZoneTest, AMachineThatLagsBehindAgainLaterIsDoubtedAnew)
{
    (void)saved(one, record("a"));
    const CloudCursor cursor = changes(one).cursor;
    for (int time = 0; time < 2; ++time) {
        lagBehind(3);
        EXPECT_EQ(codeOf(one, cursor), Code::other);
        EXPECT_EQ(changes(one, cursor).cursor, cursor);
    }
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
