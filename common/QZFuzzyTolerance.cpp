#include "common/QZFuzzyTolerance.h"

#include "common/ApplicationReference.h"
#include "common/ErrorExit.h"
#include "platform/geometry/Project.h"

namespace qz {

namespace {

enum class Step { map = 0, count = 1, extent = 2, size = 3, result = 4 };

double toleranceFor(const Envelope& extent) {
    return extent.isEmpty() ? 0.0 : (extent.width() + extent.height()) / 2000000;
}

Envelope inMapReference(const Envelope& extent, const FeatureClass& featureClass, const SpatialReference& map) {
    const SpatialReference& own = featureClass.spatialReference();
    return QZ_SameSpatialReference(own, map) ? extent : projected(extent, own, map);
}

} // namespace

double QZ_CalcFuzzyToleranceFC(FeatureClass& featureClass) {
    return withSteppedExit(
        " ww= ", Step::map, 0.0,
        [&](Step& step) {
            const SpatialReference& map = application().focusMap().spatialReference();
            step = Step::count;
            if (featureClass.count() == 0) {
                return 0.0;
            }
            step = Step::extent;
            const Envelope stored = featureClass.extent();
            if (stored.isEmpty()) {
                return 0.0;
            }
            step = Step::size;
            const Envelope extent = inMapReference(stored, featureClass, map);
            step = Step::result;
            return toleranceFor(extent);
        },
        " QZ_CalcFuzzyToleranceFC");
}

double fuzzyToleranceOf(FeatureClass& featureClass) {
    return toleranceFor(featureClass.extent());
}

bool QZ_SameSpatialReference(const SpatialReference& a, const SpatialReference& b) {
    const auto isAnyPlace = [](const SpatialReference& reference) {
        return reference.isNone() || reference.isUnknown();
    };
    return isAnyPlace(a) || isAnyPlace(b) || a.factoryCode() == b.factoryCode();
}

} // namespace qz
