#include "topology/QZValidateEdits.h"

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/Numbers.h"
#include "platform/geometry/Grid.h"

namespace qz {

bool QZ_ValidateEdits(FeatureClass& featureClass, Application& application) {
    enum class Step { count = 1, walk = 2 };
    return withSteppedExit(" QZ_ValidateEdits w=", Step::count, false, [&](Step& step) {
        const std::int32_t expected = toInteger32(static_cast<double>(featureClass.count()));
        step = Step::walk;
        const CursorPtr cursor = featureClass.update({});
        walkShapes(application, *cursor, expected,
                   "Collecting polylines: ", [&](Feature& feature, const Geometry& shape) {
                       Geometry snapped = shape;
                       snapToSpatialReference(snapped);
                       feature.setShape(std::move(snapped));
                       cursor->update(feature);
                   });
        return true;
    });
}

} // namespace qz
