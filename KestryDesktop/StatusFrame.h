#pragma once

namespace Kestry {

/// How many pictures one turn of the mark has: eight seconds at thirty a second.
inline constexpr int statusFrameCount = 240;

/// The picture that shows a session of so many seconds: the angle comes from the session's time
/// and not from the clock, so that a paused mark stands where it was and goes on from there.
/// What is not finite shows the first one.
[[nodiscard]] int statusFrame(double elapsedSeconds);

} // namespace Kestry
