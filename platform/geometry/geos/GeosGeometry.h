#pragma once

#include <vector>

#include "platform/geometry/Geometry.h"
#include "platform/geometry/geos/GeosContext.h"

namespace qz {

// The x and y of a geometry without arcs for GEOS. Points, lines and areas of several parts become MULTI…; paths of one
// vertex become a line without length. Never null. Throws PlatformError for a coordinate that is not finite.
[[nodiscard]] GeosGeometryPtr toGeos(const Geometry& geometry);
// The same for many as one collection of the kind that their parts make; of lines that need not be noded, for instance.
[[nodiscard]] GeosGeometryPtr collect(std::vector<GeosGeometryPtr> parts, int type);

// Polygons as rings with x and y only, an exterior ring before its holes.
using PolygonRings = std::vector<Path>;

// What a geometry or a collection has of each dimension, in its order.
[[nodiscard]] std::vector<PolygonRings> polygonsIn(const GEOSGeometry& geometry);
[[nodiscard]] std::vector<Path> linesIn(const GEOSGeometry& geometry);
[[nodiscard]] std::vector<XY> pointsIn(const GEOSGeometry& geometry);

} // namespace qz
