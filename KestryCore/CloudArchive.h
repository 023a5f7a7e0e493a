#pragma once

#include <optional>
#include <string>

#include "CloudRecord.h"

namespace KestryCore {

// What a ledger keeps of a cloud store, as bytes. They are opaque to the ledger, and tell which
// zone and record they belong to, so that bytes that got into the wrong place are recognised.

/// The store's metadata of a record: all of it but the fields.
[[nodiscard]] std::string archiveSystemFields(const CloudRecord& record);

/// A record without fields, such that saving it changes the version that was archived. Nullopt when
/// the bytes are no archive.
[[nodiscard]] std::optional<CloudRecord> recordFromSystemFields(const std::string& archive);

/// A cursor of a zone.
[[nodiscard]] std::string archiveCursor(const CloudZoneID& zone, const CloudCursor& cursor);

/// Nullopt when the bytes are no archive of a cursor of this zone.
[[nodiscard]] std::optional<CloudCursor> cursorFromArchive(
    const CloudZoneID& zone, const std::string& archive);

} // namespace KestryCore
