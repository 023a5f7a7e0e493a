#pragma once

#include <memory>

#include "PanelStage.h"

namespace Kestry {

/// Creates the stage for the desktop that this process is on.
[[nodiscard]] std::unique_ptr<PanelStage> panelStage();

} // namespace Kestry
