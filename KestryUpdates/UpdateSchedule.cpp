#include "UpdateSchedule.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestry {

using KestryCore::Date;

namespace {

constexpr double daySeconds = 86'400.0;
constexpr double hourSeconds = 3'600.0;
constexpr double leastDelaySeconds = 60.0;
constexpr double mostDelaySeconds = 600.0;

} // namespace

UpdateSchedule::UpdateSchedule(Platform platform, std::function<bool()> check)
    : platform_(std::move(platform)), check_(std::move(check))
{
}

Date UpdateSchedule::momentOfNextDay() const
{
    const double day = std::floor(platform_.now().seconds / daySeconds);
    return Date{(day + 1.0 + platform_.random()) * daySeconds};
}

void UpdateSchedule::setOn(bool isOn)
{
    if (isOn_ == isOn) {
        return;
    }
    isOn_ = isOn;
    isMakingUp_ = false;
    timer_.cancel();
    if (isOn_) {
        look();
    }
}

void UpdateSchedule::plan()
{
    isMakingUp_ = false;
    platform_.memory.write(momentOfNextDay());
    if (isOn_) {
        look();
    }
}

void UpdateSchedule::look()
{
    const std::optional<Date> kept = platform_.memory.read();
    const double left = kept ? *kept - platform_.now() : 0.0;
    // Further off than any moment is ever planned: the clock has been set, or the value is not
    // ours.
    if (!kept || !std::isfinite(left) || left > 2.0 * daySeconds) {
        platform_.memory.write(momentOfNextDay());
        wait(hourSeconds);
    } else if (left > 0.0) {
        // The scheduler's time stands still while the machine sleeps, so it looks now and then.
        wait(std::min(left, hourSeconds));
    } else if (!isMakingUp_) {
        isMakingUp_ = true;
        wait(leastDelaySeconds + platform_.random() * (mostDelaySeconds - leastDelaySeconds));
    } else {
        wait(hourSeconds); // Replaced by a plan, should a check begin.
        if (check_()) {
            plan();
        }
    }
}

void UpdateSchedule::wait(double seconds)
{
    timer_ = platform_.scheduler.after(seconds, [this] { look(); });
}

} // namespace Kestry
