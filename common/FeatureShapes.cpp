#include "common/FeatureShapes.h"

#include "platform/Error.h"

namespace qz {

FeaturePtr firstFeature(FeatureCursor& cursor, const char* otherwise) {
    FeaturePtr feature = cursor.next();
    if (!hasShape(feature.get())) {
        throw PlatformError(otherwise);
    }
    return feature;
}

} // namespace qz
