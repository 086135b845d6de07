#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Leaves out the vertices that the shape can do without (D. Douglas and T. Peucker, "Algorithms for the reduction of
// the number of points required to represent a digitized line", 1973; distances are from the segment between the
// vertices kept, not from the infinite line through them). Every point of the shape is within `maximumOffset` of the
// result, and a vertex stays only where it is farther off. The vertices that stay are those of the shape, bit for bit,
// with their z and m; arcs become straight segments with vertices on the arc. An offset of 0 or below, arcs included,
// leaves the shape as it is. The result may cross or touch itself.
//
// Throws PlatformError, the shape being left as it is, for an offset that is not a number, coordinates that are not
// finite, and an offset so small for an arc that it takes more than 100 million strokes.
//
// O(n log n) for usual shapes, O(n²) for spirals and the like.

// Both ends of every part stay.
void generalize(Polyline& line, double maximumOffset);

// The start vertex of a ring and the one farthest from it stay. A ring left with fewer than three distinct vertices is
// dropped, an exterior ring together with its holes.
void generalize(Polygon& polygon, double maximumOffset);

} // namespace qz
