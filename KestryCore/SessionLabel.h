#pragma once

#include <string_view>

#include "Ledger.h"

namespace KestryCore {

class RecordIndex;

/// The name of a session in lists: its title, unchanged; without a title the name of its project,
/// unless that is hidden or its client has no projects; else "Session". Valid while the ledger
/// stays unchanged.
[[nodiscard]] std::string_view sessionLabel(const TimeEntry& entry, const RecordIndex& index);

/// The same for a session with this title, project and client. Null: deleted.
[[nodiscard]] std::string_view sessionLabel(
    std::string_view title, const Project* project, const Client* client);

/// Whether sessions without a title have the name of the project: it exists, is not hidden, and its
/// client has projects or no longer exists.
[[nodiscard]] bool standsForItsSessions(const Project* project, const Client* client);

} // namespace KestryCore
