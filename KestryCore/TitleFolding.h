#pragma once

#include <string>
#include <string_view>

namespace KestryCore {

/// A title as titles are compared: without case and without the accents and points that may be
/// left out, in canonical composition. Marks that make another letter or syllable of one (voiced
/// kana, the vowel signs and tone marks of Brahmic scripts and of Thai) stay. Blanks stay as well.
/// The length changes either way: "Straße" gives "strasse".
[[nodiscard]] std::string foldedTitle(std::string_view title);

} // namespace KestryCore
