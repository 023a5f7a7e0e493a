#pragma once

#include <memory>
#include <vector>

#include "PanelStage.h"

namespace Kestry {

/// The stage for the desktop that this process is on. The panels must outlive it.
[[nodiscard]] std::unique_ptr<PanelStage> panelStage(std::vector<const PanelWindow*> panels);

} // namespace Kestry
