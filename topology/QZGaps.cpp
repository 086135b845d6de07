#include "topology/QZGaps.h"

#include <utility>
#include <vector>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/MapGround.h"
#include "common/QZSpatialSearch.h"
#include "platform/app/Services.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/Relations.h"
#include "platform/geometry/Simplify.h"
#include "topology/GapMerging.h"
#include "topology/QZOverGaps.h"

namespace qz {

namespace {

enum class Step { search = 1, collect = 2, find = 3, settle = 4 };

Envelope scaled(const Envelope& envelope, double ratio) {
    const double dx = (ratio - 1) / 2 * (envelope.xMax - envelope.xMin);
    const double dy = (ratio - 1) / 2 * (envelope.yMax - envelope.yMin);
    return envelope.expandedBy(dx, dy);
}

std::vector<Polygon> polygonsOn(Application& application, const Polygon& ground, FeatureClass& featureClass) {
    const std::int64_t count =
        QZ_CountFeaturesSpatialy(ground, featureClass, featureClass.spatialReference(), "Intersects");
    std::vector<Polygon> polygons;
    walkShapes(application, *featuresOn(ground, featureClass), static_cast<std::int32_t>(count),
               "Collecting polygons: ", [&](Feature&, const Geometry& shape) {
                   polygons.push_back(simplified(shape.as<Polygon>()));
               });
    return polygons;
}

// Those on the ground that don't meet the frame.
GeometryCollection gapsOn(const Polygon& ground, const Polygon& frame, const std::vector<Polygon>& polygons) {
    const PreparedRelation within(ground, SpatialRelation::within);
    const PreparedRelation meets(boundary(frame), SpatialRelation::intersects);
    GeometryCollection gaps;
    for (Polygon& gap : gapsBetween(polygons)) {
        if (within.holdsFor(gap) && !meets.holdsFor(gap)) {
            gaps.geometries.emplace_back(std::move(gap));
        }
    }
    return gaps;
}

template <typename See> void forEachGap(const GeometryCollection& gaps, const FeatureClass& featureClass, See see) {
    for (const Geometry& gap : gaps.geometries) {
        checkInterrupt();
        if (!gap.isEmpty()) {
            see(preparedFor(featureClass, gap.as<Polygon>()));
        }
    }
}

} // namespace

bool QZ_DrawGaps(Application& application, FeatureLayer& layer, Envelope* envelope, RefreshArea& refresh,
                 const FillSymbol& symbol, bool bAdd, std::string_view sHow) {
    return withSteppedExit(" QZ_DrawGaps w= ", Step::search, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        Envelope extent = shownWithin(application, envelope);
        const Polygon ground = groundOf(application, extent, featureClass);
        refresh.add(ground);
        constexpr double innerShare = 0.999;
        extent = scaled(extent, innerShare);
        if (envelope) {
            *envelope = extent;
        }
        step = Step::collect;
        const std::vector<Polygon> polygons = polygonsOn(application, ground, featureClass);
        step = Step::find;
        const GeometryCollection gaps = gapsOn(ground, groundOf(application, extent, featureClass), polygons);
        step = Step::settle;
        if (bAdd && !gaps.geometries.empty()) {
            return QZ_FillGaps(layer, gaps, sHow);
        }
        for (const Geometry& gap : gaps.geometries) {
            paint(application, gap.as<Polygon>(), symbol);
        }
        return true;
    });
}

bool QZ_FillGaps(FeatureLayer& layer, const GeometryCollection& gaps, std::string_view sHow) {
    return withErrorExit(" QZ_FillGaps", false, [&] {
        FeatureClass& featureClass = layer.featureClass();
        if (sHow == "New Polygon") {
            forEachGap(gaps, featureClass, [&](const Polygon& gap) { storeNewParts(gap, featureClass); });
            return true;
        }
        GapMerging merging(layer);
        forEachGap(gaps, featureClass, [&](const Polygon& gap) { merging.add(gap); });
        merging.finish();
        return true;
    });
}

} // namespace qz
