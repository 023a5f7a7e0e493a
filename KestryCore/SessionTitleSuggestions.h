#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Ledger.h"

/// Completes a title that is being typed with titles of saved sessions. Case and diacritics never
/// matter, and neither does the user's locale.
namespace KestryCore::SessionTitleSuggestions {

/// The titles that begin with `prefix` and are longer, those of the sessions that ended last first;
/// at most `limit`, which is small. Blanks around them are ignored and not returned. Of spellings
/// that differ only in case and diacritics the latest is returned.
[[nodiscard]] std::vector<std::string> matches(
    std::string_view prefix, const RecordList<TimeEntry>& entries, int limit);

/// What must be added to `typed`, blanks included, to get `suggestion`: the rest of the suggestion
/// in its own spelling, which never begins inside a character. Nullopt when `typed` is blank, when
/// the suggestion does not begin with it, and when nothing is missing.
[[nodiscard]] std::optional<std::string> inlineSuffix(
    std::string_view typed, std::string_view suggestion);

} // namespace KestryCore::SessionTitleSuggestions
