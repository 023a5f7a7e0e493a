#pragma once

#include <string>
#include <string_view>

#include "CloudRecord.h"

namespace KestryCore {

// How a record store in a file keeps the type and the fields of a record: bytes with a sum over
// them, the record's name and its version. So a byte that was changed on the disk, or content that
// got to another record, is noticed and never taken for something that a person has entered.

/// The type and the fields of a record as bytes, for this name and server version.
[[nodiscard]] std::string encodeStoredFields(const CloudRecord& record);

/// Reads them into a record that has its name and server version. Returns false, and leaves the
/// record as it is, when they are not the bytes that were written for it.
[[nodiscard]] bool decodeStoredFields(std::string_view bytes, CloudRecord& record);

} // namespace KestryCore
