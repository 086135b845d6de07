#pragma once

#include <optional>

#include "platform/geometry/Geometry.h"

namespace qz {

// A vertex of a line or of the boundary of an area.
struct VertexPlace {
    std::size_t part = 0;
    std::size_t vertex = 0;
};

// Inserts a vertex where the curve is nearest to the point, with z and m as they run along it. Nothing happens, and
// nothing is returned, when that is no farther than `tolerance` from a vertex, or the curve has no length. A tolerance,
// coordinates or a point that is not finite throw PlatformError.

// The curve keeps its course: the vertex lies on it, and an arc becomes two arcs of the same circle.
std::optional<VertexPlace> insertVertexOn(Polyline& line, XY point, double tolerance);
std::optional<VertexPlace> insertVertexOn(Polygon& polygon, XY point, double tolerance);

// The curve is bent to pass through the point. Each half of an arc keeps what it turns: it is moved, scaled and rotated
// from its outer end until it meets the point.
std::optional<VertexPlace> insertVertexThrough(Polyline& line, XY point, double tolerance);
std::optional<VertexPlace> insertVertexThrough(Polygon& polygon, XY point, double tolerance);

} // namespace qz
