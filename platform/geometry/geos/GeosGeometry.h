#pragma once

#include "platform/geometry/Geometry.h"
#include "platform/geometry/geos/GeosContext.h"

namespace qz {

// The x and y of a geometry without arcs for GEOS. Points, lines and areas of several parts become MULTI…; paths of one
// vertex become a line without length. Never null. Throws PlatformError for a coordinate that is not finite.
[[nodiscard]] GeosGeometryPtr toGeos(const Geometry& geometry);

} // namespace qz
