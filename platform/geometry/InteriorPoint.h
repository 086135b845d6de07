#pragma once

#include <optional>

#include "platform/geometry/Geometry.h"

namespace qz {

// Places of a polygon, in its spatial reference, without z and m. True arcs count.

// The centre of gravity of the area; it may lie outside. The middle of the envelope when there is no area; nothing for
// an empty polygon.
[[nodiscard]] std::optional<Point> centroid(const Polygon& polygon);

// A point strictly inside: the middle of the longest stretch that a horizontal line at half the height has inside the
// polygon, the line being moved off vertices it would meet; of the highest part alone when the line passes between
// parts. The polygon is simple. Nothing when it has no area.
[[nodiscard]] std::optional<Point> interiorPoint(const Polygon& polygon);

} // namespace qz
