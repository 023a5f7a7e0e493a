#include "SqliteError.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cerrno>

namespace KestryCore {
namespace {

std::string wordsFor(int resultCode, int systemCode = 0)
{
    return sqliteFailure(SqliteError("", resultCode, systemCode), "/s").what();
}

TEST(SqliteError, AFullDiskIsTold)
{
    const std::string words = "There is no space left for the record store /s. Your local changes "
                              "are saved and will retry.";
    EXPECT_EQ(wordsFor(SQLITE_FULL), words);
    for (const int code : {ENOSPC, EDQUOT, EFBIG}) {
        EXPECT_EQ(wordsFor(SQLITE_IOERR_WRITE, code), words);
    }
}

TEST(SqliteError, DamageIsTold)
{
    EXPECT_EQ(wordsFor(SQLITE_CORRUPT_INDEX),
        "The record store /s is damaged. Local data is safe; restore the file from a backup.");
}

TEST(SqliteError, AFileOfAnotherKindIsTold)
{
    EXPECT_EQ(wordsFor(SQLITE_NOTADB), "/s is no record store of Kestry. Choose another file.");
}

TEST(SqliteError, AFileThatCannotBeWrittenIsTold)
{
    EXPECT_EQ(wordsFor(SQLITE_READONLY_DIRECTORY),
        "The record store /s cannot be written to. Your "
        "local changes are saved and will retry.");
}

TEST(SqliteError, AFileThatAnotherProgramHasIsTold)
{
    EXPECT_EQ(wordsFor(SQLITE_BUSY_SNAPSHOT),
        "Another program keeps the record store /s to "
        "itself. Your local changes are saved and will "
        "retry.");
}

TEST(SqliteError, OtherFailuresAreToldInTheWordsOfTheSystem)
{
    EXPECT_EQ(wordsFor(SQLITE_IOERR_READ, EIO),
        "The record store /s could not be used: Input/output error.");
    EXPECT_EQ(wordsFor(SQLITE_CANTOPEN, EACCES),
        "The record store /s could not be used: Permission denied.");
    EXPECT_EQ(wordsFor(SQLITE_NOMEM), "There isn't enough memory for the record store /s.");
    EXPECT_EQ(wordsFor(SQLITE_SCHEMA),
        "The record store /s could not be used: database schema has changed.");
}

TEST(SqliteError, NoneOfThemIsTakenForAnythingThatReplicationTreatsInItsOwnWay)
{
    for (int code = 1; code <= SQLITE_NOTADB; ++code) {
        EXPECT_EQ(sqliteFailure(SqliteError("", code, 0), "/s").code(), CloudErrorCode::other);
    }
}

} // namespace
} // namespace KestryCore
