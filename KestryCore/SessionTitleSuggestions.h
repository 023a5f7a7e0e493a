#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Ledger.h"

/// Finishes a title that is being typed from the titles of saved sessions. Case and diacritics
/// never count, and the user's locale plays no part.
namespace KestryCore::SessionTitleSuggestions {

/// The titles that begin with `prefix` and go on after it, those of the sessions that ended last
/// first, at most `limit` and a few at that. Blanks around do not count and are not returned. Of
/// spellings that differ in case and diacritics alone the latest stands for all.
[[nodiscard]] std::vector<std::string> matches(
    std::string_view prefix, const RecordList<TimeEntry>& entries, int limit);

/// What completes `typed`, blanks included, to `suggestion`: the rest of the suggestion in its own
/// spelling, never from the middle of a character. None when `typed` is blank, when the suggestion
/// does not begin with it, and when nothing is left.
[[nodiscard]] std::optional<std::string> inlineSuffix(
    std::string_view typed, std::string_view suggestion);

} // namespace KestryCore::SessionTitleSuggestions
