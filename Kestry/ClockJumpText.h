#pragma once

#include <string>

#include "ClockJump.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// Tells what a jump of the clock did to the session: "The clock jumped ahead by 2 hours, 13
/// minutes. Your session was paused at 14:02."
[[nodiscard]] std::string clockJumpText(
    const KestryCore::ClockJump& jump, const KestryCore::ZoneCalendar& calendar);

} // namespace Kestry
