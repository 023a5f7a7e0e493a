#pragma once

namespace Kestry {

/// The number of pictures of one turn of the mark: eight seconds at thirty a second.
inline constexpr int statusFrameCount = 240;

/// Returns the picture for a session of so many seconds. The angle follows the session's time and
/// not the clock, so that a paused mark stops where it is and goes on from there. Returns 0 when
/// the seconds are not finite.
[[nodiscard]] int statusFrame(double elapsedSeconds);

} // namespace Kestry
