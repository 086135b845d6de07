#include "common/StorableParts.h"

#include "platform/geometry/Boundary.h"
#include "platform/geometry/Densify.h"

namespace qz {

namespace {

// Straight segments stay as they are.
Geometry withoutArcs(Geometry shape, double tolerance) {
    if (auto* line = shape.getIf<Polyline>()) {
        densify(*line, 0, tolerance);
    } else if (auto* polygon = shape.getIf<Polygon>()) {
        densify(*polygon, 0, tolerance);
    }
    return shape;
}

} // namespace

std::vector<Geometry> storableParts(const Geometry& shape, const FeatureClass& featureClass) {
    const ShapeDefinition& definition = *featureClass.schema().shape;
    const double tolerance = featureClass.spatialReference().grid().xyTolerance;
    const Geometry storable = definition.allowsArcs ? shape : withoutArcs(shape, tolerance);
    return definition.allowsMultipart ? std::vector{storable} : exploded(storable);
}

} // namespace qz
