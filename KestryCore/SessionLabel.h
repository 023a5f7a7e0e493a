#pragma once

#include <string_view>

#include "Ledger.h"

namespace KestryCore {

class RecordIndex;

/// The text that stands for a session in lists: its title as it is; without one the name of its
/// project, unless that is a hidden one or its client goes without projects; else "Session".
/// Good for as long as the ledger stays unchanged.
[[nodiscard]] std::string_view sessionLabel(const TimeEntry& entry, const RecordIndex& index);

} // namespace KestryCore
