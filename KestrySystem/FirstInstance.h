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

/// What a start of the program finds at its data directory.
struct InstanceClaim {
    enum class Outcome {
        first,      ///< This process has the directory and is the one to go on.
        handedOver, ///< Another process has it and has been told of this start.
        refused,    ///< The directory can't be had; `refusal` says why.
    };

    Outcome outcome = Outcome::refused;
    std::shared_ptr<KestryCore::WriterLock> lock; ///< Held while the directory is there.
    /// Where other processes reach this one; none where the system provides no place for that.
    std::optional<ListeningSocket> socket;
    std::string refusal;
    std::string notice; ///< What people should know of the place of the socket; empty mostly.
};

/// Makes this process the one that has a data directory, or tells the one that has it. A command in
/// passing, and a program that is only just starting or ending, are waited for, five seconds at
/// most.
[[nodiscard]] InstanceClaim claimInstance(KestryCore::FileSystem& files,
    const std::string& directory, const LocalActivation& activation,
    const std::function<void(double seconds)>& sleep);

/// Listens for callers who look for the directory as it stands now; none when another process does
/// or when there is no place for it.
[[nodiscard]] std::optional<ListeningSocket> listenAt(const std::string& directory);

} // namespace Kestry
