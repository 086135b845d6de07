#include "polygon/QZMergePolygons.h"

#include "attributes/QZAttributeRules.h"
#include "attributes/QZAttributeTransfer.h"
#include "common/ErrorExit.h"
#include "common/QZSpatialSearch.h"
#include "common/StorableParts.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/SetOperations.h"

namespace qz {

namespace {

enum class Step { count = 1, find = 2, unite = 3, values = 4, store = 5 };

struct EndTexts {
    const char* none;
    const char* several;
};

constexpr EndTexts startTexts{"The start of the selection line should be inside a polygon",
                              "Duplicate polygons found at the start of the selection line."};
constexpr EndTexts endTexts{"The end of the selection line should be inside a polygon",
                            "Duplicate polygons found at the end of the selection line."};
constexpr const char* samePolygon = "The Start and End points of the selection line should be in different polygons";
constexpr const char* notMerged = "Could not merge the polygons";

bool refused(const char* text) {
    showMessage(text);
    return false;
}

bool isInOnePolygon(const Point& point, FeatureClass& featureClass, const EndTexts& texts) {
    const std::int64_t count =
        QZ_CountFeaturesSpatialy(point, featureClass, featureClass.spatialReference(), "Intersects");
    if (count == 0) {
        return refused(texts.none);
    }
    return count == 1 || refused(texts.several);
}

// An update cursor and the feature it stands on.
struct Found {
    CursorPtr cursor;
    FeaturePtr feature;
};

Found foundAt(const Point& point, FeatureClass& featureClass) {
    Found found;
    found.cursor =
        QZ_FindFeaturesSpatialy(point, featureClass, featureClass.spatialReference(), "Intersects", "Update");
    found.feature = found.cursor ? found.cursor->next() : nullptr;
    if (!found.feature) {
        throw PlatformError("A polygon at an end of the selection line could not be read.");
    }
    return found;
}

bool mergeValues(FeatureLayer& layer, const Feature& merged, Feature& kept) {
    const std::optional<Dictionary> rules = QZ_GetAttRules(layer.name());
    return !rules || QZ_MergeAttributes(layer.featureClass(), *rules, merged, kept);
}

bool merge(FeatureLayer& layer, Feature& merged, const Found& kept, RefreshArea& refresh, Step& step) {
    step = Step::unite;
    refresh.add(*merged.shape());
    refresh.add(*kept.feature->shape());
    const Geometry united = unionOf(*merged.shape(), *kept.feature->shape());
    if (united.isEmpty() || storableParts(united, layer.featureClass()).size() > 1) {
        return refused(notMerged);
    }
    step = Step::values;
    if (!mergeValues(layer, merged, *kept.feature)) {
        return false;
    }
    step = Step::store;
    kept.feature->setShape(united);
    kept.cursor->update(*kept.feature);
    merged.remove();
    return true;
}

} // namespace

bool QZ_MergePolygons(FeatureLayer& layer, const Point& start, const Point& end, RefreshArea& refresh) {
    return withSteppedExit(" QZ_MergePolygons  w = ", Step::count, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        if (!isInOnePolygon(start, featureClass, startTexts) || !isInOnePolygon(end, featureClass, endTexts)) {
            return false;
        }
        step = Step::find;
        const Found merged = foundAt(start, featureClass);
        const Found kept = foundAt(end, featureClass);
        if (merged.feature->objectId() == kept.feature->objectId()) {
            return refused(samePolygon);
        }
        return merge(layer, *merged.feature, kept, refresh, step);
    });
}

} // namespace qz
