#pragma once

#include <rapidcheck.h>

#include <string>

namespace KestryCore {

/// A short title made of the letters that folding treats specially, so that two of them often
/// begin alike: both cases, accents composed and decomposed, letters that fold to several, marks
/// that stay, and blanks of all kinds.
[[nodiscard]] rc::Gen<std::string> arbitraryTitle();

/// A title's first code points in another spelling, or another title.
[[nodiscard]] rc::Gen<std::string> startOf(const std::string& title);

} // namespace KestryCore
