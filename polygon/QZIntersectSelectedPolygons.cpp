#include "polygon/QZIntersectSelectedPolygons.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "common/ErrorExit.h"
#include "common/OverlapCandidates.h"
#include "platform/app/Services.h"
#include "platform/geometry/SetOperations.h"
#include "polygon/CollectedPolygons.h"
#include "polygon/PolygonStorage.h"
#include "polygon/SketchFitting.h"

namespace qz {

namespace {

enum class Step { collect = 1, intersect = 2, store = 3 };

// The numbers of the polygons that each may share area with, ascending.
std::vector<std::vector<std::uint32_t>> othersOf(const std::vector<Polygon>& polygons) {
    const OverlapCandidates candidates(polygons);
    std::vector<std::vector<std::uint32_t>> others(polygons.size());
    for (std::uint32_t later = 0; later < polygons.size(); ++later) {
        for (const std::uint32_t earlier : candidates.earlierOf()[later]) {
            others[later].push_back(earlier);
            others[earlier].push_back(later);
        }
    }
    std::ranges::for_each(others, [](auto& numbers) { std::ranges::sort(numbers); });
    return others;
}

// What of a polygon is in none of the others. Its overlaps with earlier ones, as far as those before them leave it, are
// added to `overlaps`.
Polygon restOf(std::size_t number, const std::vector<Polygon>& polygons, std::span<const std::uint32_t> others,
               std::vector<Polygon>& overlaps) {
    Polygon rest = polygons[number];
    for (const std::uint32_t other : others) {
        const Geometry common = intersection(rest, polygons[other], ResultDimension::areas);
        if (common.isEmpty()) {
            continue;
        }
        if (other < number) {
            overlaps.push_back(common.as<Polygon>());
        }
        rest = difference(rest, polygons[other]).as<Polygon>();
    }
    return rest;
}

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
            const std::vector<std::vector<std::uint32_t>> others = othersOf(polygons);
            std::vector<Polygon> rests;
            std::vector<Polygon> overlaps;
            for (std::size_t i = 0; i < polygons.size(); ++i) {
                checkInterrupt();
                rests.push_back(restOf(i, polygons, others[i], overlaps));
            }
            step = Step::store;
            store(layer, selected.ids, rests, overlaps);
            return true;
        },
        "  QZ_IntersectSelectedPolygons");
}

} // namespace qz
