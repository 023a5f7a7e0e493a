#include "ClockJump.h"

#include <utility>

namespace KestryCore {

ClockJumpWatch::ClockJumpWatch(Clock now, SteadyClock steady)
    : now_(std::move(now)), steady_(std::move(steady))
{
}

ClockJumpWatch::Reading ClockJumpWatch::read() const
{
    return {now_(), steady_ ? steady_() : 0.0};
}

std::optional<ClockJump> ClockJumpWatch::jump(const Reading& reading) const
{
    constexpr double tolerance = 60.0;
    if (!begun_ || !steady_) {
        return std::nullopt;
    }
    const Date expected = begun_->date + (reading.seconds - begun_->seconds);
    const double ahead = reading.date - expected;
    return ahead > tolerance ? std::optional(ClockJump{ahead, expected}) : std::nullopt;
}

} // namespace KestryCore
