#include "ClockWatch.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <limits>
#include <utility>

namespace Kestry {

ClockWatch::ClockWatch(std::function<void()> changed)
    : timer_(timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)),
      changed_(std::move(changed))
{
    // A timer that is never due. It is cancelled when the clock does anything but go on.
    itimerspec never{};
    never.it_value.tv_sec = std::numeric_limits<time_t>::max();
    constexpr int flags = TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET;
    if (timerfd_settime(timer_.number(), flags, &never, nullptr) != 0 && errno != ECANCELED) {
        timer_ = {};
        return;
    }
    notifier_ = std::make_unique<QSocketNotifier>(timer_.number(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), [this] {
        // Reading says that it was cancelled, and makes it wait for the next time.
        std::uint64_t count = 0;
        (void)!read(timer_.number(), &count, sizeof(count));
        changed_();
    });
}

} // namespace Kestry
