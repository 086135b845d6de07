#pragma once

#include <optional>

#include "platform/app/Application.h"
#include "polygon/QZCorners.h"

namespace qz {

// Replaces corners of a line or polygon by straight cuts or by arcs. A corner stays where the cut doesn't fit on its
// segments (see QZ_GetFromToSegs), next to an arc, and in a polygon where it would run into another part of it. Layers
// that hold no arcs get straight segments within the tolerance in their place.

// Cuts every corner once, along each part, a ring's start last, and writes the feature through the update cursor.
// False, with a notice, for a line of several parts; false without a feature that has a shape; false after a failure,
// which is reported, a size that is not above 0 included.
[[nodiscard]] bool QZ_ChamferAllRun(FeatureCursor& cursor, FeatureClass& featureClass, Feature* feature,
                                    RefreshArea& refresh, const CornerCut& cut);

// The same for the one corner nearest to the point.
[[nodiscard]] bool QZ_ChamferSingleRun(FeatureCursor& cursor, FeatureClass& featureClass, Feature* feature,
                                       const Point& point, RefreshArea& refresh, const CornerCut& cut);

// Cuts the corner nearest to the point: a polygon's on the ring that comes nearest to it, the first of several. The
// shape itself where the corner stays, as the ends of an open line do. Nothing after a failure, which is reported.
[[nodiscard]] std::optional<Polygon> QZ_ChamferPg(const Polygon& polygon, const Point& point, const CornerCut& cut);
// The line has one part.
[[nodiscard]] std::optional<Polyline> QZ_Chamfer(const Polyline& line, const Point& point, const CornerCut& cut);

} // namespace qz
