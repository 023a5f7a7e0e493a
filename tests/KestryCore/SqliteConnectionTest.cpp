#include "SqliteConnection.h"

#include <gtest/gtest.h>

#include <fstream>

#include "SqliteError.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

class SqliteConnectionTest : public testing::Test {
protected:
    SqliteConnectionTest()
    {
        std::ofstream(path).flush();
        open().run("CREATE TABLE things (name TEXT, content BLOB)");
    }
    [[nodiscard]] SqliteConnection open() const { return {path, 0}; }
    [[nodiscard]] std::int64_t count() const
    {
        return open().number("SELECT count(*) FROM things");
    }

    TemporaryDirectory directory;
    std::string path = directory.path("file");
};

TEST_F(SqliteConnectionTest, BoundValuesComeBack)
{
    const std::string name("a\0b", 3);
    SqliteConnection connection = open();
    connection.prepare("INSERT INTO things VALUES (?, ?)").withText(name).withBytes({}).run();
    SqliteStatement reading = connection.prepare("SELECT name, length(content) FROM things");
    ASSERT_TRUE(reading.step());
    EXPECT_EQ(reading.bytes(0), name);
    EXPECT_EQ(reading.number(1), 0);
    EXPECT_FALSE(reading.step());
}

TEST_F(SqliteConnectionTest, ATransactionIsRolledBackUnlessItIsCommitted)
{
    SqliteConnection connection = open();
    {
        const SqliteTransaction dropped(connection, SqliteTransaction::Kind::write);
        connection.run("INSERT INTO things (name) VALUES ('a')");
    }
    EXPECT_EQ(count(), 0);
    SqliteTransaction kept(connection, SqliteTransaction::Kind::write);
    connection.run("INSERT INTO things (name) VALUES ('b')");
    kept.commit();
    EXPECT_EQ(count(), 1);
}

TEST_F(SqliteConnectionTest, OnlyOneWritesAtATime)
{
    SqliteConnection one = open();
    const SqliteTransaction first(one, SqliteTransaction::Kind::write);
    SqliteConnection two = open();
    try {
        const SqliteTransaction second(two, SqliteTransaction::Kind::write);
        ADD_FAILURE();
    } catch (const SqliteError& failure) {
        EXPECT_TRUE(failure.isInUse());
    }
}

TEST_F(SqliteConnectionTest, AFileThatIsNotThereIsNotMade)
{
    try {
        const SqliteConnection none(directory.path("none"), 0);
        ADD_FAILURE();
    } catch (const SqliteError& failure) {
        EXPECT_FALSE(failure.isInUse());
    }
}

} // namespace
} // namespace KestryCore
