#include "topology/QZDrawOverlaps.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/MapGround.h"
#include "common/OverlapCandidates.h"
#include "platform/app/Services.h"
#include "platform/geometry/SetOperations.h"
#include "polygon/CollectedPolygons.h"
#include "topology/QZOverGaps.h"

namespace qz {

namespace {

enum class Step { search = 1, collect = 2, analyse = 3 };

std::optional<CoverFault> faultNamed(std::string_view what) {
    if (what == "Overlaps") {
        return CoverFault::overlap;
    }
    return what == "Gaps" ? std::optional(CoverFault::gap) : std::nullopt;
}

} // namespace

bool QZ_DrawOverlaps(Application& application, FeatureLayer& layer, std::int32_t expected, RefreshArea& refresh,
                     const Envelope* envelope, const FillSymbol& symbol) {
    return withSteppedExit("  DrawOverlapsw= ", Step::search, false, [&](Step& step) {
        FeatureClass& featureClass = layer.featureClass();
        const Polygon ground = groundOf(application, shownWithin(application, envelope), featureClass);
        step = Step::collect;
        const std::vector<Polygon> polygons =
            collectPolygons(application, *featuresOn(ground, featureClass), expected, refresh).shapes;
        step = Step::analyse;
        const OverlapCandidates candidates(polygons);
        WalkProgress progress(application, expected, "Analyzing overlaps : ");
        for (std::size_t later = 0; later < polygons.size(); ++later) {
            checkInterrupt();
            for (const std::uint32_t earlier : candidates.earlierOf()[later]) {
                const Geometry common = intersection(polygons[later], polygons[earlier], ResultDimension::areas);
                if (!common.isEmpty()) {
                    paint(application, common.as<Polygon>(), symbol);
                }
            }
            progress.advance(static_cast<std::int32_t>(later));
        }
        progress.hide();
        return true;
    });
}

bool QZ_DrawOverlaps_Topo(Application& application, FeatureLayer& layer, const Envelope* envelope, double tolerance,
                          std::string_view what, const FillSymbol& symbol) {
    return withErrorExit(" QZ_DrawOverlaps_Topo", false, [&] {
        const std::optional<CoverFault> fault = faultNamed(what);
        if (!fault) {
            return true;
        }
        FeatureClass& featureClass = layer.featureClass();
        const Polygon ground = groundOf(application, shownWithin(application, envelope), featureClass);
        const TopologyGraph graph = QZ_GetTopoGraph(featureClass, nullptr, ground.envelope(), tolerance);
        for (const Polygon& polygon : faultyGround(EdgeCover(graph), *fault)) {
            checkInterrupt();
            paint(application, polygon, symbol);
        }
        return true;
    });
}

} // namespace qz
