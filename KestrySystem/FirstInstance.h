#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "FileSystem.h"
#include "LocalMessage.h"
#include "LocalSocket.h"
#include "WriterLock.h"

namespace Kestry {

/// The result of claiming the data directory at the start of the application.
struct InstanceClaim {
    enum class Outcome {
        first,      ///< This process has the directory.
        handedOver, ///< Another process has it and has received the activation.
        refused,    ///< The directory can't be claimed; `refusal` says why.
    };

    Outcome outcome = Outcome::refused;
    /// Set when this process is the first. Locks the directory, unless that is missing.
    std::shared_ptr<KestryCore::WriterLock> lock;
    /// Where other processes reach this one; nullopt when there is no private place for a socket.
    std::optional<ListeningSocket> socket;
    std::string refusal;
    std::string notice; ///< A warning about the socket's place, for people; mostly empty.
};

/// Claims a data directory for this process, or hands the activation over to the process that has
/// it. Waits up to five seconds for a running command, and for an application that is starting or
/// ending.
[[nodiscard]] InstanceClaim claimInstance(KestryCore::FileSystem& files,
    const std::string& directory, const LocalActivation& activation,
    const std::function<void(double seconds)>& sleep);

/// Listens under the present name of the directory; see `localSocketName`. Returns nullopt when
/// another process does so, or when there is no private place for a socket.
[[nodiscard]] std::optional<ListeningSocket> listenAt(const std::string& directory);

} // namespace Kestry
