#pragma once

#include <string_view>

#include "Calendar.h"

namespace Kestry {

/// Reads a month by its year and number, "2026-03"; returns its first day. Fails with a
/// `UsageError` that names the month as it should have been written, where that can be told.
[[nodiscard]] KestryCore::CalendarDay readMonth(std::string_view text);

} // namespace Kestry
