#pragma once

#include "platform/app/Application.h"

namespace qz {

// Merges the polygon at the start of a selection line into the one at its end, which stays, with values by the union
// rules of the layer; the other one is deleted. A point on a common boundary is in two polygons. Both shapes are added
// to the refresh area. False, with a notice, when there isn't one polygon at each end, both ends are in the same one,
// or the two can't be one shape, as polygons apart in a layer of single parts; nothing is changed then. False also
// after a failure, which is reported.
[[nodiscard]] bool QZ_MergePolygons(FeatureLayer& layer, const Point& start, const Point& end, RefreshArea& refresh);

} // namespace qz
