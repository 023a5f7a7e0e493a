#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Descriptor.h"

namespace Kestry {

/// The name of the socket on which the application that has a data directory listens. An existing
/// directory is named by device and inode, which are the same for every path to it; a missing one
/// by its absolute path. Throws a `LedgerError` when the directory can't be looked at.
[[nodiscard]] std::string localSocketName(const std::string& directory);

/// Whether a socket's name was formed from the path of a directory that was missing then.
[[nodiscard]] bool isNameOfPath(std::string_view name);

/// The result of connecting to a listener.
struct LocalConnection {
    Descriptor socket;   ///< Non-blocking; empty when no connection was made.
    bool isBusy = false; ///< There is a listener, and its queue is full.
    pid_t process = 0;   ///< The ID of the listening process.
};

/// Connects to the socket of this name in the folder, without blocking. A listener of another user
/// counts as none.
[[nodiscard]] LocalConnection connectLocally(const std::string& folder, const std::string& name);

/// A socket in the file system on which this process listens. The destructor removes its file.
class ListeningSocket {
public:
    /// Listens on a socket of this name in the folder, for this user only. A socket without a
    /// listener is replaced. Returns nullopt when another process listens there already; throws a
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
    /// The connection of the next caller, non-blocking; empty when there is none. Connections of
    /// other users are closed. Throws a `LedgerError` when the system has no more descriptors.
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
