#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Rounds every coordinate to the grid of the geometry's spatial reference, half away from zero. It only rounds: no
// vertex is merged or removed. The middle control point of an arc moves along with the ends instead, so that the arc
// departs from its circle by no more than its ends move (more only where it is nearly a full circle); when the ends are
// on the grid the arc stays as it is. Without a reference nothing changes; undefined values stay undefined.
//   snapToSpatialReference is idempotent
void snapToSpatialReference(Geometry& geometry);
void snapToSpatialReference(Polyline& polyline);

// One coordinate. With a resolution of 1/n the result is the double nearest to the decimal (0.1 stays 0.1).
// `resolution` <= 0 leaves it as it is, and so does a place 2^50 cells away, where doubles are no finer than the grid.
[[nodiscard]] double snapped(double value, double origin, double resolution) noexcept;

} // namespace qz
