#pragma once

#include <optional>

#include "platform/geometry/Geometry.h"
#include "platform/geometry/SegmentIndex.h"

namespace qz {

// The line from a point in a polar direction, in degrees counter-clockwise from east.
[[nodiscard]] Segment QZ_PolarLine(XY from, double polarDegrees, double distance);

// The pie slice about `centre`, in its reference, level at its height and measure: two radii, `centralAngle` degrees
// apart and symmetrical to the polar direction, and the arc between them counter-clockwise; an arc below 180 degrees is
// the minor one. 360 degrees give the full disc. Above 360 the radii lie by that angle, but the arc between their ends
// is the minor one, and `centralAngle` becomes 90.
// A failure is reported and gives nothing: a radius or an angle that is not above 0 or not finite, an empty centre, a
// slice that is narrower than coordinates can express.
[[nodiscard]] std::optional<Polygon> QZ_CreatePieSegment(const Point& centre, double radius, double& centralAngle,
                                                         double polarDirection);

} // namespace qz
