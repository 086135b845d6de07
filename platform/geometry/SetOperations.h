#pragma once

#include <span>

#include "platform/geometry/Geometry.h"

namespace qz {

enum class ResultDimension { points = 0, lines = 1, areas = 2 };

// Set operations on geometries of the same coordinate system. Results are simple, oriented and ordered by place, have
// the spatial reference of the first operand and the z and m of any. Vertices on straight edges stay; arcs stay arcs.
// A vertex that lies on a given vertex has its z and m, another has them interpolated along the segment it lies on; of
// the first operand where it has any. Parts less wide than the resolution are left out. Operands that are not simple
// count as simplified.
// Throws PlatformError that names the operation: for coordinates that are not finite, for operands of wrong kinds.

// What both share, of that dimension: a multipoint, a polyline or a polygon, empty when there is nothing.
// Of two polylines the points are the places where they meet in a point: crossings, touches, common ends, within the
// tolerance; the ends of a stretch that both share are not among them. Points come in the order along the first.
// Lines have the direction of the first operand's.
// Refuses a dimension above that of an operand.
[[nodiscard]] Geometry intersection(const Geometry& a, const Geometry& b, ResultDimension dimension);

// Of operands of the same kind; points make multipoints. At least one operand.
[[nodiscard]] Geometry unionOf(const Geometry& a, const Geometry& b);
[[nodiscard]] Geometry unionOf(std::span<const Geometry> operands);

// What of `a` is not in `b`, of the kind of `a`; a point becomes a multipoint.
[[nodiscard]] Geometry difference(const Geometry& a, const Geometry& b);

} // namespace qz
