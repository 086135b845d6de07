#pragma once

#include "platform/app/Application.h"

namespace qz {

// Replaces every polygon of the layer that the line crosses from side to side by its two pieces, which have the values
// that the layer's attribute rules give them. The line may be in another spatial reference. What the line meets without
// cutting it gets the vertices that the cuts made on their common boundary; the rest of it stays as it is. A polygon
// whose pieces can't be stored stays. False after a failure, which is reported.
[[nodiscard]] bool QZ_SplitPolygon(FeatureLayer& layer, const Polyline& line, RefreshArea& refresh);

// The same for the polygon with the object id `lFID` alone; all others that the line meets are neighbours.
[[nodiscard]] bool QZ_SplitPolygon2(FeatureLayer& layer, double lFID, const Polyline& line, RefreshArea& refresh);

} // namespace qz
