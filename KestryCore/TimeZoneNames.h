#pragma once

#include <string>

namespace KestryCore {

/// Fails with a `LedgerError` when no zone of the IANA database has this name, and tells a near
/// one, of which the name may be the city alone.
void requireTimeZone(const std::string& name);

} // namespace KestryCore
