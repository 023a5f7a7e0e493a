// Saves over the version that the sender has, and over no other.

#include "CloudContract.h"

namespace KestryCore {
namespace {

/// Such a text as a store may have given for a version of another record.
const std::vector<std::string> foreignVersions{
    "1-967a00dff5e02add41819138abb3284d", "1", "v", "\n"};

TEST_P(CloudContract, ARecordThatIsSavedHasAVersionAndIsOtherwiseAsSent)
{
    makeZone();
    const CloudRecord sent = record("a");
    CloudRecord a = saved(one(), sent);
    EXPECT_EQ(stored("a"), a);
    EXPECT_NE(a.serverVersion, "");
    a.serverVersion.clear();
    EXPECT_EQ(a, sent);
}

TEST_P(CloudContract, ASaveOverTheVersionOfTheStoreGivesANewVersion)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a"));
    const CloudRecord second = saved(one(), changed(first, "second"));
    EXPECT_NE(second.serverVersion, first.serverVersion);
    const CloudRecord third = saved(two(), changed(second, "third"));
    EXPECT_NE(third.serverVersion, second.serverVersion);
    EXPECT_EQ(stored("a"), third);
}

TEST_P(CloudContract, ASaveReplacesAllFields)
{
    makeZone();
    CloudRecord first = saved(one(), record("a"));
    first.fields.erase("bytes");
    first.fields["more"] = "field";
    const CloudRecord second = saved(one(), first);
    EXPECT_EQ(stored("a"), second);
    EXPECT_EQ(second.fields, first.fields);
}

TEST_P(CloudContract, ARecordWithoutFieldsCanBeSaved)
{
    makeZone();
    const CloudRecord empty = saved(one(), {recordID("a"), "KestryRecord", {}, {}});
    EXPECT_TRUE(empty.fields.empty());
    EXPECT_EQ(stored("a"), empty);
}

TEST_P(CloudContract, ASaveOverAnOldVersionIsRefusedWithTheServersRecord)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a"));
    const CloudRecord second = saved(one(), changed(first, "second"));
    expectChanged(refused(two(), changed(first, "late")), second);
    EXPECT_EQ(stored("a"), second);
}

TEST_P(CloudContract, ASaveWithoutAVersionIsRefusedWhereThereIsARecord)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a"));
    expectChanged(refused(two(), record("a", "other")), first);
    EXPECT_EQ(stored("a"), first);
}

TEST_P(CloudContract, ASaveOverAVersionThatTheStoreNeverGaveIsRefused)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a"));
    for (const std::string& version : foreignVersions) {
        CloudRecord stranger = record("a", "other");
        stranger.serverVersion = version;
        expectChanged(refused(two(), stranger), first);
    }
    EXPECT_EQ(stored("a"), first);
}

TEST_P(CloudContract, AfterARefusalTheServersVersionCanBeSavedOver)
{
    makeZone();
    (void)saved(one(), record("a"));
    const CloudError refusal = refused(two(), record("a", "other"));
    ASSERT_NE(refusal.serverRecord(), nullptr);
    const CloudRecord next = saved(two(), changed(*refusal.serverRecord(), "other"));
    EXPECT_EQ(stored("a"), next);
}

TEST_P(CloudContract, ASaveOverAVersionOfARecordThatIsNotThereMakesNone)
{
    makeZone();
    for (const std::string& version : foreignVersions) {
        CloudRecord stranger = record("a");
        stranger.serverVersion = version;
        EXPECT_EQ(refused(one(), stranger).serverRecord(), nullptr);
    }
    EXPECT_FALSE(stored("a").has_value());
}

TEST_P(CloudContract, ASaveOverARemovedRecordMakesNone)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a"));
    store().removeRecord(recordID("a"));
    EXPECT_EQ(refused(two(), changed(first, "late")).serverRecord(), nullptr);
    EXPECT_FALSE(stored("a").has_value());
}

TEST_P(CloudContract, ASaveOverAVersionOfAZoneMadeAnewMakesNone)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a"));
    store().removeZone(zone);
    makeZone();
    EXPECT_EQ(refused(one(), changed(first, "late")).serverRecord(), nullptr);
    const CloudRecord other = saved(two(), record("a", "other"));
    expectChanged(refused(one(), changed(first, "late")), other);
}

TEST_P(CloudContract, TheSameSaveAgainIsTakenOrShowsWhatWasSent)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a"));
    const CloudRecord next = changed(first, "next");
    const CloudRecord second = saved(one(), next);
    const Results again = save(one(), {next});
    const CloudRecordResult& result = again.at("a");
    const CloudRecord* server = std::get_if<CloudRecord>(&result.result);
    if (server == nullptr) {
        server = std::get<CloudError>(result.result).serverRecord();
    }
    ASSERT_NE(server, nullptr);
    EXPECT_EQ(server->fields, next.fields);
    const CloudRecord last = saved(one(), changed(*server, "last"));
    EXPECT_EQ(stored("a"), last);
}

TEST_P(CloudContract, EachRecordOfABatchIsSavedOrRefusedForItself)
{
    makeZone();
    const CloudRecord a = saved(one(), record("a"));
    const CloudRecord b = saved(one(), record("b"));
    const CloudRecord newB = saved(two(), changed(b, "new"));
    CloudRecord gone = record("d");
    gone.serverVersion = foreignVersions.front();
    const Results results =
        save(one(), {changed(a, "next"), changed(b, "late"), record("c"), gone});
    EXPECT_TRUE(isSaved(results.at("a")));
    ASSERT_FALSE(isSaved(results.at("b")));
    expectChanged(std::get<CloudError>(results.at("b").result), newB);
    EXPECT_TRUE(isSaved(results.at("c")));
    EXPECT_FALSE(isSaved(results.at("d")));
    EXPECT_EQ(read(two()).records.size(), 3U);
}

TEST_P(CloudContract, AnEmptyBatchHasNoResults)
{
    makeZone();
    EXPECT_TRUE(run(one().save({})).empty());
}

TEST_P(CloudContract, AThousandRecordsAreSavedInOneBatch)
{
    makeZone();
    std::vector<CloudRecord> records;
    for (int number = 0; number < 1'000; ++number) {
        records.push_back(record("record " + std::to_string(number), std::to_string(number)));
    }
    std::map<std::string, CloudRecord> expected;
    for (const auto& [name, result] : save(one(), records)) {
        ASSERT_TRUE(isSaved(result)) << name;
        expected[name] = std::get<CloudRecord>(result.result);
    }
    EXPECT_EQ(expected.size(), 1'000U);
    EXPECT_EQ(read(two()).records, expected);
}

TEST_P(CloudContract, OfTwoSavesOverOneVersionAtOnceExactlyOneWins)
{
    makeZone();
    CloudRecord current = saved(one(), record("a"));
    for (int round = 0; round < 20; ++round) {
        const auto first = begin(one().save({changed(current, "one")}));
        const auto second = begin(two().save({changed(current, "two")}));
        const CloudRecordResult ofOne = finish(first).at(0);
        const CloudRecordResult ofTwo = finish(second).at(0);
        ASSERT_NE(isSaved(ofOne), isSaved(ofTwo)) << "in round " << round;
        current = std::get<CloudRecord>((isSaved(ofOne) ? ofOne : ofTwo).result);
        expectChanged(std::get<CloudError>((isSaved(ofOne) ? ofTwo : ofOne).result), current);
    }
    EXPECT_EQ(stored("a"), current);
}

TEST_P(CloudContract, OfTwoThatMakeARecordAtOnceExactlyOneWins)
{
    makeZone();
    const auto first = begin(one().save({record("a", "one")}));
    const auto second = begin(two().save({record("a", "two")}));
    const CloudRecordResult ofOne = finish(first).at(0);
    const CloudRecordResult ofTwo = finish(second).at(0);
    ASSERT_NE(isSaved(ofOne), isSaved(ofTwo));
    const CloudRecord winner = std::get<CloudRecord>((isSaved(ofOne) ? ofOne : ofTwo).result);
    expectChanged(std::get<CloudError>((isSaved(ofOne) ? ofTwo : ofOne).result), winner);
    EXPECT_EQ(stored("a"), winner);
}

TEST_P(CloudContract, ATaskThatNobodyAwaitsDoesNothing)
{
    makeZone();
    {
        const Task<std::vector<CloudRecordResult>> unused = one().save({record("a")});
    }
    EXPECT_FALSE(stored("a").has_value());
}

TEST_P(CloudContract, ASaveThatIsLetGoHappensWhollyOrNotAtAll)
{
    makeZone();
    const CloudRecord sent = record("a");
    (void)begin(one().save({sent}));
    letGo();
    const auto a = stored("a");
    EXPECT_TRUE(!a || a->fields == sent.fields);
    const CloudRecord b = saved(one(), record("b"));
    EXPECT_EQ(stored("b"), b);
}

} // namespace
} // namespace KestryCore
