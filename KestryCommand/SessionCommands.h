#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

// The session in progress. Each does what the store's operation of that name does at the
// command's moment, and fails as that does; the words for records fail as their look-up does.

CommandAnswer run(const StartCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const PauseCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const ResumeCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const StopCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const CheckpointCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const RenameCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const MoveCommand&, KestryCore::TimeStore&, const CommandContext&);

} // namespace Kestry
