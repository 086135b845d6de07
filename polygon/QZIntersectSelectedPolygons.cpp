#include "polygon/QZIntersectSelectedPolygons.h"

#include <algorithm>
#include <vector>

#include "common/ErrorExit.h"
#include "platform/app/Services.h"
#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/SetOperations.h"
#include "polygon/CollectedPolygons.h"
#include "polygon/PolygonStorage.h"
#include "polygon/SketchFitting.h"

namespace qz {

namespace {

enum class Step { collect = 1, intersect = 2, store = 3 };

// Polygons taken apart from each other.
class OverlapFinder {
public:
    explicit OverlapFinder(const std::vector<Polygon>& polygons) : polygons_(polygons) {
        std::vector<Envelope> envelopes;
        std::ranges::transform(polygons, std::back_inserter(envelopes), &Polygon::envelope);
        tree_ = PackedEnvelopeTree(envelopes);
    }

    // What of a polygon is in no other. Its overlaps with earlier ones, as far as those before them leave it, are added
    // to `overlaps`.
    [[nodiscard]] Polygon restOf(std::size_t number, std::vector<Polygon>& overlaps) const {
        Polygon rest = polygons_[number];
        for (const std::size_t other : othersNear(number)) {
            const Geometry common = intersection(rest, polygons_[other], ResultDimension::areas);
            if (common.isEmpty()) {
                continue;
            }
            if (other < number) {
                overlaps.push_back(common.as<Polygon>());
            }
            rest = difference(rest, polygons_[other]).as<Polygon>();
        }
        return rest;
    }

private:
    [[nodiscard]] std::vector<std::size_t> othersNear(std::size_t number) const {
        std::vector<std::size_t> others;
        tree_.query(polygons_[number].envelope(), [&](std::size_t other) {
            if (other != number) {
                others.push_back(other);
            }
        });
        std::ranges::sort(others);
        return others;
    }

    const std::vector<Polygon>& polygons_;
    PackedEnvelopeTree tree_;
};

void store(FeatureLayer& layer, const std::vector<ObjectId>& ids, const std::vector<Polygon>& rests,
           const std::vector<Polygon>& overlaps) {
    FeatureClass& featureClass = layer.featureClass();
    for (const Polygon& overlap : overlaps) {
        storeNewParts(overlap, featureClass);
    }
    ShapeReplacement replacement(layer);
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (const FeaturePtr feature = featureClass.feature(ids[i])) {
            replacement.replace(*feature, rests[i]);
        }
    }
}

} // namespace

bool QZ_IntersectSelectedPolygons(Application& application, FeatureLayer& layer, std::int32_t expected,
                                  RefreshArea& refresh) {
    return withSteppedExit(
        "w= ", Step::collect, false,
        [&](Step& step) {
            CollectedPolygons selected = collectPolygons(application, *layer.selection().search(), expected, refresh);
            step = Step::intersect;
            const std::vector<Polygon> polygons = withCommonVertices(std::move(selected.shapes));
            const OverlapFinder finder(polygons);
            std::vector<Polygon> rests;
            std::vector<Polygon> overlaps;
            for (std::size_t i = 0; i < polygons.size(); ++i) {
                checkInterrupt();
                rests.push_back(finder.restOf(i, overlaps));
            }
            step = Step::store;
            store(layer, selected.ids, rests, overlaps);
            return true;
        },
        "  QZ_IntersectSelectedPolygons");
}

} // namespace qz
