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
    const std::string fields = CloudStore::systemFields(first.server);
    EXPECT_TRUE(cloud.save(clientRecord(1, 2), fields).isSaved);
    const CloudStore::SaveOutcome outdated = cloud.save(clientRecord(1, 3), fields);
    EXPECT_FALSE(outdated.isSaved);
    EXPECT_EQ(outdated.server.record, clientRecord(1, 2));
}

TEST(CloudStore, TellsOfEachRecordOnceAndInItsLatestVersion)
{
    CloudStore cloud;
    const CloudStore::SaveOutcome first = cloud.save(clientRecord(1, 1), std::nullopt);
    cloud.save(clientRecord(2, 2), std::nullopt);
    cloud.save(clientRecord(1, 3), CloudStore::systemFields(first.server));
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

} // namespace
} // namespace KestryCore
