#pragma once

#include <optional>
#include <span>
#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

// The corners of the smallest convex polygon around the points, counter-clockwise from the lowest of the leftmost, none
// repeated and none on a line between two others. One point or two for points on one place or one line.
// The monotone chain of A. M. Andrew, 1979, with an exact side test. O(n log n). The points are finite.
[[nodiscard]] std::vector<XY> hullCorners(std::vector<XY> points);

// The convex hull in the geometry's spatial reference, without z and m: a polygon, a straight line when all points lie
// on one, a point when they are one; an empty polygon for an empty geometry. Arcs count by strokes within the
// tolerance. Throws PlatformError for coordinates that are not finite.
[[nodiscard]] Geometry convexHull(const Geometry& geometry);

// The rectangle of the smallest area around the geometry, in any direction, as a polygon of one clockwise ring, without
// z and m. One of its sides runs along a side of the convex hull (Freeman & Shapira, 1975; found with the rotating
// calipers of Toussaint, 1983); of several with the same area the one whose side comes first around the hull. Nothing
// when the hull has no area.
[[nodiscard]] std::optional<Polygon> minimumAreaRectangle(const Geometry& geometry);

} // namespace qz
