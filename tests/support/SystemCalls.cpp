#include "SystemCalls.h"

#include <dirent.h>
#include <dlfcn.h>
#include <pwd.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

namespace KestryCore::SystemCalls {

Orders& orders()
{
    static Orders orders;
    return orders;
}

namespace {

/// What the program would have called if nothing took its place.
template <class Function>
Function* original(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// Takes back an order for one error and puts it where the caller looks; false without one.
bool failsOnce(int& error)
{
    if (error == 0) {
        return false;
    }
    errno = std::exchange(error, 0);
    return true;
}

/// Makes a call that a signal may interrupt.
template <class Call>
auto interruptible(const char* name, Call call)
{
    if (orders().interruptedBefore.erase(name) != 0) {
        errno = EINTR;
        return decltype(call())(-1);
    }
    const auto result = call();
    if (result == 0 && orders().interruptedAfter.erase(name) != 0) {
        errno = EINTR;
        return decltype(call())(-1);
    }
    return result;
}

} // namespace

} // namespace KestryCore::SystemCalls

using namespace KestryCore::SystemCalls;

// Under names of their own, because the C library's headers declare more of the real names than a
// definition may repeat.
extern "C" int orderedFlock(int handle, int operation) noexcept __asm__("flock");
extern "C" int orderedFstat(int handle, struct stat* found) noexcept __asm__("fstat");
extern "C" int orderedLstat(const char* path, struct stat* found) noexcept __asm__("lstat");
extern "C" int orderedMkdir(const char* path, mode_t mode) noexcept __asm__("mkdir");
extern "C" int orderedStat(const char* path, struct stat* found) noexcept __asm__("stat");
extern "C" passwd* orderedAccount(uid_t user) __asm__("getpwuid");

extern "C" int orderedFchown(int handle, uid_t owner, gid_t group) noexcept __asm__("fchown");
extern "C" int orderedRename(const char* from, const char* to) noexcept __asm__("rename");
extern "C" int orderedUnlink(const char* path) noexcept __asm__("unlink");
extern "C" int orderedLinkat(int fromPlace, const char* from, int toPlace, const char* to,
    int flags) noexcept __asm__("linkat");
extern "C" DIR* orderedOpendir(const char* path) __asm__("opendir");

extern "C" int orderedFlock(int handle, int operation) noexcept
{
    static const auto call = original<int(int, int)>("flock");
    static const auto status = original<int(int, struct stat*)>("fstat");
    struct stat found { };
    const bool isDirectory = status(handle, &found) == 0 && S_ISDIR(found.st_mode);
    if (isDirectory && orders().directoryLockError != 0 && (operation & LOCK_EX) != 0) {
        errno = orders().directoryLockError;
        return -1;
    }
    if (!isDirectory && !orders().fileLockErrors.empty()) {
        errno = orders().fileLockErrors.front();
        orders().fileLockErrors.erase(orders().fileLockErrors.begin());
        return -1;
    }
    if (!isDirectory && orders().beforeFileLock) {
        std::exchange(orders().beforeFileLock, nullptr)();
    }
    return interruptible("flock", [&] { return call(handle, operation); });
}

extern "C" int orderedFstat(int handle, struct stat* found) noexcept
{
    static const auto call = original<int(int, struct stat*)>("fstat");
    return failsOnce(orders().statusError) ? -1 : call(handle, found);
}

extern "C" int orderedLstat(const char* path, struct stat* found) noexcept
{
    static const auto call = original<int(const char*, struct stat*)>("lstat");
    int result = call(path, found);
    if (orders().changeStatus) {
        orders().changeStatus(path, result, *found);
    }
    return result;
}

extern "C" passwd* orderedAccount(uid_t user)
{
    static const auto call = original<passwd*(uid_t)>("getpwuid");
    static passwd account{};
    if (!orders().home) {
        return call(user);
    }
    account.pw_dir = orders().home->data();
    return orders().home->empty() ? nullptr : &account;
}

extern "C" int orderedStat(const char* path, struct stat* found) noexcept
{
    static const auto call = original<int(const char*, struct stat*)>("stat");
    if (orders().hidesProcesses && std::string_view(path).starts_with("/proc/")) {
        errno = ENOENT;
        return -1;
    }
    return call(path, found);
}

extern "C" int orderedMkdir(const char* path, mode_t mode) noexcept
{
    static const auto call = original<int(const char*, mode_t)>("mkdir");
    return failsOnce(orders().createError)
        ? -1
        : interruptible("mkdir", [&] { return call(path, mode); });
}

extern "C" int orderedFchown(int handle, uid_t owner, gid_t group) noexcept
{
    static const auto call = original<int(int, uid_t, gid_t)>("fchown");
    if (orders().ownerError != 0) {
        errno = orders().ownerError;
        return -1;
    }
    return call(handle, owner, group);
}

extern "C" int orderedRename(const char* from, const char* to) noexcept
{
    static const auto call = original<int(const char*, const char*)>("rename");
    return interruptible("rename", [&] { return call(from, to); });
}

extern "C" int orderedUnlink(const char* path) noexcept
{
    static const auto call = original<int(const char*)>("unlink");
    return interruptible("unlink", [&] { return call(path); });
}

extern "C" int orderedLinkat(
    int fromPlace, const char* from, int toPlace, const char* to, int flags) noexcept
{
    static const auto call = original<int(int, const char*, int, const char*, int)>("linkat");
    return interruptible("linkat", [&] { return call(fromPlace, from, toPlace, to, flags); });
}

extern "C" DIR* orderedOpendir(const char* path)
{
    static const auto call = original<DIR*(const char*)>("opendir");
    if (orders().interruptedBefore.erase("opendir") != 0) {
        errno = EINTR;
        return nullptr;
    }
    return call(path);
}
