#include "SqliteError.h"

#include <sqlite3.h>

#include <cerrno>
#include <cstring>

namespace KestryCore {

namespace {

// The upper bits say more closely what it is.
int primaryCode(int resultCode)
{
    return resultCode & 0xFF;
}

// In the words of this program's own language, whatever that of its user is.
std::string systemWords(int systemCode)
{
    const char* const description = strerrordesc_np(systemCode);
    return description != nullptr ? description : "Unknown error " + std::to_string(systemCode);
}

bool isDiskFull(const SqliteError& failure)
{
    const bool isRefused = primaryCode(failure.resultCode()) == SQLITE_IOERR
        && (failure.systemCode() == ENOSPC || failure.systemCode() == EDQUOT
            || failure.systemCode() == EFBIG);
    return primaryCode(failure.resultCode()) == SQLITE_FULL || isRefused;
}

} // namespace

bool SqliteError::isInUse() const
{
    const int code = primaryCode(resultCode_);
    return code == SQLITE_BUSY || code == SQLITE_LOCKED || code == SQLITE_PROTOCOL;
}

CloudError sqliteFailure(const SqliteError& failure, const std::string& path)
{
    if (failure.isInUse()) {
        return storeIsInUse(path);
    }
    if (isDiskFull(failure)) {
        return CloudError("There is no space left for the record store " + path
            + ". Your local changes are saved and will retry.");
    }
    switch (primaryCode(failure.resultCode())) {
    case SQLITE_CORRUPT:
        return storeIsDamaged(path);
    case SQLITE_NOTADB:
        return storeIsForeign(path);
    case SQLITE_READONLY:
        return CloudError("The record store " + path
            + " cannot be written to. Your local changes are saved and will retry.");
    case SQLITE_NOMEM:
        return CloudError("There isn't enough memory for the record store " + path + ".");
    default:
        break;
    }
    const std::string why = failure.systemCode() != 0
        ? systemWords(failure.systemCode())
        : std::string(sqlite3_errstr(failure.resultCode()));
    return CloudError("The record store " + path + " could not be used: " + why + ".");
}

CloudError storeIsInUse(const std::string& path)
{
    return CloudError("Another program keeps the record store " + path
        + " to itself. Your local changes are saved and will retry.");
}

CloudError storeIsDamaged(const std::string& path)
{
    return CloudError("The record store " + path
        + " is damaged. Local data is safe; restore the file from a backup.");
}

CloudError storeIsForeign(const std::string& path)
{
    return CloudError(path + " is no record store of Kestry. Choose another file.");
}

CloudError storeIsMissing(const std::string& path)
{
    return CloudError("The record store " + path + " is missing. Local data is safe.");
}

CloudError storeIsNewer(const std::string& path)
{
    return CloudError(
        "The record store " + path + " is of a newer Kestry. Update Kestry before retrying.");
}

CloudError systemFailure(const std::string& path, int systemCode)
{
    return CloudError(
        "The record store " + path + " could not be used: " + systemWords(systemCode) + ".");
}

} // namespace KestryCore
