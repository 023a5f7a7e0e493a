#pragma once

#include <string>

#include "Environment.h"

namespace KestryCore {

/// The locale for text that a person reads: what the environment sets for money (`LC_ALL`,
/// `LC_MONETARY`, `LANG`, in this order), without the encoding. "en_US" when that is "C" or
/// "POSIX", which are for programs, or unknown.
[[nodiscard]] std::string userLocale(const EnvironmentLookup& environment);

/// The locale with a name given by a person, as "de_DE", "de-DE" or "de_DE.UTF-8". Throws
/// LedgerError, with a similar name, when its language or country does not exist.
[[nodiscard]] std::string requireLocale(const std::string& name);

} // namespace KestryCore
