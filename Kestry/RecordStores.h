#pragma once

#include <memory>

#include "CloudAccount.h"
#include "CloudDatabase.h"
#include "Scheduler.h"

namespace Kestry {

/// Opens the record store at an address: `sqlite:` and the absolute path of a file, or that of a
/// server, where there is a user. Null for what names no store that this program knows, such as
/// what a build has without one. Nothing is asked of the store yet. The scheduler must outlive it.
///
/// Throws `CloudError` for an address that cannot be meant, in words for whoever entered it.
[[nodiscard]] std::unique_ptr<KestryCore::CloudContainer> openRecordStore(
    const CloudCredentials& credentials, StoreUse use, KestryCore::Scheduler& scheduler);

} // namespace Kestry
