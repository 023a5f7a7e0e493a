#pragma once

#include <string>

#include "ZoneFiles.h"

namespace KestryCore {

/// Fails with a `LedgerError` when no zone of the system's zone files has this name, and tells a
/// near one, of which the name may be the city alone. Where there are no such files, the zones are
/// those that the Unicode library knows.
void requireTimeZone(const std::string& name, const ZoneFiles& files);

} // namespace KestryCore
