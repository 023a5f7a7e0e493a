#include "CloudStore.h"

#include <gtest/gtest.h>

#include "SampleLedger.h"

namespace KestryCore {
namespace {

SyncRecord clientRecord(unsigned number, unsigned revision)
{
    SyncRecord record = Sample::record(Sample::client(number));
    record.revision = Sample::id(revision).text();
    return record;
}

TEST(CloudStore, SavesOnlyOverTheVersionThatTheSenderKnows)
{
    CloudStore cloud;
    const CloudStore::SaveOutcome first = cloud.save(clientRecord(1, 1), std::nullopt);
    EXPECT_TRUE(first.isSaved);
    EXPECT_FALSE(cloud.save(clientRecord(1, 2), std::nullopt).isSaved);
    const std::string fields = CloudStore::systemFields(*first.server);
    EXPECT_TRUE(cloud.save(clientRecord(1, 2), fields).isSaved);
    const CloudStore::SaveOutcome outdated = cloud.save(clientRecord(1, 3), fields);
    EXPECT_FALSE(outdated.isSaved);
    EXPECT_EQ(outdated.server->record, clientRecord(1, 2));
}

TEST(CloudStore, TellsOfEachRecordOnceAndInItsLatestVersion)
{
    CloudStore cloud;
    const CloudStore::SaveOutcome first = cloud.save(clientRecord(1, 1), std::nullopt);
    cloud.save(clientRecord(2, 2), std::nullopt);
    cloud.save(clientRecord(1, 3), CloudStore::systemFields(*first.server));
    const CloudStore::Changes changes = cloud.changesSince(std::nullopt, 10).value();
    ASSERT_EQ(changes.records.size(), 2U);
    EXPECT_EQ(changes.records.front().record, clientRecord(2, 2));
    EXPECT_EQ(changes.records.back().record, clientRecord(1, 3));
    EXPECT_TRUE(cloud.changesSince(changes.cursor, 10)->records.empty());
}

TEST(CloudStore, GoesOnWhereAnAnswerEnded)
{
    CloudStore cloud;
    cloud.save(clientRecord(1, 1), std::nullopt);
    cloud.save(clientRecord(2, 2), std::nullopt);
    const CloudStore::Changes first = cloud.changesSince(std::nullopt, 1).value();
    EXPECT_TRUE(first.hasMore);
    const CloudStore::Changes second = cloud.changesSince(first.cursor, 1).value();
    EXPECT_FALSE(second.hasMore);
    ASSERT_EQ(second.records.size(), 1U);
    EXPECT_EQ(second.records.front().record, clientRecord(2, 2));
}

TEST(CloudStore, UnderstandsNoExpiredCursor)
{
    CloudStore cloud;
    const std::string old = cloud.changesSince(std::nullopt, 1)->cursor;
    cloud.expireCursors();
    EXPECT_FALSE(cloud.changesSince(old, 1).has_value());
    const std::string fresh = cloud.changesSince(std::nullopt, 1)->cursor;
    EXPECT_TRUE(cloud.changesSince(fresh, 1).has_value());
}

TEST(CloudStore, ASecondWriterOnOneVersionWinsWhereThatIsLet)
{
    CloudStore cloud;
    const CloudStore::SaveOutcome base = cloud.save(clientRecord(1, 1), std::nullopt);
    const std::string fields = CloudStore::systemFields(*base.server);
    cloud.save(clientRecord(1, 2), fields);
    const CloudRecord rival = CloudStore::asSent(clientRecord(1, 3), fields);
    EXPECT_FALSE(cloud.save(rival).isSaved);
    EXPECT_TRUE(cloud.save(rival, CloudStore::Rival::wins).isSaved);
    EXPECT_EQ(cloud.find(clientRecord(1, 1).recordID)->record, clientRecord(1, 3));
}

TEST(CloudStore, TellsOfARemovalUntilTheRecordIsPutBack)
{
    CloudStore cloud;
    const SyncRecord record = clientRecord(1, 1);
    cloud.save(record, std::nullopt);
    const std::string cursor = cloud.changesSince(std::nullopt, 10)->cursor;
    cloud.remove(record.recordID);
    EXPECT_EQ(cloud.changesSince(cursor, 10)->deletions, std::vector{record.recordID});
    EXPECT_FALSE(cloud.save(record, "version 1").isSaved);
    cloud.putBackRemoved();
    EXPECT_TRUE(cloud.changesSince(cursor, 10)->deletions.empty());
    EXPECT_EQ(cloud.changesSince(cursor, 10)->records.front().record, record);
}

TEST(CloudStore, AfterAWipeNothingIsThereAndNoCursorIsUnderstood)
{
    CloudStore cloud;
    cloud.createZone();
    cloud.save(clientRecord(1, 1), std::nullopt);
    const std::string cursor = cloud.changesSince(std::nullopt, 10)->cursor;
    cloud.wipe();
    EXPECT_FALSE(cloud.hasZone());
    cloud.createZone();
    EXPECT_FALSE(cloud.changesSince(cursor, 10).has_value());
    EXPECT_TRUE(cloud.changesSince(std::nullopt, 10)->records.empty());
}

TEST(CloudStore, ARewoundCursorTellsTheLastChangesAgain)
{
    CloudStore cloud;
    cloud.save(clientRecord(1, 1), std::nullopt);
    cloud.save(clientRecord(2, 2), std::nullopt);
    const std::string cursor = cloud.changesSince(std::nullopt, 10)->cursor;
    EXPECT_EQ(cloud.changesSince(cloud.rewound(cursor, 1), 10)->records.size(), 1U);
    EXPECT_EQ(cloud.changesSince(cloud.rewound(cursor, 9), 10)->records.size(), 2U);
}

} // namespace
} // namespace KestryCore
