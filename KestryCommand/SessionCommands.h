#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

// Commands for the session in progress. Each calls the store's operation of the same name with
// `CommandContext::at`, and throws what that and the look-up of records throw.

CommandAnswer run(const StartCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const PauseCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const ResumeCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const StopCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const CheckpointCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const RenameCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const MoveCommand&, KestryCore::TimeStore&, const CommandContext&);

} // namespace Kestry
