#pragma once

#include <cstdint>

#include "platform/app/Application.h"

namespace qz {

// Cuts the overlaps out of the selected polygons of the layer, each into a new feature without values, which isn't
// selected. What is in three polygons or more stays in each overlap that has the polygon with the smallest id in it.
// A polygon of which nothing is left, as of one that is there twice, is deleted once the overlaps are stored. Polygons
// that only touch get each other's vertices on their common boundary. All shapes are added to the refresh area;
// `expected` sizes the progress only. Near-linear for polygons that each overlap a few others. Without a selection
// nothing happens. False after a failure, which is reported.
[[nodiscard]] bool QZ_IntersectSelectedPolygons(Application& application, FeatureLayer& layer, std::int32_t expected,
                                                RefreshArea& refresh);

} // namespace qz
