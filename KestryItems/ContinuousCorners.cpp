#include "ContinuousCorners.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace Kestry {
namespace {

// The part of an edge that a corner takes, in radii. A circular one takes one radius.
constexpr double reach = 1.5;
constexpr int cornerSteps = 12;

/// The exponent of the superellipse that meets the circle of the radius at the diagonal.
double exponent()
{
    const double inset = (1.0 - std::numbers::sqrt2 / 2.0) / reach;
    return -std::numbers::ln2 / std::log(1.0 - inset);
}

} // namespace

QPainterPath continuousCorners(const QRectF& rectangle, double radius)
{
    const double side = std::min(rectangle.width(), rectangle.height());
    const double corner = reach * std::clamp(radius, 0.0, side / 3.0);
    const double power = 2.0 / exponent();
    QPainterPath path;
    const auto add = [&path](QPointF point) {
        if (path.elementCount() == 0) {
            path.moveTo(point);
        } else {
            path.lineTo(point);
        }
    };
    // From the middle of the corner's square to its outer point, clockwise from the right edge.
    const std::array<QPointF, 4> middles{rectangle.bottomRight() + QPointF(-corner, -corner),
        rectangle.bottomLeft() + QPointF(corner, -corner),
        rectangle.topLeft() + QPointF(corner, corner),
        rectangle.topRight() + QPointF(-corner, corner)};
    for (std::size_t quarter = 0; quarter < middles.size(); ++quarter) {
        for (int step = 0; step <= cornerSteps; ++step) {
            const double angle = std::numbers::pi / 2.0 * step / cornerSteps;
            const double along = corner * std::pow(std::max(0.0, std::cos(angle)), power);
            const double across = corner * std::pow(std::sin(angle), power);
            const std::array<QPointF, 4> turned{QPointF(along, across), QPointF(-across, along),
                QPointF(-along, -across), QPointF(across, -along)};
            add(middles[quarter] + turned[quarter]);
        }
    }
    path.closeSubpath();
    return path;
}

} // namespace Kestry
