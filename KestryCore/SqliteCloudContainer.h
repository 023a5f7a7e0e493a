#pragma once

#include <string>
#include <utility>

#include "CloudDatabase.h"
#include "SqliteCloudDatabase.h"

namespace KestryCore {

/// A cloud store in one local file. The account is that of the file, for whoever may open it: two
/// machines that share the file share the account.
class SqliteCloudContainer final : public CloudContainer {
public:
    /// The scheduler must outlive the container. Nothing is opened yet.
    SqliteCloudContainer(Scheduler& scheduler, SqliteStorePlace place)
        : database_(scheduler, std::move(place))
    {
    }

    [[nodiscard]] Task<bool> isAccountAvailable() override { return database_.isAvailable(); }
    [[nodiscard]] Task<std::string> userRecordName() override { return database_.account(); }
    [[nodiscard]] CloudDatabase& privateDatabase() override { return database_; }

private:
    SqliteCloudDatabase database_;
};

} // namespace KestryCore
