#pragma once

#include <optional>
#include <string>

#include "Date.h"
#include "Observable.h"

namespace KestryCore {

/// What people see of replication.
struct CloudSyncFields {
    Observable<std::string> status{"iCloud sync is off"}; ///< One line.
    Observable<bool> isSyncing{false};
    Observable<std::optional<Date>> lastSync; ///< The end of the last cycle without a failure.
    Observable<std::optional<std::string>> errorMessage; ///< The last failure's words.
    /// The cloud has lost records or is another one, and uploading this device's records again is
    /// the way on.
    Observable<bool> offersUpload{false};
};

} // namespace KestryCore
