// Preloaded into a program, this sets its time of day forward by the seconds in the file that the
// variable KESTRY_TEST_CLOCK names, whenever it looks. The seconds in the file that
// KESTRY_TEST_SLEEP names are those for which the machine was asleep. The clock that stops in its
// sleep stays as it is.

#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

long secondsIn(const char* variable)
{
    const char* path = std::getenv(variable);
    std::FILE* file = path != nullptr ? std::fopen(path, "re") : nullptr;
    long seconds = 0;
    if (file != nullptr) {
        if (std::fscanf(file, "%ld", &seconds) != 1) {
            seconds = 0;
        }
        std::fclose(file);
    }
    return seconds;
}

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (result == 0 && clock == CLOCK_REALTIME) {
        time->tv_sec += secondsIn("KESTRY_TEST_CLOCK");
    }
    if (result == 0 && clock == CLOCK_BOOTTIME) {
        time->tv_sec += secondsIn("KESTRY_TEST_SLEEP");
    }
    return static_cast<int>(result);
}

extern "C" int gettimeofday(timeval* time, void*) noexcept
{
    timespec now{};
    const int result = clock_gettime(CLOCK_REALTIME, &now);
    time->tv_sec = now.tv_sec;
    time->tv_usec = now.tv_nsec / 1000;
    return result;
}

extern "C" time_t time(time_t* place) noexcept
{
    timespec now{};
    (void)clock_gettime(CLOCK_REALTIME, &now);
    if (place != nullptr) {
        *place = now.tv_sec;
    }
    return now.tv_sec;
}
