#include "LocalSocket.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include "FileSystem.h"

namespace Kestry {

namespace {

constexpr std::string_view pathPrefix = "kestry-path-";

/// FNV-1a: the same in every version of the program, unlike the hashes of a standard library.
std::uint64_t stableHash(std::string_view text)
{
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char letter : text) {
        hash = (hash ^ static_cast<unsigned char>(letter)) * 0x100000001B3U;
    }
    return hash;
}

std::string nameOfPath(const std::string& directory)
{
    std::error_code failure;
    const auto absolute = std::filesystem::absolute(directory, failure);
    auto path = std::filesystem::weakly_canonical(absolute, failure);
    if (failure) {
        path = absolute.lexically_normal();
    }
    std::string text = path.string();
    while (text.size() > 1 && text.back() == '/') {
        text.pop_back();
    }
    std::array<char, 32> digits{};
    std::snprintf(
        digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(stableHash(text)));
    return std::string(pathPrefix) + digits.data() + ".socket";
}

/// The address of a socket in a folder. A path that is too long for an address is replaced by one
/// through the folder's descriptor, which is open as long as this object lives.
class SocketAddress {
public:
    SocketAddress(const std::string& folder, const std::string& name)
    {
        address_.sun_family = AF_UNIX;
        std::string path = KestryCore::joinPath(folder, name);
        if (path.size() >= sizeof address_.sun_path) {
            folder_ = Descriptor(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
            path = "/proc/self/fd/" + std::to_string(folder_.number()) + "/" + name;
        }
        std::strncpy(address_.sun_path, path.c_str(), sizeof address_.sun_path - 1);
    }

    [[nodiscard]] const sockaddr* pointer() const
    {
        return reinterpret_cast<const sockaddr*>(&address_);
    }
    [[nodiscard]] static socklen_t size() { return sizeof(sockaddr_un); }

private:
    sockaddr_un address_{};
    Descriptor folder_;
};

Descriptor newSocket()
{
    return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

/// The process at the other end; nullopt unless it is one of this user.
std::optional<pid_t> processOfSameUser(const Descriptor& socket)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    const bool isKnown = getsockopt(socket.number(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0;
    return isKnown && peer.uid == getuid() ? std::optional(peer.pid) : std::nullopt;
}

/// A lock that keeps two processes that start at once from replacing one another's sockets.
Descriptor lockSockets(const std::string& folder)
{
    const std::string path = KestryCore::joinPath(folder, "kestry-sockets.lock");
    Descriptor lock(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    constexpr int mostTries = 200;
    constexpr useconds_t pause = 5'000;
    // It is held for a few system calls. A process that holds it longer is suspended, and is not
    // waited for.
    for (int count = 0; lock && flock(lock.number(), LOCK_EX | LOCK_NB) != 0; ++count) {
        if (count == mostTries) {
            break;
        }
        usleep(pause);
    }
    return lock;
}

} // namespace

std::string localSocketName(const std::string& directory)
{
    struct stat found { };
    if (stat(directory.c_str(), &found) == 0) {
        return "kestry-" + std::to_string(major(found.st_dev)) + "-"
            + std::to_string(minor(found.st_dev)) + "-" + std::to_string(found.st_ino) + ".socket";
    }
    if (errno != ENOENT) {
        throw KestryCore::fileError(directory, "looked at", errno);
    }
    return nameOfPath(directory);
}

bool isNameOfPath(std::string_view name)
{
    return name.starts_with(pathPrefix);
}

LocalConnection connectLocally(const std::string& folder, const std::string& name)
{
    const SocketAddress address(folder, name);
    Descriptor socket = newSocket();
    if (!socket) {
        return {};
    }
    if (connect(socket.number(), address.pointer(), SocketAddress::size()) != 0) {
        return {{}, errno == EAGAIN, 0};
    }
    const auto process = processOfSameUser(socket);
    return process ? LocalConnection{std::move(socket), false, *process} : LocalConnection{};
}

std::optional<ListeningSocket> ListeningSocket::open(
    const std::string& folder, const std::string& name)
{
    const std::string path = KestryCore::joinPath(folder, name);
    const Descriptor lock = lockSockets(folder);
    const LocalConnection other = connectLocally(folder, name);
    if (other.socket || other.isBusy) {
        return std::nullopt;
    }
    unlink(path.c_str());
    const SocketAddress address(folder, name);
    Descriptor socket = newSocket();
    if (!socket || bind(socket.number(), address.pointer(), SocketAddress::size()) != 0) {
        throw KestryCore::fileError(path, "created", errno);
    }
    ListeningSocket listening(std::move(socket), path);
    constexpr int callersWaiting = 64;
    // No caller can connect before `listen`, and by then the file is private.
    if (chmod(path.c_str(), S_IRUSR | S_IWUSR) != 0
        || listen(listening.descriptor(), callersWaiting) != 0) {
        throw KestryCore::fileError(path, "created", errno);
    }
    return listening;
}

ListeningSocket::~ListeningSocket()
{
    if (socket_) {
        unlink(path_.c_str());
    }
}

Descriptor ListeningSocket::accept() const
{
    while (true) {
        Descriptor caller(
            accept4(socket_.number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (caller && !processOfSameUser(caller)) {
            continue;
        }
        if (caller || errno == EAGAIN) {
            return caller;
        }
        if (errno != EINTR && errno != ECONNABORTED) {
            throw KestryCore::fileError("The caller", "answered", errno);
        }
    }
}

} // namespace Kestry
