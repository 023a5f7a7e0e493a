#pragma once

#include <string>

#include "CloudRecord.h"
#include "SharedMap.h"
#include "SyncState.h"

namespace KestryCore {

/// The zone that has all records of a user.
[[nodiscard]] const CloudZoneID& workspaceZone();

/// Reads a version of a record as the cloud has it. Throws SyncDeliveryError when this program does
/// not understand it. Whether it is a sound version is for `validateRecord` to tell.
[[nodiscard]] SyncRecord syncRecordFrom(const CloudRecord& record);

/// A version as it is sent to the cloud, as a change of the version there that this device knows:
/// the one with these system fields, or a new record where there are none. Throws SyncDeliveryError
/// when the system fields are not those of this record.
[[nodiscard]] CloudRecord cloudRecordFor(
    const SyncRecord& record, const SharedMap<std::string>& systemFields);

} // namespace KestryCore
