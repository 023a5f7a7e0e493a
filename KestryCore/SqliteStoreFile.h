#pragma once

#include <memory>
#include <optional>
#include <string>

#include "SqliteConnection.h"
#include "Uuid.h"

namespace KestryCore {

/// What to do when the file of a record store is not there.
enum class MissingStore {
    make,         ///< It is the first time: an empty store is made when one is needed.
    isUnavailable ///< There was one. It may be on a disk that is not there now, so none is made.
};

/// Where a record store is kept, and for whom.
struct SqliteStorePlace {
    std::string path; ///< Absolute. A symbolic link is followed.
    /// The user of this machine, who becomes a part of the account's name when the file is made.
    std::string user;
    MissingStore whenMissing = MissingStore::isUnavailable;
    UuidSource newUuid = Uuid::random;
};

/// The path in a container identifier of the form `sqlite:PATH`; nullopt for other identifiers.
[[nodiscard]] std::optional<std::string> sqliteStorePath(const std::string& identifier);

/// The file of a record store, open for one operation, in a transaction. Nothing of it is written
/// unless `commit` is called.
///
/// A file is opened anew for each operation: so one that was moved, replaced or restored meanwhile
/// is seen, and no lock or descriptor stays behind. It is one file whenever no operation is under
/// way, which can be copied; one that was interrupted leaves a journal beside it, by which the next
/// to open the file takes back what was not committed. A write to a store that is there leaves a
/// journal that says nothing, so that the next one need not make it anew, which costs more than
/// all the rest: `removeJournal` when no other write is to follow soon.
///
/// Opening throws `CloudError` for a file that is none of ours, in words, and `SqliteError` for the
/// rest.
class SqliteStoreFile {
public:
    /// Opens the store; nullopt when there is none, be it for want of a file. Throws when the
    /// folder it belongs to is not there either.
    [[nodiscard]] static std::optional<SqliteStoreFile> open(
        const SqliteStorePlace& place, SqliteTransaction::Kind kind);
    /// Opens the store for writing, which is made when there is none.
    [[nodiscard]] static SqliteStoreFile openOrMake(const SqliteStorePlace& place);
    /// Removes the journal that a write has left, unless another process uses the store.
    static void removeJournal(const SqliteStorePlace& place);

    [[nodiscard]] SqliteConnection& connection() { return *connection_; }
    /// The name of the account whose store it is, which is as old as the file.
    [[nodiscard]] std::string account();
    void commit() { transaction_->commit(); }

private:
    enum class Journal { remove, keep };
    SqliteStoreFile(
        const SqliteStorePlace& place, SqliteTransaction::Kind kind, Journal afterwards);

    [[nodiscard]] bool isEmpty(const std::string& path);
    void requireOurForm(const std::string& path);
    void makeTables(const SqliteStorePlace& place);

    std::unique_ptr<SqliteConnection> connection_; // at one address, for the transaction
    std::unique_ptr<SqliteTransaction> transaction_;
};

} // namespace KestryCore
