#include "StatusFrame.h"

#include <algorithm>
#include <cmath>

namespace Kestry {
namespace {

constexpr double turnSeconds = 8.0;

} // namespace

int statusFrame(double elapsedSeconds)
{
    if (!std::isfinite(elapsedSeconds)) {
        return 0;
    }
    const double progress = std::fmod(elapsedSeconds, turnSeconds) / turnSeconds;
    return std::clamp(static_cast<int>(progress * statusFrameCount), 0, statusFrameCount - 1);
}

} // namespace Kestry
