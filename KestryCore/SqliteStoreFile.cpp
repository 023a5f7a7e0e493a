#include "SqliteStoreFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <string_view>

#include "Descriptor.h"
#include "SqliteError.h"

namespace KestryCore {

namespace {

constexpr std::string_view scheme = "sqlite:";

// In the head of the file, by which other programs know it as ours.
constexpr std::int64_t applicationID = 0x4B737472;
constexpr std::int64_t formatVersion = 1;

// A call waits no longer than this for another process, because it may be the main thread's.
constexpr int waitMilliseconds = 10;

// A commit then ends with an overwritten head of the journal. To make and remove the file anew each
// time would change its folder, which is as slow as the rest together.
constexpr const char* keepJournal = "PRAGMA journal_mode = PERSIST";

// - A record's `change` is its place in the order of changes, and `version` that place with the tag
//   of the batch that wrote it.
// - `batches` has the tag of each range of changes, up to `last`: by it a cursor is recognised.
// - Only somebody else deletes rows. The triggers then note the removals, so that all devices hear
//   of them.
constexpr std::array<const char*, 8> tables{
    "CREATE TABLE store (account TEXT NOT NULL)",
    "CREATE TABLE zones (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT NOT NULL UNIQUE)",
    "CREATE TABLE batches (zone INTEGER NOT NULL, last INTEGER NOT NULL, tag TEXT NOT NULL, "
    "PRIMARY KEY (zone, last)) WITHOUT ROWID",
    "CREATE TABLE records (zone INTEGER NOT NULL, name TEXT NOT NULL, change INTEGER NOT NULL, "
    "version TEXT NOT NULL, content BLOB NOT NULL, PRIMARY KEY (zone, name))",
    "CREATE UNIQUE INDEX records_in_order ON records (zone, change)",
    "CREATE TABLE removals (zone INTEGER NOT NULL, change INTEGER NOT NULL, name TEXT NOT NULL, "
    "PRIMARY KEY (zone, change)) WITHOUT ROWID",
    "CREATE TRIGGER record_removed AFTER DELETE ON records "
    "WHEN EXISTS (SELECT 1 FROM zones WHERE id = old.zone) BEGIN "
    "INSERT INTO batches SELECT zone, max(last) + 1, lower(hex(randomblob(8))) FROM batches "
    "WHERE zone = old.zone; "
    "INSERT INTO removals SELECT zone, max(last), old.name FROM batches WHERE zone = old.zone; END",
    "CREATE TRIGGER zone_removed AFTER DELETE ON zones BEGIN "
    "DELETE FROM records WHERE zone = old.id; DELETE FROM removals WHERE zone = old.id; "
    "DELETE FROM batches WHERE zone = old.id; END",
};

std::string expectedTables()
{
    std::string all;
    for (const char* const table : tables) {
        all += table;
        all += '\n';
    }
    return all;
}

std::string foundTables(SqliteConnection& connection)
{
    SqliteStatement statement = connection.prepare(
        "SELECT sql FROM sqlite_schema WHERE sql NOT NULL AND name NOT LIKE 'sqlite_%' "
        "ORDER BY rowid");
    std::string all;
    while (statement.step()) {
        all += statement.bytes(0) + '\n';
    }
    return all;
}

/// Whether a regular file is at the path. Throws when its folder is not there, or when it is
/// something else.
bool hasFile(const std::string& path)
{
    if (!path.starts_with('/')) {
        throw CloudError("The path of the record store has to begin with a slash: " + path + ".");
    }
    struct stat found { };
    if (stat(path.c_str(), &found) == 0) {
        if (!S_ISREG(found.st_mode)) {
            throw CloudError(path + " is no file. Choose another place for the record store.");
        }
        return true;
    }
    const int code = errno;
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    if (code == ENOENT && stat(folder.c_str(), &found) != 0) {
        throw CloudError(
            "The folder " + folder + " of the record store is missing. Local data is safe.");
    }
    if (code != ENOENT) {
        throw systemFailure(path, code);
    }
    return false;
}

/// An empty file that only its owner can read, where there is none.
void makeFile(const std::string& path)
{
    const Kestry::Descriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (!file) {
        throw systemFailure(path, errno);
    }
}

} // namespace

std::optional<std::string> sqliteStorePath(const std::string& identifier)
{
    if (!identifier.starts_with(scheme)) {
        return std::nullopt;
    }
    return identifier.substr(scheme.size());
}

SqliteStoreFile::SqliteStoreFile(
    const SqliteStorePlace& place, SqliteTransaction::Kind kind, Journal afterwards)
    : connection_(std::make_unique<SqliteConnection>(place.path, waitMilliseconds))
{
    // What was acknowledged stays after a power cut, too: the device that sent it sends it no more.
    connection_->run("PRAGMA synchronous = EXTRA; PRAGMA cell_size_check = ON; "
                     "PRAGMA cache_size = -16384");
    if (afterwards == Journal::keep) {
        connection_->run(keepJournal);
    }
    transaction_ = std::make_unique<SqliteTransaction>(*connection_, kind);
}

std::optional<SqliteStoreFile> SqliteStoreFile::open(
    const SqliteStorePlace& place, SqliteTransaction::Kind kind)
{
    if (!hasFile(place.path)) {
        return std::nullopt;
    }
    SqliteStoreFile file(place, kind, Journal::keep);
    // Whoever was to make the store got no further than to make the file.
    if (file.isEmpty(place.path)) {
        return std::nullopt;
    }
    file.requireOurForm(place.path);
    return file;
}

SqliteStoreFile SqliteStoreFile::openOrMake(const SqliteStorePlace& place)
{
    if (!hasFile(place.path)) {
        if (place.whenMissing == MissingStore::isUnavailable) {
            throw storeIsMissing(place.path);
        }
        makeFile(place.path);
    }
    SqliteStoreFile file(place, SqliteTransaction::Kind::write, Journal::remove);
    if (!file.isEmpty(place.path)) {
        file.requireOurForm(place.path);
    } else if (place.whenMissing == MissingStore::make) {
        file.makeTables(place);
    } else {
        throw storeIsMissing(place.path);
    }
    return file;
}

void SqliteStoreFile::removeJournal(const SqliteStorePlace& place)
{
    if (hasFile(place.path)) {
        SqliteConnection connection(place.path, 0);
        connection.run(keepJournal);
        connection.run("PRAGMA journal_mode = DELETE");
    }
}

bool SqliteStoreFile::isEmpty(const std::string& path)
{
    // Looking inside first takes back what somebody was killed in the middle of.
    if (connection_->number("PRAGMA application_id") != 0) {
        return false;
    }
    struct stat found { };
    if (stat(path.c_str(), &found) != 0) {
        throw systemFailure(path, errno);
    }
    return found.st_size == 0;
}

void SqliteStoreFile::requireOurForm(const std::string& path)
{
    if (connection_->number("PRAGMA application_id") != applicationID) {
        throw storeIsForeign(path);
    }
    if (connection_->number("PRAGMA user_version") > formatVersion) {
        throw storeIsNewer(path);
    }
    if (foundTables(*connection_) != expectedTables()) {
        throw storeIsDamaged(path);
    }
}

void SqliteStoreFile::makeTables(const SqliteStorePlace& place)
{
    connection_->run(("PRAGMA application_id = " + std::to_string(applicationID)
        + "; PRAGMA user_version = " + std::to_string(formatVersion))
                         .c_str());
    for (const char* const table : tables) {
        connection_->run(table);
    }
    // Two files are two accounts, though of one user: a ledger does not go from one to the other.
    const std::string account = place.user + ' ' + place.newUuid().text();
    connection_->prepare("INSERT INTO store VALUES (?)").withText(account).run();
}

std::string SqliteStoreFile::account()
{
    SqliteStatement statement = connection_->prepare("SELECT account FROM store");
    return statement.step() ? statement.bytes(0) : std::string();
}

} // namespace KestryCore
