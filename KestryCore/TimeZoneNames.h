#pragma once

#include <string>

#include "ZoneFiles.h"

namespace KestryCore {

/// Throws LedgerError, with a similar name, when no zone of the system's zone files has this name.
/// The similar name may be the city alone. Where there are no zone files, the zones of the Unicode
/// library are used.
void requireTimeZone(const std::string& name, const ZoneFiles& files);

} // namespace KestryCore
