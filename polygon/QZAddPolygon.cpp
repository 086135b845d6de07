#include "polygon/QZAddPolygon.h"

#include <algorithm>

#include "common/CopiedValues.h"
#include "common/ErrorExit.h"
#include "common/QZFeatureStorage.h"
#include "common/StorableParts.h"
#include "polygon/OverlapPriority.h"
#include "polygon/PolygonStorage.h"

namespace qz {

namespace {

enum class Step { prepare = 1, find = 2, overlaps = 3, store = 4, existing = 5 };

// `storeParts(polygon)` gives false when it failed, which was reported.
template <typename StoreParts>
bool settle(FeatureLayer& layer, OverlapPriority priority, const Polygon& sketch, const std::vector<FeaturePtr>& met,
            Step& step, StoreParts storeParts) {
    step = Step::overlaps;
    const ResolvedOverlaps resolved = resolvedOverlaps(priority, fittedInto(sketch, polygonsOf(met)));
    step = Step::store;
    if (!std::ranges::all_of(resolved.added, storeParts)) {
        return false;
    }
    step = Step::existing;
    ShapeReplacement replacement(layer);
    for (std::size_t i = 0; i < met.size(); ++i) {
        replacement.replace(*met[i], resolved.rest[i]);
    }
    return true;
}

// `store(part)`: as above, for a polygon that the layer can hold.
template <typename Store>
bool addPolygon(FeatureLayer& layer, const Polygon& given, std::int16_t code, RefreshArea& refresh, Step& step,
                Store store) {
    FeatureClass& featureClass = layer.featureClass();
    const Polygon sketch = preparedFor(featureClass, given);
    refresh.add(sketch);
    if (sketch.isEmpty()) {
        return true;
    }
    const auto storeParts = [&](const Polygon& polygon) {
        return std::ranges::all_of(storableParts(polygon, featureClass), store);
    };
    const std::optional<OverlapPriority> priority = overlapPriorityOf(code);
    if (priority == OverlapPriority::asIs) {
        step = Step::store;
        return storeParts(sketch);
    }
    step = Step::find;
    const std::vector<FeaturePtr> met = featuresMeeting(sketch, featureClass);
    if (!priority) {
        return !met.empty() || storeParts(sketch);
    }
    return settle(layer, *priority, sketch, met, step, storeParts);
}

} // namespace

bool QZ_AddPolygon(FeatureLayer& layer, const Polygon& sketch, std::int16_t priority, RefreshArea& refresh) {
    return withSteppedExit(" QZ_AddPolygon w= ", Step::prepare, false, [&](Step& step) {
        return addPolygon(layer, sketch, priority, refresh, step, [&](const Geometry& part) {
            storeNew(part, layer.featureClass());
            return true;
        });
    });
}

bool QZ_AddPolygonA(FeatureLayer& layer, const Polygon& sketch, std::int16_t priority, RefreshArea& refresh,
                    const Dictionary* fieldDic, bool bEditing) {
    return withSteppedExit(" QZ_AddPolygonA w= ", Step::prepare, false, [&](Step& step) {
        return addPolygon(layer, sketch, priority, refresh, step, [&](const Geometry& part) {
            return QZ_StoreFeature(part, layer.featureClass(), bEditing, fieldDic);
        });
    });
}

bool QZ_CopyPolygonAttributes(FeatureLayer& layer, const Polygon& polygon, const Feature& source, std::int16_t priority,
                              RefreshArea& refresh) {
    return withSteppedExit(" QZ_CopyPolygonAttributes w= ", Step::prepare, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        const CopiedValues values(source, featureClass);
        return addPolygon(layer, polygon, priority, refresh, step, [&](const Geometry& part) {
            storeNew(part, featureClass, values);
            return true;
        });
    });
}

} // namespace qz
