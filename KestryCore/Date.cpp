#include "Date.h"

#include <time.h> // NOLINT(modernize-deprecated-headers): the system's, not the language's

#include <chrono>

namespace KestryCore {

Date currentDate()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return Date{std::chrono::duration<double>(sinceEpoch).count() - referenceDateSecondsSince1970};
}

double secondsSinceStart()
{
    timespec time{};
    (void)clock_gettime(CLOCK_BOOTTIME, &time);
    constexpr double nanosecond = 1e-9;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * nanosecond;
}

} // namespace KestryCore
