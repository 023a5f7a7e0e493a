#pragma once

#include <functional>
#include <string>

#include "Environment.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// What the process in which a command was typed contributes to the command's meaning.
struct CommandOrigin {
    /// The path of the data directory, as that process names it. Throws a `LedgerError` when the
    /// user has no home directory and names no other.
    std::function<std::string()> dataDirectory;
    KestryCore::EnvironmentLookup environment;
    /// The calendar of that process's time zone, with a locale such as "de_DE". Throws a
    /// `LedgerError` when there is no such zone.
    std::function<KestryCore::ZoneCalendar(const std::string& locale)> calendar;
    bool writesToTerminal = false;
};

} // namespace Kestry
