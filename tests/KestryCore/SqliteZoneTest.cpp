#include "SqliteZone.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <map>
#include <set>

#include "SqliteStoreFile.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

const CloudZoneID zoneID{"Zone"};

/// One zone in a file, in a transaction that is never committed, with small pages; and beside it
/// what it has to hold.
class SqliteZoneTest : public testing::Test {
protected:
    SqliteZoneTest() { SqliteZone::make(file.connection(), zoneID, Uuid::random); }

    [[nodiscard]] SqliteZone zone() { return *SqliteZone::find(file.connection(), zoneID); }
    [[nodiscard]] static CloudRecord record(const std::string& name, const std::string& text)
    {
        return {{name, zoneID}, "Type", {}, {{"text", text}}};
    }
    CloudRecordResult save(const CloudRecord& record)
    {
        return zone().save(std::span(&record, 1), Uuid::random).at(0);
    }
    void remove(const std::string& name)
    {
        file.connection().prepare("DELETE FROM records WHERE name = ?").withText(name).run();
    }

    TemporaryDirectory directory;
    SqliteStoreFile file =
        SqliteStoreFile::openOrMake({directory.path("records"), "ada", MissingStore::make});
};

/// A device that reads page by page, whenever it comes to it.
struct Reader {
    std::optional<CloudCursor> cursor;
    std::map<std::string, CloudRecord> records;
    bool moreComing = true;

    void readPage(SqliteZone zone, std::size_t pageBytes)
    {
        const CloudChanges page = zone.changes(cursor, pageBytes);
        for (const CloudRecordResult& modification : page.modifications) {
            records[modification.id.name] = std::get<CloudRecord>(modification.result);
        }
        for (const CloudRecordID& deletion : page.deletions) {
            records.erase(deletion.name);
        }
        cursor = page.cursor;
        moreComing = page.moreComing;
    }
};

TEST_F(SqliteZoneTest, WhoReadsToTheEndHasWhatIsThereWhateverHappensBetweenPages)
{
    EXPECT_TRUE(rc::check([this] {
        file.connection().run("DELETE FROM zones");
        SqliteZone::make(file.connection(), zoneID, Uuid::random);
        std::map<std::string, CloudRecord> there;
        std::vector<Reader> readers(3);
        const int steps = *rc::gen::inRange(0, 60);
        for (int step = 0; step < steps; ++step) {
            const std::string name(1, *rc::gen::elementOf(std::string("abcdef")));
            const int what = *rc::gen::inRange(0, 10);
            if (what == 0 && there.contains(name)) {
                remove(name);
                there.erase(name);
            } else if (what < 6) {
                CloudRecord next = there.contains(name) ? there[name] : record(name, "");
                next.fields["text"] = std::string(*rc::gen::inRange<std::size_t>(0, 80), 'x');
                there[name] = std::get<CloudRecord>(save(next).result);
            } else {
                readers[*rc::gen::inRange<std::size_t>(0, 3)].readPage(zone(), 150);
            }
        }
        for (Reader& reader : readers) {
            do {
                reader.readPage(zone(), 150);
            } while (reader.moreComing);
            RC_ASSERT(reader.records == there);
        }
    }));
}

TEST_F(SqliteZoneTest, ACursorThatWasTamperedWithIsRefusedOrLeavesNothingNewOut)
{
    for (const char* const name : {"a", "b", "c", "d", "e"}) {
        (void)save(record(name, "text"));
    }
    const std::string cursor = zone().changes(std::nullopt, 1'000).cursor.bytes;
    (void)save(record("f", "text"));
    EXPECT_TRUE(rc::check([&] {
        std::string bytes = cursor;
        const auto index = *rc::gen::inRange<std::size_t>(0, bytes.size());
        bytes[index] = *rc::gen::elementOf(std::string("0123456789abcdef-"));
        try {
            const CloudChanges changes = zone().changes(CloudCursor{bytes}, 1'000);
            RC_ASSERT(changes.modifications.size() == 1U);
            RC_ASSERT(changes.modifications[0].id.name == "f");
        } catch (const CloudError& failure) {
            const bool isExpired = failure.code() == CloudErrorCode::changeTokenExpired;
            RC_ASSERT(isExpired || failure.code() == CloudErrorCode::storeReplaced);
        }
    }));
}

} // namespace
} // namespace KestryCore
