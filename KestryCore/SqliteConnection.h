#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace KestryCore {

/// One statement of a connection, which must outlive it. Parameters and columns are counted from
/// the left. Failures are `SqliteError`s.
class SqliteStatement {
public:
    SqliteStatement(sqlite3* connection, std::string_view sql);

    // Each binds the next parameter, and gives this.

    SqliteStatement& with(std::int64_t number);
    SqliteStatement& withText(std::string_view text);   ///< Must outlive this.
    SqliteStatement& withBytes(std::string_view bytes); ///< Must outlive this.

    /// Goes to the next row; false behind the last one.
    [[nodiscard]] bool step();
    /// Runs a statement that has no rows.
    void run();

    // Columns of the row.

    [[nodiscard]] std::int64_t number(int column) const;
    [[nodiscard]] std::string bytes(int column) const;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* statement) const;
    };

    void require(int resultCode) const;

    sqlite3* connection_;
    std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
    int bound_ = 0;
};

/// An open database file. Failures are `SqliteError`s.
class SqliteConnection {
public:
    /// Opens an existing file, for reading alone where it cannot be written. Nothing of it is read
    /// yet. A call that finds the file locked waits for `waitMilliseconds` at most.
    SqliteConnection(const std::string& path, int waitMilliseconds);

    [[nodiscard]] SqliteStatement prepare(std::string_view sql);
    /// Runs statements that have no rows that matter.
    void run(const char* statements);
    /// The first column of the first row.
    [[nodiscard]] std::int64_t number(std::string_view sql);

private:
    struct Closer {
        void operator()(sqlite3* connection) const;
    };

    std::unique_ptr<sqlite3, Closer> connection_;
};

/// A transaction, which is rolled back unless it is committed.
class SqliteTransaction {
public:
    enum class Kind {
        read,
        write, ///< No other process writes from now on.
    };

    SqliteTransaction(SqliteConnection& connection, Kind kind);
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;
    ~SqliteTransaction();

    /// When this returns, what was written is on the disk.
    void commit();

private:
    SqliteConnection& connection_;
    bool isOpen_ = true;
};

} // namespace KestryCore
