#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

// Commands for clients, projects and saved sessions. Each calls the store's operation, and throws
// what that and the look-up of records throw, and a `UsageError` for a moment that can't be read.

CommandAnswer run(const ClientAddCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const ClientEditCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const ProjectAddCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const ProjectEditCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const AddCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const EditCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const GapCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const DeleteCommand&, KestryCore::TimeStore&, const CommandContext&);

/// The question to ask before a session is deleted: "Delete \"Sketches\", 1h 30m?"
[[nodiscard]] std::string deletionQuestion(
    const KestryCore::LedgerData& ledger, const KestryCore::Uuid& id);

} // namespace Kestry
