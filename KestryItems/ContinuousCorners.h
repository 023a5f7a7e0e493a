#pragma once

#include <QPainterPath>
#include <QRectF>

namespace Kestry {

/// A rectangle whose corners turn gradually: at its diagonal each one is as far from the corner of
/// the rectangle as a circular one of this radius, but its curvature begins at nothing. The radius
/// is at most a third of the shorter side.
[[nodiscard]] QPainterPath continuousCorners(const QRectF& rectangle, double radius);

} // namespace Kestry
