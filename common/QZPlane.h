#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Plane geometry of single points. Angles are in degrees; directions run clockwise from north (+y).

[[nodiscard]] double QZ_Distance2D(double x1, double y1, double x2, double y2);

// The direction from a to b, 0 up to 360: 0 north, 90 east, 180 south, 270 west. 0 when they are one place.
[[nodiscard]] double QZ_DirectionAngle(XY a, XY b);

// The angle at `vertex`, clockwise from the direction to `from` to the direction to `to`, 0 up to 360. Exactly 0, 90,
// 180 and 270 for directions that are parallel or at right angles. 0 when two of the points are one place. Gons are
// turned into degrees with the 15-digit constant 1.11111111111111. A failure is reported, and gives 0.
[[nodiscard]] double QZ_Angle3Points(XY vertex, XY from, XY to);

// The outline, closed and clockwise from the lower left corner. A failure is reported, and gives an empty polyline.
[[nodiscard]] Polyline QZ_PolylineFromEnvelope(const Envelope& envelope);

} // namespace qz
