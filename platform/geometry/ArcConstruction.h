#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/geometry/SegmentIndex.h"

namespace qz {

// Arcs and circles from what a surveyor knows of them. Each gives a path of one arc segment, of finite coordinates;
// what can't be built throws PlatformError that says why.

// Which of the two arcs of one circle between two points; of half circles either.
enum class ArcSize { minor, major };

// From `start` to `end` on a circle of that radius. The two points, the sense and the size leave one arc; for a half
// circle the sense alone does. The control point in the middle has the means of the ends' z and m. Refuses a radius
// smaller than half the chord; one that falls short of it by rounding only (1e-9 of it) gives the half circle. Refuses
// equal ends, which don't tell the centre: `circleFrom` does.
[[nodiscard]] Path arcBetween(const Vertex& start, const Vertex& end, double radius, ArcSense sense, ArcSize size);

// From `start` through `middle` to `end`. Refuses three points on one line, equal points among them.
[[nodiscard]] Path arcThroughPoints(const Vertex& start, const Vertex& middle, const Vertex& end);

// The full circle about `centre` from `start` back to it, level at the start's z and m.
[[nodiscard]] Path circleFrom(XY centre, const Vertex& start, ArcSense sense);

// One clockwise ring of one arc that starts north of the centre: an area of pi r².
[[nodiscard]] Path circleRing(XY centre, double radius);
[[nodiscard]] Polygon circlePolygon(XY centre, double radius, const SpatialReference& reference);

// The arc of that radius that is tangent to the two straight lines on which the segments lie, from the first line to
// the second; its ends may lie beyond the segments. The lines cross in a corner with four quadrants: the arc is the one
// in the quadrant of `hint`. Where the hint is on a line (or in the corner), the quadrant on that side which the
// segment's farther end shows. The arc is less than a half circle.
//   distance(corner, end) == radius / tan(angle / 2)
// Refuses a radius that is not above 0, a segment without length and parallel lines.
[[nodiscard]] Path filletArc(const Segment& first, const Segment& second, double radius, XY hint);

} // namespace qz
