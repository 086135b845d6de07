#pragma once

#include <cstddef>
#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

// Lengths and areas are planar, in the units of the coordinates, along true arcs; z plays no part.

[[nodiscard]] double segmentLength(const Path& path, std::size_t segment);
[[nodiscard]] double length(const Path& path);
[[nodiscard]] double length(const Polyline& polyline);
[[nodiscard]] double perimeter(const Polygon& polygon);

// Positive for a clockwise ring, negative for a counter-clockwise one; 0 for an open path of one segment.
[[nodiscard]] double signedArea(const Path& ring);
// Sum over the rings: holes subtract.
[[nodiscard]] double area(const Polygon& polygon);

} // namespace qz
