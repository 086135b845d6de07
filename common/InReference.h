#pragma once

#include "common/QZFuzzyTolerance.h"
#include "platform/geometry/Project.h"

namespace qz {

// The shape as it is in another spatial reference. Where the coordinates can stay as they are, by
// QZ_SameSpatialReference, it is the shape itself. Throws PlatformError for places that the reference doesn't have.
template <typename Shape> [[nodiscard]] Shape inReference(const Shape& shape, const SpatialReference& reference) {
    if (QZ_SameSpatialReference(shape.spatialReference, reference)) {
        return shape;
    }
    Geometry moved(shape);
    project(moved, reference);
    return moved.as<Shape>();
}

} // namespace qz
