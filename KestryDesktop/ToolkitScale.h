#pragma once

namespace Kestry {

/// Whether the toolkit draws everything larger because of the desktop's text scale already. On X11
/// desktops write that scale into the screen's resolution, and the toolkit follows the resolution.
[[nodiscard]] bool toolkitFollowsTextScale();

} // namespace Kestry
