#pragma once

#include <optional>
#include <string>

#include "Ledger.h"

namespace KestryCore {

/// What a process that is being replaced leaves for its successor: exactly which session was
/// running. Any doubt about it leads to an ordinary recovery.
struct UpdateHandoff {
    Uuid token; ///< The token of this update, known to the update agent.
    std::optional<ActiveSession> active;

    friend bool operator==(const UpdateHandoff&, const UpdateHandoff&) = default;
};

[[nodiscard]] std::string encodeUpdateHandoff(const UpdateHandoff& handoff);

/// Throws LedgerError for anything malformed.
[[nodiscard]] UpdateHandoff decodeUpdateHandoff(std::string bytes);

} // namespace KestryCore
