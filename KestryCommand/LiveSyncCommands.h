#pragma once

#include <functional>

#include "Command.h"
#include "CommandContext.h"
#include "LiveSync.h"
#include "LocalMessage.h"

namespace Kestry {

/// Whether the running application carries the command out on its replication rather than on the
/// store: what needs the application, and the switch.
[[nodiscard]] bool isForLiveSync(const StoreCommand& command);

/// Begins such a command and gives its answer when it is over, in this call or at any later time.
/// A refusal is an answer too. `give` is called once, and not when `sync` goes before.
void carryOut(const StoreCommand& command, LiveSync& sync, const CommandContext& context,
    const std::function<void(LocalAnswer)>& give);

} // namespace Kestry
