#pragma once

#include <vector>

#include "platform/geometry/Geometry.h"

namespace qz {

// The rings of a polygon as closed paths, in their order and direction, with arcs, z and m.
[[nodiscard]] Polyline boundary(const Polygon& polygon);
// The two ends of every path, in their order; a closed path has none.
[[nodiscard]] Multipoint boundary(const Polyline& polyline);

// The parts, each a geometry of its own of the same kind, in their order: an exterior ring with its holes, a path, a
// point. A multipoint gives points. Empty parts give none.
[[nodiscard]] std::vector<Geometry> exploded(const Geometry& geometry);

} // namespace qz
