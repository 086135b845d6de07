#pragma once

#include <cstdint>
#include <vector>

#include "platform/app/Application.h"

namespace qz {

// Polygons of a layer in the order of the cursor, each simplified.
struct CollectedPolygons {
    std::vector<ObjectId> ids;
    std::vector<Polygon> shapes;
};

// Those of the features that have a shape; they are added to the refresh area as they are. `expected` sizes the
// progress ("Collecting polygons: ").
[[nodiscard]] CollectedPolygons collectPolygons(Application& application, FeatureCursor& cursor, std::int32_t expected,
                                                RefreshArea& refresh);

} // namespace qz
