#include "SqliteCloudDatabase.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <set>

#include "SqliteStoreUnderTest.h"
#include "TaskOwner.h"

namespace KestryCore {
namespace {

INSTANTIATE_TEST_SUITE_P(Sqlite, CloudContract,
    testing::Values(
        CloudStoreKind{"SqliteCloud", [] { return std::make_unique<SqliteStoreUnderTest>(); }}),
    CloudStoreKind::nameOf);

const CloudZoneID zone{"KestryWorkspace"};

class SqliteCloudDatabaseTest : public testing::Test {
protected:
    using Results = std::vector<CloudRecordResult>;

    template <class Value>
    Value run(Task<Value> task)
    {
        std::optional<Value> value;
        std::exception_ptr failure;
        TaskOwner owner(store.scheduler(), [&](std::exception_ptr thrown) { failure = thrown; });
        owner.start(keep(std::move(task), value));
        store.runUntil([&] { return value || failure; });
        if (failure) {
            std::rethrow_exception(failure);
        }
        return *std::move(value);
    }
    void run(Task<void> task) { (void)run(withValue(std::move(task))); }
    template <class Value>
    [[nodiscard]] std::string failureOf(Task<Value> task)
    {
        try {
            (void)run(std::move(task));
        } catch (const CloudError& failure) {
            return failure.what();
        }
        return "(none)";
    }

    [[nodiscard]] static CloudRecord record(const std::string& name, std::size_t bytes = 4)
    {
        return {{name, zone}, "KestryRecord", {}, {{"bytes", CloudBytes{std::string(bytes, 'x')}}}};
    }
    CloudRecord saved(const CloudRecord& record)
    {
        return std::get<CloudRecord>(run(database.save({record})).at(0).result);
    }
    [[nodiscard]] std::size_t files() const
    {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(store.folder())) {
            count += entry.is_regular_file() ? 1 : 0;
        }
        return count;
    }
    [[nodiscard]] std::string inUse() const
    {
        return "Another program keeps the record store " + store.path()
            + " to itself. Your local changes are saved and will retry.";
    }

    static constexpr const char* replaced =
        "The record store was restored from a backup or made anew, or the address is that of "
        "another one, so it may lack records that this device has delivered. Nothing was changed "
        "here. If the address is right, upload this device's records again to go on.";

    SqliteStoreUnderTest store;
    SqliteCloudDatabase database{store.scheduler(), store.place()};

private:
    template <class Value>
    [[nodiscard]] static Task<void> keep(Task<Value> task, std::optional<Value>& kept)
    {
        Value value = co_await task;
        kept.emplace(std::move(value));
    }
    [[nodiscard]] static Task<bool> withValue(Task<void> task)
    {
        co_await task;
        co_return true;
    }
};

TEST_F(SqliteCloudDatabaseTest, AStoreThatIsMissingIsNotAvailableUnlessItMayBeMade)
{
    EXPECT_TRUE(run(database.isAvailable()));
    SqliteStorePlace place = store.place();
    place.whenMissing = MissingStore::isUnavailable;
    SqliteCloudDatabase known(store.scheduler(), place);
    EXPECT_FALSE(run(known.isAvailable()));
    EXPECT_EQ(failureOf(known.account()),
        "The record store " + store.path() + " is missing. Local data is safe.");
    EXPECT_FALSE(std::filesystem::exists(store.path()));
    (void)run(database.account());
    EXPECT_TRUE(run(known.isAvailable()));
}

TEST_F(SqliteCloudDatabaseTest, ZonesOfOneFileKnowNothingOfEachOther)
{
    run(database.createZone(zone));
    run(database.createZone({"Other"}));
    const CloudRecord a = saved(record("a"));
    CloudRecord other = record("a", 7);
    other.id.zone = {"Other"};
    other = saved(other);
    const CloudChanges changes = run(database.changes(zone, std::nullopt));
    ASSERT_EQ(changes.modifications.size(), 1U);
    EXPECT_EQ(std::get<CloudRecord>(changes.modifications[0].result), a);
    EXPECT_NE(failureOf(database.changes({"Other"}, changes.cursor)), "(none)");
}

TEST_F(SqliteCloudDatabaseTest, ABatchOfSeveralZonesIsSaved)
{
    run(database.createZone(zone));
    run(database.createZone({"Other"}));
    CloudRecord other = record("b");
    other.id.zone = {"Other"};
    const Results results = run(database.save({record("a"), other, record("c")}));
    ASSERT_EQ(results.size(), 3U);
    EXPECT_EQ(run(database.changes(zone, std::nullopt)).modifications.size(), 2U);
}

TEST_F(SqliteCloudDatabaseTest, AFileThatAnotherProgramWritesIsWaitedForWithoutStoppingTheLoop)
{
    run(database.createZone(zone));
    SqliteConnection& other = store.administrator();
    other.run("BEGIN IMMEDIATE");
    bool isSaved = false;
    TaskOwner owner(store.scheduler(), [](const std::exception_ptr&) { ADD_FAILURE(); });
    owner.start([](SqliteCloudDatabase& to, bool& flag) -> Task<void> {
        std::vector<CloudRecord> records{record("a")};
        Task<Results> saving = to.save(std::move(records));
        const Results results = co_await saving;
        flag = results.size() == 1;
    }(database, isSaved));
    store.scheduler().advance(1.0);
    EXPECT_FALSE(isSaved);
    other.run("ROLLBACK");
    store.scheduler().advance(1.0);
    EXPECT_TRUE(isSaved);
}

TEST_F(SqliteCloudDatabaseTest, AFileThatAnotherProgramKeepsToItselfIsAFailureInTheEnd)
{
    run(database.createZone(zone));
    store.administrator().run("BEGIN EXCLUSIVE");
    const double before = store.scheduler().now();
    EXPECT_EQ(failureOf(database.save({record("a")})), inUse());
    EXPECT_LT(store.scheduler().now() - before, SqliteCloudDatabase::patienceSeconds + 1.0);
    store.closeOther();
    (void)saved(record("a"));
}

TEST_F(SqliteCloudDatabaseTest, WhileAnotherProgramReadsChangesAreReadToo)
{
    run(database.createZone(zone));
    SqliteConnection& other = store.administrator();
    other.run("BEGIN");
    (void)other.number("SELECT count(*) FROM records");
    EXPECT_EQ(failureOf(database.changes(zone, std::nullopt)), "(none)");
}

TEST_F(SqliteCloudDatabaseTest, ARecordThatWasDamagedOnTheDiskIsAFailureOfItsOwn)
{
    run(database.createZone(zone));
    const CloudRecord a = saved(record("a"));
    (void)saved(record("b"));
    store.administrator().run("UPDATE records SET content = replace(content, 'xxxx', 'xxxy') "
                              "WHERE name = 'a'");
    store.closeOther();
    const CloudChanges changes = run(database.changes(zone, std::nullopt));
    ASSERT_EQ(changes.modifications.size(), 2U);
    EXPECT_STREQ(std::get<CloudError>(changes.modifications[0].result).what(),
        "The record a is damaged in the record store. Local data is safe; restore the file from a "
        "backup.");
    EXPECT_TRUE(std::holds_alternative<CloudRecord>(changes.modifications[1].result));
    EXPECT_TRUE(std::holds_alternative<CloudError>(run(database.save({record("a")})).at(0).result));
}

TEST_F(SqliteCloudDatabaseTest, AFileThatWasRestoredFromABackupAndWrittenToIsNoticed)
{
    // Of another device, which has not seen what was lost.
    SqliteCloudDatabase two(store.scheduler(), store.place());
    run(database.createZone(zone));
    const CloudRecord first = saved(record("a"));
    const CloudCursor early = run(database.changes(zone, std::nullopt)).cursor;
    std::filesystem::copy_file(store.path(), store.folder() + "/backup");
    const CloudRecord second = saved(first);
    const CloudCursor late = run(database.changes(zone, early)).cursor;
    std::filesystem::rename(store.folder() + "/backup", store.path());
    EXPECT_EQ(failureOf(two.changes(zone, late)), replaced);
    const auto other = std::get<CloudRecord>(run(two.save({first})).at(0).result);
    (void)run(two.save({record("b")}));
    EXPECT_EQ(failureOf(two.changes(zone, late)), replaced) << "the numbers are taken again";
    EXPECT_NE(other.serverVersion, second.serverVersion);
    EXPECT_EQ(run(two.changes(zone, early)).modifications.size(), 2U);
    EXPECT_EQ(run(database.changes(zone, std::nullopt)).modifications.size(), 2U)
        << "from the start it can be read";
}

TEST_F(SqliteCloudDatabaseTest, NothingIsSavedToAFileThatWasRestored)
{
    run(database.createZone(zone));
    const CloudRecord first = saved(record("a"));
    std::filesystem::copy_file(store.path(), store.folder() + "/backup");
    const CloudRecord second = saved(first);
    std::filesystem::rename(store.folder() + "/backup", store.path());
    EXPECT_EQ(failureOf(database.save({second})), replaced);
    EXPECT_EQ(failureOf(database.save({record("b")})), replaced);
    SqliteCloudDatabase two(store.scheduler(), store.place());
    const CloudChanges there = run(two.changes(zone, std::nullopt));
    ASSERT_EQ(there.modifications.size(), 1U);
    EXPECT_EQ(std::get<CloudRecord>(there.modifications[0].result), first);
}

TEST_F(SqliteCloudDatabaseTest, ABackupFromBetweenADeliveryAndTheNextReadingIsNoticedByTheWitness)
{
    run(database.createZone(zone));
    const CloudCursor before = run(database.changes(zone, std::nullopt)).cursor;
    EXPECT_EQ(database.witnessed(before), before);
    std::filesystem::copy_file(store.path(), store.folder() + "/backup");
    (void)saved(record("a"));
    const CloudCursor witnessed = database.witnessed(before);
    SqliteCloudDatabase again(store.scheduler(), store.place());
    EXPECT_EQ(run(again.changes(zone, witnessed)).modifications.size(), 1U) << "the same place";
    std::filesystem::rename(store.folder() + "/backup", store.path());
    SqliteCloudDatabase afterANewStart(store.scheduler(), store.place());
    EXPECT_EQ(failureOf(afterANewStart.changes(zone, witnessed)), replaced);
    EXPECT_EQ(failureOf(afterANewStart.changes(zone, before)), "(none)");
}

TEST_F(SqliteCloudDatabaseTest, AWitnessThatWasReadOverIsForgotten)
{
    run(database.createZone(zone));
    const CloudCursor before = run(database.changes(zone, std::nullopt)).cursor;
    (void)saved(record("a"));
    const CloudCursor witnessed = database.witnessed(before);
    EXPECT_NE(witnessed, before);
    const CloudCursor after = run(database.changes(zone, witnessed)).cursor;
    EXPECT_EQ(after, run(database.changes(zone, before)).cursor);
    EXPECT_EQ(database.witnessed(after), after);
}

TEST_F(SqliteCloudDatabaseTest, AFileThatWasReplacedIsSeenAtOnce)
{
    run(database.createZone(zone));
    (void)saved(record("a"));
    std::filesystem::remove(store.path());
    EXPECT_EQ(
        failureOf(database.changes(zone, std::nullopt)), "The record store has no such workspace.");
    run(database.createZone(zone));
    EXPECT_TRUE(run(database.changes(zone, std::nullopt)).modifications.empty());
}

TEST_F(SqliteCloudDatabaseTest, ARemovalIsNoNewsToAFirstReaderHoweverManyPagesItTakes)
{
    run(database.createZone(zone));
    for (const char* const name : {"a", "b", "c"}) {
        (void)saved(record(name, SqliteCloudDatabase::pageBytes));
    }
    store.removeRecord({"a", zone});
    store.closeOther();
    const CloudChanges first = run(database.changes(zone, std::nullopt));
    ASSERT_TRUE(first.moreComing);
    store.removeRecord({"b", zone});
    store.closeOther();
    const CloudChanges second = run(database.changes(zone, first.cursor));
    EXPECT_FALSE(second.moreComing);
    EXPECT_EQ(second.deletions, (std::vector<CloudRecordID>{{"b", zone}}));
}

TEST_F(SqliteCloudDatabaseTest, ARecordThatIsTooLargeIsRefusedAlone)
{
    run(database.createZone(zone));
    const Results results = run(database.save({record("a", std::size_t{65} << 20U), record("b")}));
    ASSERT_EQ(results.size(), 2U);
    EXPECT_STREQ(std::get<CloudError>(results[0].result).what(),
        "The record a is too large for the record store.");
    EXPECT_TRUE(std::holds_alternative<CloudRecord>(results[1].result));
}

TEST_F(SqliteCloudDatabaseTest, OthersHaveTheLoopBetweenTwoOperations)
{
    run(database.createZone(zone));
    int saves = 0;
    std::set<int> seen;
    const std::function<void()> other = [&] {
        seen.insert(saves);
        if (saves < 3) {
            store.scheduler().post(other);
        }
    };
    store.scheduler().post(other);
    TaskOwner owner(store.scheduler(), [](const std::exception_ptr&) { ADD_FAILURE(); });
    owner.start([](SqliteCloudDatabase& to, int& count) -> Task<void> {
        while (count < 3) {
            std::vector<CloudRecord> records{record(std::to_string(count))};
            Task<Results> saving = to.save(std::move(records));
            (void)co_await saving;
            ++count;
        }
    }(database, saves));
    store.scheduler().turn();
    EXPECT_EQ(seen, (std::set<int>{0, 1, 2, 3}));
}

TEST_F(SqliteCloudDatabaseTest, SoonAfterTheLastSaveTheStoreIsOneFile)
{
    run(database.createZone(zone));
    EXPECT_EQ(files(), 1U);
    (void)saved(saved(record("a")));
    EXPECT_EQ(files(), 2U) << "the journal of the next save";
    store.scheduler().advance(SqliteCloudDatabase::tidySeconds);
    EXPECT_EQ(files(), 1U);
    EXPECT_EQ(run(database.changes(zone, std::nullopt)).modifications.size(), 1U);
}

TEST_F(SqliteCloudDatabaseTest, AtItsEndTheStoreIsOneFileToo)
{
    run(database.createZone(zone));
    {
        SqliteCloudDatabase two(store.scheduler(), store.place());
        (void)run(two.save({record("a")}));
    }
    EXPECT_EQ(files(), 1U);
}

TEST_F(SqliteCloudDatabaseTest, TheFileAloneIsTheWholeStoreRightAfterASave)
{
    run(database.createZone(zone));
    const CloudRecord a = saved(record("a"));
    std::filesystem::create_directory(store.folder() + "/copy");
    SqliteStorePlace place = store.place();
    place.path = store.folder() + "/copy/records";
    std::filesystem::copy_file(store.path(), place.path);
    SqliteCloudDatabase copy(store.scheduler(), place);
    const CloudChanges changes = run(copy.changes(zone, std::nullopt));
    ASSERT_EQ(changes.modifications.size(), 1U);
    EXPECT_EQ(std::get<CloudRecord>(changes.modifications[0].result), a);
}

TEST_F(SqliteCloudDatabaseTest, AJournalThatAnotherUserOfTheStoreNeedsStays)
{
    run(database.createZone(zone));
    (void)saved(record("a"));
    SqliteConnection& other = store.administrator();
    other.run("BEGIN IMMEDIATE");
    store.scheduler().advance(SqliteCloudDatabase::tidySeconds);
    EXPECT_EQ(files(), 2U);
    other.run("UPDATE records SET name = 'b'; COMMIT");
    store.closeOther();
    const CloudChanges changes = run(database.changes(zone, std::nullopt));
    EXPECT_EQ(changes.modifications.at(0).id.name, "b");
}

} // namespace
} // namespace KestryCore
