#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Descriptor.h"

namespace Kestry {

/// The name of the socket on which the application that has a data directory listens. While the
/// directory is there it is named after device and inode, which every path to it leads to; before
/// that after its absolute path. Fails with a `LedgerError` when the directory cannot be looked at.
[[nodiscard]] std::string localSocketName(const std::string& directory);

/// Whether a socket's name is that of a directory which was not there yet.
[[nodiscard]] bool isNameOfPath(std::string_view name);

/// What a call to the other side came to.
struct LocalConnection {
    Descriptor socket;   ///< Non-blocking; none when nobody was reached.
    bool isBusy = false; ///< Somebody listens, but takes no more callers at the moment.
    pid_t process = 0;   ///< The process that listens.
};

/// Calls whoever listens under a name in the folder. Never waits. A listener of another user is
/// nobody.
[[nodiscard]] LocalConnection connectLocally(const std::string& folder, const std::string& name);

/// A socket in the file system on which this process listens; its file goes with it.
class ListeningSocket {
public:
    /// Listens under a name in the folder, for this user alone. What a process that is gone has
    /// left there is replaced. None when another process listens there already; fails with a
    /// `LedgerError` when the system refuses.
    [[nodiscard]] static std::optional<ListeningSocket> open(
        const std::string& folder, const std::string& name);

    ListeningSocket(ListeningSocket&&) noexcept = default;
    ListeningSocket& operator=(ListeningSocket&& other) noexcept
    {
        std::swap(socket_, other.socket_);
        std::swap(path_, other.path_);
        return *this;
    }
    ListeningSocket(const ListeningSocket&) = delete;
    ListeningSocket& operator=(const ListeningSocket&) = delete;
    ~ListeningSocket();

    [[nodiscard]] int descriptor() const { return socket_.number(); }
    /// The next caller who is this user, non-blocking; callers of other users are turned away.
    /// None when nobody waits. Fails with a `LedgerError` when the system has no more descriptors.
    [[nodiscard]] Descriptor accept() const;

private:
    ListeningSocket(Descriptor socket, std::string path)
        : socket_(std::move(socket)), path_(std::move(path))
    {
    }

    Descriptor socket_;
    std::string path_;
};

} // namespace Kestry
