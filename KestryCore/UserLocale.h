#pragma once

#include <string>

#include "Environment.h"

namespace KestryCore {

/// The locale for text that a person reads: what the environment says of money (`LC_ALL`,
/// `LC_MONETARY`, `LANG`, in this order), without the encoding. The locales of programs, "C" and
/// "POSIX", say nothing of a person, and neither does an unknown name; then it is "en_US".
[[nodiscard]] std::string userLocale(const EnvironmentLookup& environment);

/// The locale of a name given by a person, as "de_DE", "de-DE" or "de_DE.UTF-8". Fails with a
/// `LedgerError` when its language or its country does not exist, and tells a near one.
[[nodiscard]] std::string requireLocale(const std::string& name);

} // namespace KestryCore
