#pragma once

#include "platform/geometry/Geometry.h"

namespace qz {

// Rounds every coordinate to the grid of the geometry's spatial reference, half away from zero. It only rounds: no
// vertex is merged or removed. Without a reference nothing changes; undefined values stay undefined.
//   snapToSpatialReference is idempotent
void snapToSpatialReference(Geometry& geometry);
void snapToSpatialReference(Polyline& polyline);

// One coordinate, in units of the grid; `resolution` <= 0 leaves it as it is.
[[nodiscard]] double snapped(double value, double origin, double resolution) noexcept;

} // namespace qz
