#pragma once

#include "FetchedRecords.h"
#include "Ledger.h"
#include "Uuid.h"

namespace KestryCore {

/// Gives every undelivered version a new revision that has the revision of a cloud's version but
/// another content. Who took the cloud's version in a conflict keeps the words of this device until
/// a newer version comes, and uploads them under the cloud's revision when everything is uploaded
/// again: the two would pass for one. With revisions of their own they meet as a conflict.
///
/// Returns whether there was such a version; the ledger is unchanged otherwise. Throws LedgerError
/// for an invalid version of the cloud.
[[nodiscard]] bool separateRevisions(
    LedgerData& ledger, const FetchedRecords& fetched, const UuidSource& newUuid);

} // namespace KestryCore
