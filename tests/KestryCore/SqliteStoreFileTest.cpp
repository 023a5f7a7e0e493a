#include "SqliteStoreFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "CloudError.h"
#include "SqliteError.h"
#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

class SqliteStoreFileTest : public testing::Test {
protected:
    void make() { SqliteStoreFile::openOrMake(place()).commit(); }
    [[nodiscard]] SqliteStorePlace place(MissingStore whenMissing = MissingStore::make) const
    {
        return {path, "ada", whenMissing};
    }
    /// What opening the store is refused with; "(none)" when there is none.
    [[nodiscard]] std::string refusal() const
    {
        try {
            return SqliteStoreFile::open(place(), SqliteTransaction::Kind::read) ? "(opened)"
                                                                                 : "(none)";
        } catch (const CloudError& failure) {
            return failure.what();
        } catch (const SqliteError& failure) {
            return sqliteFailure(failure, path).what();
        }
    }
    void change(const char* sql) const { SqliteConnection(path, 0).run(sql); }
    void write(const std::string& bytes) const { std::ofstream(path, std::ios::binary) << bytes; }
    [[nodiscard]] std::string bytes() const
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] std::string foreign() const
    {
        return path + " is no record store of Kestry. Choose another file.";
    }
    [[nodiscard]] std::string damaged() const
    {
        return "The record store " + path
            + " is damaged. Local data is safe; restore the file from a backup.";
    }

    TemporaryDirectory directory;
    std::string path = directory.path("records");
};

TEST_F(SqliteStoreFileTest, TheIdentifierOfAStoreNamesItsPath)
{
    EXPECT_EQ(sqliteStorePath("sqlite:/home/ada/records"), "/home/ada/records");
    EXPECT_EQ(sqliteStorePath("https://example.org"), std::nullopt);
    EXPECT_EQ(sqliteStorePath("sqlite"), std::nullopt);
}

TEST_F(SqliteStoreFileTest, APathThatDependsOnTheWorkingDirectoryIsRefused)
{
    path = "records";
    EXPECT_EQ(refusal(), "The path of the record store has to begin with a slash: records.");
}

TEST_F(SqliteStoreFileTest, NothingIsMadeByLooking)
{
    EXPECT_EQ(refusal(), "(none)");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(SqliteStoreFileTest, AStoreThatIsMadeIsForItsOwnerAlone)
{
    make();
    struct stat found { };
    ASSERT_EQ(stat(path.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777U, 0600U);
    EXPECT_EQ(refusal(), "(opened)");
}

TEST_F(SqliteStoreFileTest, AStoreIsOneFile)
{
    make();
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
        names.push_back(entry.path().filename());
    }
    EXPECT_EQ(names, std::vector<std::string>{"records"});
}

TEST_F(SqliteStoreFileTest, AStoreIsMadeOnlyOnceAndKeepsItsAccount)
{
    make();
    const std::string account = SqliteStoreFile::openOrMake(place()).account();
    EXPECT_TRUE(account.starts_with("ada ")) << account;
    make();
    EXPECT_EQ(SqliteStoreFile::openOrMake(place()).account(), account);
}

TEST_F(SqliteStoreFileTest, TwoFilesAreTwoAccounts)
{
    make();
    const std::string account = SqliteStoreFile::openOrMake(place()).account();
    path = directory.path("others");
    make();
    EXPECT_NE(SqliteStoreFile::openOrMake(place()).account(), account);
}

TEST_F(SqliteStoreFileTest, WhatIsNotCommittedIsNotThere)
{
    (void)SqliteStoreFile::openOrMake(place());
    EXPECT_EQ(refusal(), "(none)");
    make();
    EXPECT_EQ(refusal(), "(opened)");
}

TEST_F(SqliteStoreFileTest, AStoreThatIsMissingIsNotMadeAnew)
{
    for (const bool isEmpty : {false, true}) {
        if (isEmpty) {
            write("");
        }
        try {
            (void)SqliteStoreFile::openOrMake(place(MissingStore::isUnavailable));
            ADD_FAILURE();
        } catch (const CloudError& failure) {
            EXPECT_EQ(
                failure.what(), "The record store " + path + " is missing. Local data is safe.");
        }
    }
    EXPECT_EQ(bytes(), "");
}

TEST_F(SqliteStoreFileTest, AMissingFolderIsTold)
{
    path = directory.path("stick/records");
    EXPECT_EQ(refusal(),
        "The folder " + directory.path("stick/")
            + " of the record store is missing. Local data is safe.");
}

TEST_F(SqliteStoreFileTest, AFolderInPlaceOfTheFileIsTold)
{
    std::filesystem::create_directory(path);
    EXPECT_EQ(refusal(), path + " is no file. Choose another place for the record store.");
}

TEST_F(SqliteStoreFileTest, AFolderThatIsAFileIsTold)
{
    write("x");
    path += "/records";
    EXPECT_EQ(refusal(), "The record store " + path + " could not be used: Not a directory.");
}

TEST_F(SqliteStoreFileTest, ASymbolicLinkLeadsToTheStore)
{
    std::filesystem::create_symlink(directory.path("target"), path);
    make();
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    const std::string account = SqliteStoreFile::openOrMake(place()).account();
    path = directory.path("target");
    EXPECT_EQ(SqliteStoreFile::openOrMake(place()).account(), account);
}

TEST_F(SqliteStoreFileTest, AFileOfAnotherKindIsRefusedAndStaysAsItIs)
{
    for (const std::string& content : {std::string("x"), std::string("Dear diary"),
             std::string(8192, '\0'), std::string("SQLite format 3")}) {
        write(content);
        EXPECT_EQ(refusal(), foreign());
        EXPECT_THROW((void)SqliteStoreFile::openOrMake(place()), std::runtime_error);
        EXPECT_EQ(bytes(), content);
    }
}

TEST_F(SqliteStoreFileTest, ADatabaseOfAnotherProgramIsRefusedAndStaysAsItIs)
{
    write("");
    change("CREATE TABLE songs (title TEXT)");
    const std::string before = bytes();
    EXPECT_EQ(refusal(), foreign());
    EXPECT_THROW((void)SqliteStoreFile::openOrMake(place()), CloudError);
    EXPECT_EQ(bytes(), before);
}

TEST_F(SqliteStoreFileTest, AStoreOfANewerFormIsRefused)
{
    make();
    change("PRAGMA user_version = 2");
    EXPECT_EQ(refusal(),
        "The record store " + path + " is of a newer Kestry. Update Kestry before retrying.");
}

TEST_F(SqliteStoreFileTest, OtherTablesThanOursAreDamage)
{
    make();
    change("CREATE TRIGGER evil AFTER INSERT ON records BEGIN DELETE FROM records; END");
    EXPECT_EQ(refusal(), damaged());
}

TEST_F(SqliteStoreFileTest, AFileThatWasCutOffIsDamaged)
{
    make();
    write(bytes().substr(0, 4096));
    EXPECT_EQ(refusal(), damaged());
}

TEST_F(SqliteStoreFileTest, APathThatTheSystemRefusesIsTold)
{
    make();
    std::filesystem::create_directory(directory.path("loop"));
    std::filesystem::create_symlink(directory.path("loop/a"), directory.path("loop/a"));
    path = directory.path("loop/a");
    EXPECT_EQ(refusal(),
        "The record store " + path + " could not be used: Too many levels of symbolic links.");
}

} // namespace
} // namespace KestryCore
