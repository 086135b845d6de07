#pragma once

#include <cstdint>

#include "common/Dictionary.h"
#include "platform/app/Application.h"

namespace qz {

// Puts a sketched polygon into a layer that is kept free of overlaps. The sketch may be in another spatial reference;
// it is simplified, gets the height 0 where the layer has heights and the sketch has none, and is added to the refresh
// area. What it overlaps is settled by the priority (see OverlapPriority.h); with any other code the sketch is stored
// only when it meets nothing, touches included. An empty sketch changes nothing.
//
//   with the codes -1 to 2: no overlap is made, the sum of areas changes by the sketch's alone, and polygons that meet
//   the sketch have each other's vertices on their common boundary
//
// Existing polygons keep their values; one of which nothing is left is deleted, and one that only gains vertices keeps
// its course. In a layer of single parts each part becomes a feature. Only polygons that meet the sketch are looked at,
// so that the cost doesn't grow with the layer. False after a failure, which is reported.

// New features have no values.
[[nodiscard]] bool QZ_AddPolygon(FeatureLayer& layer, const Polygon& sketch, std::int16_t priority,
                                 RefreshArea& refresh);

// New features have the values of `fieldDic`; see QZ_StoreFeature.
[[nodiscard]] bool QZ_AddPolygonA(FeatureLayer& layer, const Polygon& sketch, std::int16_t priority,
                                  RefreshArea& refresh, const Dictionary* fieldDic, bool bEditing);

// New features have the values of a feature of any class in the fields of the same names; see CopiedValues.
[[nodiscard]] bool QZ_CopyPolygonAttributes(FeatureLayer& layer, const Polygon& polygon, const Feature& source,
                                            std::int16_t priority, RefreshArea& refresh);

} // namespace qz
