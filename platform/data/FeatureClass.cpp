#include "platform/data/FeatureClass.h"

namespace qz {

const SpatialReference& FeatureClass::spatialReference() const {
    static const SpatialReference none;
    return schema().shape ? schema().shape->spatialReference : none;
}

} // namespace qz
