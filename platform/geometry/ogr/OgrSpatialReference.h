#pragma once

#include <ogr_spatialref.h>

#include "platform/geometry/SpatialReference.h"

namespace qz {

// Null gives none. Local, empty and "Undefined…" / "Unknown…" references without an authority code are of the unknown
// kind. The grid is the default one for the unit; callers that know a better one use withGrid.
[[nodiscard]] SpatialReference fromOgr(const OGRSpatialReference* reference);

// Null for none and for the unknown kind. Axis order is the traditional one (x east, y north). Owned by the reference.
[[nodiscard]] const OGRSpatialReference* ogrReference(const SpatialReference& reference);

} // namespace qz
