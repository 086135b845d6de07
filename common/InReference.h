#pragma once

#include <utility>

#include "common/QZFuzzyTolerance.h"
#include "platform/geometry/Project.h"

namespace qz {

// The shape as it is in another spatial reference. Where the coordinates can stay as they are, by
// QZ_SameSpatialReference, it is the shape itself. Throws PlatformError for places that the reference doesn't have.
template <typename Shape> [[nodiscard]] Shape inReference(Shape shape, const SpatialReference& reference) {
    if (QZ_SameSpatialReference(shape.spatialReference, reference)) {
        return shape;
    }
    Geometry moved(std::move(shape));
    project(moved, reference);
    return std::move(moved.as<Shape>());
}

} // namespace qz
