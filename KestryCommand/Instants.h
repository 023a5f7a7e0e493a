#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Date.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// Reads a moment as people type it: with its zone ("2026-03-14T09:26:53.589Z",
/// "2026-03-14T10:26+01:00"), on the calendar's clocks ("2026-03-14 10:26", "yesterday 2:30pm", or
/// "10:26" on the day of `now`), or before `now` ("-15m", "-1h30m"). A time that the clocks show
/// twice means the first of the two. Returns nullopt for anything else. Throws a `UsageError` for a
/// time that the clocks skip.
[[nodiscard]] std::optional<KestryCore::Date> instantIn(
    std::string_view text, KestryCore::Date now, const KestryCore::ZoneCalendar& calendar);

/// The same, but throws a `UsageError` that names the forms for a text that is no moment.
[[nodiscard]] KestryCore::Date readInstant(
    std::string_view text, KestryCore::Date now, const KestryCore::ZoneCalendar& calendar);

/// The local date and time, to the minute: "2026-03-14 10:26".
[[nodiscard]] std::string instantText(KestryCore::Date date, const KestryCore::ZoneCalendar&);

} // namespace Kestry
