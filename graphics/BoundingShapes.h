#pragma once

#include <optional>

#include "platform/geometry/Geometry.h"

namespace qz {

// Shapes around others, in their spatial reference, without z and m. Circles are true arcs.

// The smallest circle around the points of a shape: arcs count by points along them within the tolerance. Nothing for
// fewer than two points, and when they are all at one place. `radius` in the units of the shape.
struct BoundingCircle {
    Polygon circle;
    double radius = 0;
};
[[nodiscard]] std::optional<BoundingCircle> QZ_MinBoundingCircle(const Geometry& points);

// The rectangle whose sides run along and across the main axis, the line between the two corners of the convex hull
// that are farthest from each other; of several pairs the first along the hull. Arcs count with their true extent.
// Nothing when all points are at one place.
struct BoundingRectangle {
    Polygon rectangle;
    double longSide = 0;
    double shortSide = 0;
};
[[nodiscard]] std::optional<BoundingRectangle> QZ_BoundingRectangle(const Geometry& shape);

// The circle of the polygon's area around its centroid. Nothing for a polygon without area.
[[nodiscard]] std::optional<Polygon> QZ_EACircle(const Polygon& polygon);

} // namespace qz
