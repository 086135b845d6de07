#pragma once

#include <memory>
#include <string>

#include <ogr_spatialref.h>

#include "platform/geometry/SpatialReference.h"

namespace qz {

// What is shared by references that differ only in their grid.
struct CoordinateSystem {
    OGRSpatialReference ogr; // axes in the traditional order; empty for the unknown kind
    bool unknown = false;
    bool geographic = false;
    int factoryCode = 0;
    std::string name;
    std::string wkt;
};

struct SpatialReference::Data {
    std::shared_ptr<const CoordinateSystem> system;
    CoordinateGrid grid;
};

// The same definition, whatever the grids. False when either is none; two of the unknown kind are the same.
[[nodiscard]] bool isSameSystem(const SpatialReference& a, const SpatialReference& b);

} // namespace qz
