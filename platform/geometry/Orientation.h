#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

enum class Turn { right = -1, straight = 0, left = 1 };

// On which side of the directed line a -> b the point c lies. Exact for all finite coordinates (adaptive floating-point
// expansion after J. R. Shewchuk, 1997).
[[nodiscard]] Turn turn(XY a, XY b, XY c) noexcept;

// Clockwise rings are exterior.
[[nodiscard]] bool isExterior(const Path& ring);
// Indexes of the exterior rings, ascending.
[[nodiscard]] std::vector<std::size_t> exteriorRings(const Polygon& polygon);
// Indexes of the holes that lie directly in the exterior ring at `exterior`, ascending. An island in a hole is an
// exterior ring of its own.
[[nodiscard]] std::vector<std::size_t> interiorRings(const Polygon& polygon, std::size_t exterior);

// Reverses every part: the first vertex becomes the last. The parts keep their order.
void reverseOrientation(Polyline& polyline);
// For polygons this turns exterior rings into holes; only for use on the way to a corrected orientation.
void reverseOrientation(Polygon& polygon);

} // namespace qz
