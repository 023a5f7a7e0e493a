#pragma once

#include <stdexcept>
#include <string>

#include "CloudError.h"

namespace KestryCore {

/// A failure of the library that keeps record stores in files, by its extended result code and the
/// system's error number, which is 0 when there is none. Inside the stores only: people see
/// `sqliteFailure`.
class SqliteError : public std::runtime_error {
public:
    SqliteError(const std::string& message, int resultCode, int systemCode)
        : std::runtime_error(message), resultCode_(resultCode), systemCode_(systemCode)
    {
    }

    [[nodiscard]] int resultCode() const { return resultCode_; }
    [[nodiscard]] int systemCode() const { return systemCode_; }
    /// Whether another process is in the middle of something with the file.
    [[nodiscard]] bool isInUse() const;

private:
    int resultCode_;
    int systemCode_;
};

/// The failure in words for people, who know the store by its path.
[[nodiscard]] CloudError sqliteFailure(const SqliteError& failure, const std::string& path);

// Failures of the file as a whole.

[[nodiscard]] CloudError storeIsInUse(const std::string& path);
[[nodiscard]] CloudError storeIsDamaged(const std::string& path);
[[nodiscard]] CloudError storeIsForeign(const std::string& path);
[[nodiscard]] CloudError storeIsMissing(const std::string& path);
[[nodiscard]] CloudError storeIsNewer(const std::string& path);

/// The system refused a call on a file or folder.
[[nodiscard]] CloudError systemFailure(const std::string& path, int systemCode);

} // namespace KestryCore
