#pragma once

#include <span>

#include "platform/geometry/Geometry.h"

namespace qz {

// Gives the boundary of a polygon the vertices of its neighbours: each place nearer than `tolerance` to the boundary
// becomes a vertex of it, with z and m as they run along the boundary. Within the resolution the vertex is the place
// itself, so that both have it bit for bit; farther off it lies on the boundary, which is never bent. Where there is a
// vertex already nothing happens. False when nothing changed.
bool insertSharedVertices(Polygon& polygon, std::span<const XY> places, double tolerance);

} // namespace qz
