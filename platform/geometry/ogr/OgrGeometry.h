#pragma once

#include <memory>

#include <ogr_geometry.h>

#include "platform/geometry/Geometry.h"

namespace qz {

// Takes a geometry of GDAL over as it is, arcs with their control points. Polygon rings are put into this library's
// orientation and order. Full circles get the sense of their ring's role, in lines counter-clockwise.
// Throws PlatformError for kinds that are none of the four: mixed collections, TIN, polyhedral surfaces.
// The spatial reference is left to the caller.
[[nodiscard]] Geometry fromOgr(const OGRGeometry& geometry);

// The same coordinates for GDAL, z and m as far as the geometry is aware of them. `multipart`: as MULTI… even with one
// part; geometries of several parts always are. Curved kinds are used only where there are arcs.
[[nodiscard]] std::unique_ptr<OGRGeometry> toOgr(const Geometry& geometry, bool multipart = false);

} // namespace qz
