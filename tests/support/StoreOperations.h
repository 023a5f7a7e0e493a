#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "StoreFixture.h"

namespace KestryCore {

/// One thing a store can do to its files, with the world in which it can do it: what every fault
/// test tries out.
struct StoreOperation {
    std::string name;
    /// Makes the files, and opens the store where the operation is not opening itself.
    std::function<void(StoreWorld&)> prepare;
    std::function<void(StoreWorld&)> perform;

    friend std::ostream& operator<<(std::ostream& out, const StoreOperation& operation)
    {
        return out << operation.name;
    }
};

/// Every operation that saves through an open store with a trusted primary: one that was only
/// read, one that the store wrote itself, and one of these where files cannot have two names.
[[nodiscard]] const std::vector<StoreOperation>& savingOperations();

/// A save into a directory, and below parents, that do not exist yet.
[[nodiscard]] const StoreOperation& firstSave();
/// Restoring over a damaged primary.
[[nodiscard]] const StoreOperation& restoring();
/// Leaving the running session to a successor.
[[nodiscard]] const StoreOperation& preparingForUpdate();
/// Opening on a session found running.
[[nodiscard]] const StoreOperation& recovering();
/// Opening on a session that the process before left running for this one.
[[nodiscard]] const StoreOperation& takingOver();

/// The operation where files cannot have two names.
[[nodiscard]] StoreOperation withoutLinks(StoreOperation operation);

void expectNoTemporaryFiles(const StoreWorld& world);

/// The store is back to normal: a change is saved, the previous primary becomes the backup, and
/// no temporary file stays.
void expectNextChangeSucceeds(StoreWorld& world);

/// Lets GoogleTest call a parameterised test by its operation.
[[nodiscard]] std::string operationName(const testing::TestParamInfo<StoreOperation>& info);

/// What a damaged primary holds in `restoring`.
extern const char* const damagedPrimary;

} // namespace KestryCore
