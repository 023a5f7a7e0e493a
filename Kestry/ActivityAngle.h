#pragma once

namespace Kestry {

/// How far the mark of a session has turned, in degrees: once around in eight seconds of the
/// session's time, so that a paused mark stands where it was and goes on from there. What is not
/// finite has not turned.
[[nodiscard]] double activityAngle(double elapsedSeconds);

} // namespace Kestry
