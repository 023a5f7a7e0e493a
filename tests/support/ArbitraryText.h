#pragma once

#include <rapidcheck.h>

#include <string>

namespace KestryCore {

/// Any well-formed UTF-8 text: plain letters and what needs an escape are as likely as the rest
/// of Unicode.
[[nodiscard]] rc::Gen<std::string> arbitraryText();

} // namespace KestryCore
