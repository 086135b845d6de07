#include "common/StorableParts.h"

#include "platform/geometry/Boundary.h"

namespace qz {

std::vector<Geometry> storableParts(const Geometry& shape, const FeatureClass& featureClass) {
    return featureClass.schema().shape->allowsMultipart ? std::vector{shape} : exploded(shape);
}

} // namespace qz
