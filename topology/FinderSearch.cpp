#include "topology/FinderSearch.h"

#include <utility>

#include "common/InReference.h"

namespace qz {

FeatureFilter inView(const ActiveView& view, const SpatialReference& reference) {
    FeatureFilter filter;
    filter.shape = inReference(rectangle(view.visibleBounds(), view.spatialReference()), reference);
    filter.relation = SpatialRelation::intersects;
    return filter;
}

CursorPtr featuresToLookAt(const ActiveView& view, FeatureClass& featureClass, const SpatialReference& reference,
                           std::string_view what, std::int32_t most) {
    FeatureFilter filter;
    if (what == "Visible") {
        filter.ids = featureClass.ids(inView(view, reference));
        if (std::cmp_greater(filter.ids->size(), most)) {
            return nullptr;
        }
    }
    return featureClass.search(filter);
}

Multipoint noPointsYet(const FeatureClass& featureClass) {
    Multipoint points;
    points.spatialReference = featureClass.spatialReference();
    if (const auto& shape = featureClass.schema().shape) {
        points.zAware = shape->hasZ;
        points.mAware = shape->hasM;
    }
    return points;
}

} // namespace qz
