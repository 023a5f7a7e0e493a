#include "SqliteConnection.h"

#include <sqlite3.h>

#include "SqliteError.h"

namespace KestryCore {

namespace {

SqliteError errorOf(sqlite3* connection)
{
    return {sqlite3_errmsg(connection), sqlite3_extended_errcode(connection),
        sqlite3_system_errno(connection)};
}

// An empty text has no address of its own, and one without an address would be bound as nothing.
const char* addressOf(std::string_view text)
{
    return text.empty() ? "" : text.data();
}

} // namespace

void SqliteStatement::Finalizer::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement); // The failure it gives was told before.
}

SqliteStatement::SqliteStatement(sqlite3* connection, std::string_view sql)
    : connection_(connection)
{
    sqlite3_stmt* statement = nullptr;
    require(sqlite3_prepare_v2(
        connection_, sql.data(), static_cast<int>(sql.size()), &statement, nullptr));
    statement_.reset(statement);
}

void SqliteStatement::require(int resultCode) const
{
    if (resultCode != SQLITE_OK) {
        throw errorOf(connection_);
    }
}

SqliteStatement& SqliteStatement::with(std::int64_t number)
{
    require(sqlite3_bind_int64(statement_.get(), ++bound_, number));
    return *this;
}

SqliteStatement& SqliteStatement::withText(std::string_view text)
{
    require(sqlite3_bind_text64(
        statement_.get(), ++bound_, addressOf(text), text.size(), SQLITE_STATIC, SQLITE_UTF8));
    return *this;
}

SqliteStatement& SqliteStatement::withBytes(std::string_view bytes)
{
    require(sqlite3_bind_blob64(
        statement_.get(), ++bound_, addressOf(bytes), bytes.size(), SQLITE_STATIC));
    return *this;
}

bool SqliteStatement::step()
{
    const int resultCode = sqlite3_step(statement_.get());
    if (resultCode != SQLITE_ROW && resultCode != SQLITE_DONE) {
        throw errorOf(connection_);
    }
    return resultCode == SQLITE_ROW;
}

void SqliteStatement::run()
{
    while (step()) { }
}

std::int64_t SqliteStatement::number(int column) const
{
    return sqlite3_column_int64(statement_.get(), column);
}

std::string SqliteStatement::bytes(int column) const
{
    const auto* const bytes =
        static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
    const int size = sqlite3_column_bytes(statement_.get(), column);
    return bytes != nullptr ? std::string(bytes, static_cast<std::size_t>(size)) : std::string();
}

void SqliteConnection::Closer::operator()(sqlite3* connection) const
{
    sqlite3_close_v2(connection);
}

SqliteConnection::SqliteConnection(const std::string& path, int waitMilliseconds)
{
    sqlite3* connection = nullptr;
    const int resultCode = sqlite3_open_v2(path.c_str(), &connection,
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX, nullptr);
    connection_.reset(connection);
    if (resultCode != SQLITE_OK) {
        throw connection != nullptr ? errorOf(connection)
                                    : SqliteError("out of memory", resultCode, 0);
    }
    sqlite3_busy_timeout(connection, waitMilliseconds);
    // A file that somebody has prepared to do harm gets no functions to do it with.
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
}

SqliteStatement SqliteConnection::prepare(std::string_view sql)
{
    return {connection_.get(), sql};
}

void SqliteConnection::run(const char* statements)
{
    if (sqlite3_exec(connection_.get(), statements, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw errorOf(connection_.get());
    }
}

std::int64_t SqliteConnection::number(std::string_view sql)
{
    SqliteStatement statement = prepare(sql);
    return statement.step() ? statement.number(0) : 0;
}

SqliteTransaction::SqliteTransaction(SqliteConnection& connection, Kind kind)
    : connection_(connection)
{
    connection_.run(kind == Kind::write ? "BEGIN IMMEDIATE" : "BEGIN");
}

SqliteTransaction::~SqliteTransaction()
{
    if (isOpen_) {
        try {
            connection_.run("ROLLBACK");
        } catch (const SqliteError&) {
            // It was rolled back by the failure already, or will be by whoever opens the file next.
        }
    }
}

void SqliteTransaction::commit()
{
    connection_.run("COMMIT");
    isOpen_ = false;
}

} // namespace KestryCore
