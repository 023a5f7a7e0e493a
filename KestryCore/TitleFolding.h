#pragma once

#include <string>
#include <string_view>

namespace KestryCore {

/// A title in the form in which titles are compared: without case and without the accents and
/// points that may be left out, in canonical composition. Marks that make another letter or
/// syllable (voiced kana, the vowel signs and tone marks of Brahmic scripts and of Thai) stay, and
/// so do blanks. The length may change: "Straße" becomes "strasse".
[[nodiscard]] std::string foldedTitle(std::string_view title);

} // namespace KestryCore
