#include "polyline/QZFlip.h"

#include "common/CursorWalk.h"
#include "platform/geometry/Grid.h"
#include "platform/geometry/Orientation.h"

namespace qz {

void flipPolylines(Application& application, FeatureCursor& cursor, std::int32_t expected, RefreshArea& refresh) {
    walkShapes(application, cursor, expected, "Flipping polylines: ", [&](Feature& feature, const Geometry& shape) {
        Polyline polyline = shape.as<Polyline>();
        refresh.add(shape);
        reverseOrientation(polyline);
        snapToSpatialReference(polyline);
        feature.setShape(std::move(polyline));
        feature.store();
    });
}

} // namespace qz
