#include "polygon/SharedVertices.h"

#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/VertexEditing.h"

namespace qz {

bool insertSharedVertices(Polygon& polygon, std::span<const XY> places, double tolerance) {
    const CurveIndex boundary{Curve(polygon)};
    const auto& grid = polygon.spatialReference.grid();
    bool changed = false;
    for (const XY place : places) {
        const auto position = boundary.positionOf(place);
        if (!position || !(position->distanceFrom < tolerance)) {
            continue;
        }
        const auto inserted = position->distanceFrom <= grid.xyResolution
                                  ? insertVertexThrough(polygon, place, grid.xyResolution)
                                  : insertVertexOn(polygon, place, grid.xyTolerance);
        changed = changed || inserted;
    }
    return changed;
}

} // namespace qz
