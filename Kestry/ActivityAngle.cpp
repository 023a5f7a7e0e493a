#include "ActivityAngle.h"

#include <cmath>

namespace Kestry {
namespace {

constexpr double turnSeconds = 8.0;
constexpr double fullTurn = 360.0;

} // namespace

double activityAngle(double elapsedSeconds)
{
    if (!std::isfinite(elapsedSeconds)) {
        return 0.0;
    }
    return std::fmod(elapsedSeconds, turnSeconds) / turnSeconds * fullTurn;
}

} // namespace Kestry
