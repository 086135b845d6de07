#include "common/QZFeatureMethods.h"

#include <cmath>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/InReference.h"
#include "common/QZFeatureClass.h"
#include "common/QZFeatureStorage.h"

namespace qz {

bool QZ_QuickDelete(Application& application, FeatureCursor& cursor, std::int32_t expected, RefreshArea& refresh) {
    enum class Step { shape = 1, remove = 2, progress = 3 };
    return withSteppedExit(" QZ_QuickDelete w=", Step::shape, false, [&](Step& step) {
        WalkProgress progress(application, expected, "Deleting features: ");
        std::int32_t counter = 0;
        for (FeaturePtr feature = cursor.next(); feature; feature = cursor.next(), ++counter) {
            step = Step::shape;
            if (hasShape(*feature)) {
                refresh.add(*feature->shape());
            }
            step = Step::remove;
            feature->remove();
            step = Step::progress;
            progress.advance(counter);
        }
        progress.hide();
        return true;
    });
}

bool QZ_AddPoint(FeatureLayer& layer, const Point& point, RefreshArea& refresh) {
    enum class Step { place = 1, store = 2, refreshArea = 3 };
    return withSteppedExit(" QZ_AddPoint w= ", Step::place, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        Point stored = inReference(point, featureClass.spatialReference());
        stored.zAware = QZ_FCHasZ(featureClass);
        stored.mAware = QZ_FCHasM(featureClass);
        if (std::isnan(stored.vertex.z)) {
            stored.vertex.z = 0;
        }
        step = Step::store;
        if (!QZ_StoreFeature(stored, featureClass, true, nullptr)) {
            return false;
        }
        step = Step::refreshArea;
        refresh.add(stored);
        return true;
    });
}

bool QZ_AddPointA(FeatureLayer& layer, const Point& point, RefreshArea& refresh, const Dictionary* fieldDic,
                  bool bEditing) {
    enum class Step { featureClass = 1, awareness = 2, store = 3, refreshArea = 4 };
    return withSteppedExit(" QZ_AddPointA w= ", Step::featureClass, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        step = Step::awareness;
        Point stored = point;
        if (QZ_FCHasZ(featureClass)) {
            stored.zAware = true;
            stored.vertex.z = 0;
        }
        if (QZ_FCHasM(featureClass)) {
            stored.mAware = true;
        }
        step = Step::store;
        if (!QZ_StoreFeature(stored, featureClass, bEditing, fieldDic)) {
            return false;
        }
        step = Step::refreshArea;
        refresh.add(stored);
        return true;
    });
}

bool QZ_PasteAttributes(FeatureLayer& layer, FeatureCursor& cursor, RefreshArea& refresh, const Dictionary* fieldDic,
                        bool bEditing) {
    enum class Step { featureClass = 1, next = 2, update = 3, refreshArea = 4 };
    return withSteppedExit(" QZ_PasteAttributes w= ", Step::featureClass, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        step = Step::next;
        for (FeaturePtr feature = cursor.next(); feature; feature = cursor.next()) {
            if (const auto shape = feature->shape()) {
                step = Step::update;
                if (!QZ_UpdateAttributes(cursor, feature, featureClass, bEditing, fieldDic)) {
                    return false;
                }
                step = Step::refreshArea;
                refresh.add(*shape);
            }
            step = Step::next;
        }
        return true;
    });
}

} // namespace qz
