#pragma once

#include <memory>

#include "CloudDatabase.h"
#include "Task.h"

namespace Kestry {

/// Has a store check that it takes an account and has a place for the user's records, which is made
/// where it may be. Throws `CloudError` in words that name the next step.
[[nodiscard]] KestryCore::Task<void> requireAccount(
    std::shared_ptr<KestryCore::CloudContainer> container, bool mayMakeZone);

} // namespace Kestry
