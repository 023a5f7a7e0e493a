#include "ClockJumpText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "SpokenDuration.h"

namespace Kestry {

std::string clockJumpText(
    const KestryCore::ClockJump& jump, const KestryCore::ZoneCalendar& calendar)
{
    constexpr double minute = 60.0;
    const double wholeMinutes = std::max(1.0, std::floor(jump.seconds / minute)) * minute;
    const KestryCore::WallTime time = calendar.wallTime(jump.agreed);
    std::array<char, 8> clock{};
    std::snprintf(clock.data(), clock.size(), "%02d:%02d", time.hour % 24, time.minute % 60);
    return "The clock jumped ahead by " + spokenDuration(wholeMinutes) + ". Your session was "
        + (jump.hasEndedIt ? "saved up to " : "paused at ") + clock.data() + ".";
}

} // namespace Kestry
