#pragma once

#include <optional>
#include <string_view>

#include "Ledger.h"

namespace KestryCore::UpdateSafety {

/// Whether replacing the program now could lose work: a session in progress, an open editor, or
/// anything typed as the next session's title, a single blank included.
[[nodiscard]] bool hasUnfinishedWork(const std::optional<ActiveSession>& activeSession,
    bool hasOpenEditor, std::string_view sessionTitle);

} // namespace KestryCore::UpdateSafety
