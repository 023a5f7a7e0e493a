#pragma once

namespace Kestry {

/// How far the mark of a session has turned, in degrees: one turn in eight seconds of the session's
/// own time. So a paused mark keeps its angle and goes on from there. Returns 0 for a number that
/// is not finite.
[[nodiscard]] double activityAngle(double elapsedSeconds);

} // namespace Kestry
