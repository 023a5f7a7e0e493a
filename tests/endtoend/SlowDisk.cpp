// Preloaded into a program, this makes the disk slow: while the file that the variable
// KESTRY_TEST_SLOW_DISK names is there, each wait for the disk takes some seconds more.

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

extern "C" int fsync(int descriptor)
{
    constexpr unsigned int pauseSeconds = 3;
    const char* path = std::getenv("KESTRY_TEST_SLOW_DISK");
    if (path != nullptr && access(path, F_OK) == 0) {
        sleep(pauseSeconds);
    }
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}
