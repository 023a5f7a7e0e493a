#pragma once

#include <string_view>

#include "Ledger.h"

namespace KestryCore {

class RecordIndex;

/// The text that stands for a session in lists: its title as it is; without one the name of its
/// project, unless that is a hidden one or its client goes without projects; else "Session".
/// Good for as long as the ledger stays unchanged.
[[nodiscard]] std::string_view sessionLabel(const TimeEntry& entry, const RecordIndex& index);

/// The same for a session of this title on this project of this client, either of which may be
/// gone.
[[nodiscard]] std::string_view sessionLabel(
    std::string_view title, const Project* project, const Client* client);

/// Whether the project stands for its sessions: it is there, no hidden one, and its client goes
/// with projects, or is gone.
[[nodiscard]] bool standsForItsSessions(const Project* project, const Client* client);

} // namespace KestryCore
