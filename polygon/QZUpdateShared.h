#pragma once

#include "common/Dictionary.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// Moving a place that several features share: in each of them it comes to the point, bit for bit, and keeps the z and m
// that the feature has there. The point may be in another spatial reference. A key is an object id. All items are
// tested before the first feature is written: an id that doesn't exist, a feature without a shape, a text of another
// form and a number out of range are failures that name the feature and change nothing. False after a failure, which is
// reported.

// Moves ends of lines. An item says which ends of the line are at the node: "f" the start, "t" the end, "ft" both; both
// then have the z and m of the start.
[[nodiscard]] bool QZ_UpdateShared(FeatureClass& featureClass, const Point& point, const Dictionary& dictionary);

// Moves vertices of polygons. An item is "ring|vertex", two numbers from 0 on. A ring whose first or last vertex is
// moved stays closed.
[[nodiscard]] bool QZ_UpdateSharedPolygon(FeatureClass& featureClass, const Point& point, const Dictionary& dictionary);

} // namespace qz
