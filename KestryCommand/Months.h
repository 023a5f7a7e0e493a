#pragma once

#include <string_view>

#include "Calendar.h"

namespace Kestry {

/// Reads a month by its year and number, "2026-03"; returns its first day. Throws a
/// `UsageError` that shows how the month should have been written, where that can be guessed.
[[nodiscard]] KestryCore::CalendarDay readMonth(std::string_view text);

} // namespace Kestry
