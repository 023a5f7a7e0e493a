// What has changed since a cursor.

#include "CloudContract.h"

namespace KestryCore {
namespace {

TEST_P(CloudContract, ANewZoneHasNoChangesAndACursor)
{
    makeZone();
    const CloudChanges changes = run(one().changes(zone, std::nullopt));
    EXPECT_TRUE(changes.modifications.empty());
    EXPECT_TRUE(changes.deletions.empty());
    EXPECT_FALSE(changes.moreComing);
    (void)saved(two(), record("a"));
    EXPECT_EQ(read(one(), changes.cursor).records.size(), 1U);
}

TEST_P(CloudContract, FromNothingEachRecordIsToldInItsLatestVersion)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a", "old"));
    const CloudRecord a = saved(two(), changed(first, "new"));
    const CloudRecord b = saved(two(), record("b"));
    const Reading reading = read(one());
    EXPECT_EQ(reading.records, (std::map<std::string, CloudRecord>{{"a", a}, {"b", b}}));
}

TEST_P(CloudContract, FromACursorOnlyWhatChangedSinceIsTold)
{
    makeZone();
    const CloudRecord a = saved(one(), record("a"));
    (void)saved(one(), record("b"));
    const CloudCursor cursor = read(two()).cursor;
    const CloudRecord newA = saved(one(), changed(a, "new"));
    const CloudRecord c = saved(one(), record("c"));
    const Reading reading = read(two(), cursor);
    EXPECT_EQ(reading.records, (std::map<std::string, CloudRecord>{{"a", newA}, {"c", c}}));
}

TEST_P(CloudContract, AZoneAtRestTellsNothingAndLeavesTheCursorAsItIs)
{
    makeZone();
    (void)saved(one(), record("a"));
    const CloudCursor cursor = read(one()).cursor;
    const CloudChanges changes = run(one().changes(zone, cursor));
    EXPECT_TRUE(changes.modifications.empty());
    EXPECT_TRUE(changes.deletions.empty());
    EXPECT_FALSE(changes.moreComing);
    EXPECT_EQ(changes.cursor, cursor);
}

TEST_P(CloudContract, ASaveThatWasRefusedIsNoChange)
{
    makeZone();
    (void)saved(one(), record("a"));
    const CloudCursor cursor = read(one()).cursor;
    (void)refused(two(), record("a", "other"));
    EXPECT_TRUE(read(one(), cursor).records.empty());
}

TEST_P(CloudContract, ADeviceIsToldOfItsOwnSaves)
{
    makeZone();
    const CloudCursor cursor = read(one()).cursor;
    const CloudRecord a = saved(one(), record("a"));
    EXPECT_EQ(read(one(), cursor).records.at("a"), a);
}

TEST_P(CloudContract, ACursorServesAgainAndAfterANewStart)
{
    makeZone();
    const CloudCursor cursor = read(one()).cursor;
    const CloudRecord a = saved(two(), record("a"));
    EXPECT_EQ(read(one(), cursor).records.at("a"), a);
    restart();
    EXPECT_EQ(read(one(), cursor).records.at("a"), a);
}

TEST_P(CloudContract, ManyBytesComeInPagesThatLeaveNothingOut)
{
    makeZone();
    const std::size_t large = store().pageBytes() / 3;
    std::map<std::string, CloudRecord> expected;
    for (const char* const name : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
        CloudRecord full = record(name);
        full.fields["bytes"] = CloudBytes{std::string(large, name[0])};
        expected[name] = saved(one(), full);
    }
    const Reading reading = read(two());
    EXPECT_EQ(reading.records, expected);
    EXPECT_GE(reading.pages, 2);
    EXPECT_TRUE(read(two(), reading.cursor).records.empty());
}

TEST_P(CloudContract, APageIsBoundedInBytes)
{
    makeZone();
    for (const char* const name : {"a", "b", "c", "d", "e"}) {
        CloudRecord full = record(name);
        full.fields["bytes"] = CloudBytes{std::string(store().pageBytes() / 2, 'x')};
        (void)saved(one(), full);
    }
    std::optional<CloudCursor> cursor;
    bool moreComing = true;
    for (int pages = 0; moreComing && pages < 10; ++pages) {
        const CloudChanges page = run(two().changes(zone, cursor));
        std::size_t bytes = 0;
        for (const CloudRecordResult& modification : page.modifications) {
            EXPECT_LT(bytes, store().pageBytes()) << "the page was full before this record";
            bytes += bytesOf(std::get<CloudRecord>(modification.result));
        }
        cursor = page.cursor;
        moreComing = page.moreComing;
    }
    EXPECT_FALSE(moreComing);
}

TEST_P(CloudContract, WhatChangesBetweenPagesIsReadToo)
{
    makeZone();
    const std::size_t large = store().pageBytes() / 2 + 1;
    std::map<std::string, CloudRecord> expected;
    for (const char* const name : {"a", "b", "c", "d"}) {
        CloudRecord full = record(name);
        full.fields["bytes"] = CloudBytes{std::string(large, 'x')};
        expected[name] = saved(one(), full);
    }
    const CloudChanges page = run(two().changes(zone, std::nullopt));
    ASSERT_TRUE(page.moreComing);
    for (const char* const name : {"a", "d"}) {
        expected[name] = saved(one(), changed(expected.at(name), "new"));
    }
    Reading reading = read(two(), page.cursor);
    for (const CloudRecordResult& earlier : page.modifications) {
        reading.records.emplace(earlier.id.name, std::get<CloudRecord>(earlier.result));
    }
    EXPECT_EQ(reading.records, expected);
}

TEST_P(CloudContract, BytesThatAreNoCursorCountAsExpired)
{
    makeZone();
    (void)saved(one(), record("a"));
    for (const std::string& bytes :
        {std::string(), std::string("garbage"), std::string("\0\xff\n", 3), std::string("0"),
            std::string("99999999999999999999999"), std::string("-1"), std::string(100'000, '9')}) {
        expectFailure(one().changes(zone, CloudCursor{bytes}), CloudErrorCode::changeTokenExpired);
    }
}

TEST_P(CloudContract, ACursorOfAZoneMadeAnewIsRefused)
{
    const CloudErrorCode code = store().codeOfZoneMadeAnew();
    makeZone();
    const CloudCursor empty = read(one()).cursor;
    (void)saved(one(), record("a"));
    const CloudCursor full = read(one()).cursor;
    store().removeZone(zone);
    makeZone();
    expectFailure(one().changes(zone, empty), code);
    expectFailure(one().changes(zone, full), code);
    (void)saved(one(), record("b"));
    (void)saved(one(), record("c"));
    expectFailure(one().changes(zone, full), code);
    EXPECT_EQ(read(one()).records.size(), 2U);
}

TEST_P(CloudContract, ARemovedRecordIsTold)
{
    makeZone();
    (void)saved(one(), record("a"));
    (void)saved(one(), record("b"));
    const CloudCursor cursor = read(two()).cursor;
    store().removeRecord(recordID("a"));
    const Reading reading = read(two(), cursor);
    EXPECT_EQ(reading.deletions, (std::set<std::string>{"a"}));
    EXPECT_TRUE(reading.records.empty());
    EXPECT_FALSE(stored("a").has_value());
    EXPECT_TRUE(stored("b").has_value());
}

TEST_P(CloudContract, ARemovalIsToldOfARecordThatChangedSinceTheCursorToo)
{
    makeZone();
    const CloudRecord a = saved(one(), record("a"));
    const CloudCursor cursor = read(two()).cursor;
    (void)saved(one(), changed(a, "new"));
    store().removeRecord(recordID("a"));
    EXPECT_EQ(read(two(), cursor).deletions, (std::set<std::string>{"a"}));
}

TEST_P(CloudContract, ARemovedRecordThatIsSavedAnewIsARecord)
{
    makeZone();
    (void)saved(one(), record("a", "old"));
    const CloudCursor cursor = read(two()).cursor;
    store().removeRecord(recordID("a"));
    const CloudRecord again = saved(one(), record("a", "again"));
    const Reading reading = read(two(), cursor);
    EXPECT_EQ(reading.records, (std::map<std::string, CloudRecord>{{"a", again}}));
    EXPECT_TRUE(reading.deletions.empty());
}

} // namespace
} // namespace KestryCore
