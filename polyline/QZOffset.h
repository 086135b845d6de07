#pragma once

#include "platform/app/Application.h"

namespace qz {

// Parallel copies of lines, with the attributes of their source. The distance is in the units of the map's reference:
// the line is projected there, and its offset back. Positive distances are to the right of a line, looking from its
// start to its end; see offset() for the shape. A layer of single parts gets a feature for each part of an offset.
// All give false after a failure, which is reported.

struct OffsetRequest {
    double distance = 0;
    std::int16_t vMethod = 0; // 2: pointed corners, 4: cut ones, 8: rounded ones
    SpatialReference dataReference;
    SpatialReference mapReference;
};

// One copy of the first line of the cursor, on the side of the click, which is in the map's reference, or on the other
// one for a negative distance. Without `bCopy` the source is deleted. When nothing is so far from the line nothing
// changes.
[[nodiscard]] bool QZ_OffsetPolyline(FeatureClass& featureClass, FeatureCursor& cursor, const Point& click,
                                     const OffsetRequest& request, bool bCopy, RefreshArea& refresh);

// Two copies of every line of the cursor, first that for the distance as given. A line of which one would vanish stays
// as it is, which the user is told at the end. Without `bCopy` the sources of others are deleted.
[[nodiscard]] bool QZ_OffsetDouble(Application& application, FeatureClass& featureClass, FeatureCursor& cursor,
                                   std::int32_t expected, const OffsetRequest& request, bool bCopy,
                                   RefreshArea& refresh);

// Copies of the first line of the cursor on the side of the click, at 1 to `number` times the distance. Those that
// would vanish are left out.
[[nodiscard]] bool QZ_OffsetPolylineMulti(FeatureClass& featureClass, FeatureCursor& cursor, const Point& click,
                                          const OffsetRequest& request, std::int32_t number, RefreshArea& refresh);

} // namespace qz
