#include "polygon/CollectedPolygons.h"

#include "common/CursorWalk.h"
#include "platform/geometry/Simplify.h"

namespace qz {

CollectedPolygons collectPolygons(Application& application, FeatureCursor& cursor, std::int32_t expected,
                                  RefreshArea& refresh) {
    CollectedPolygons polygons;
    walkShapes(application, cursor, expected, "Collecting polygons: ", [&](Feature& feature, const Geometry& shape) {
        refresh.add(shape);
        polygons.ids.push_back(feature.objectId());
        polygons.shapes.push_back(simplified(shape.as<Polygon>()));
    });
    return polygons;
}

} // namespace qz
