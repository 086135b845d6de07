#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// The area of all places no farther than `distance` from the shape, with round ends and corners: a simple polygon whose
// boundary is made of the shape's own parallels and of true arcs about its vertices, in the spatial reference of the
// shape, without z and m.
//   area(buffer(point, d)) == pi d²;  area(buffer(straight line of length L, d)) == pi d² + 2 d L
// Areas with a negative distance: what is at least that far inside of the boundary. For other shapes a negative
// distance or 0 gives an empty polygon; an area at 0 is itself, simplified. Empty shapes: an empty polygon.
// Parts of the result less wide than the resolution are left out.
// Throws PlatformError for a distance or coordinates that are not finite or beyond 1e12 tolerances. O(n log n) for
// shapes whose parts don't all lie equally near to each other.
[[nodiscard]] Polygon buffer(const Geometry& shape, double distance);

} // namespace qz
