#include "topology/QZBuildPolygon.h"

#include <optional>
#include <string>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/NodeKey.h"
#include "common/QZSpatialSearch.h"
#include "platform/app/Services.h"
#include "polygon/QZAddPolygon.h"
#include "topology/QZPolylineToPolygon.h"

namespace qz {

namespace {

constexpr const char* notPolylines = "The type of the source layer should be polyline!";
constexpr const char* nothingSelected = "No selected features in the source layer.";
constexpr const char* noEdges = "Selected polylines do not form polygons";
constexpr const char* noPolygons = "No polygons were created.\nRevise your selection and try again";

// The parts of all lines, one edge each.
std::vector<Polyline> QZ_ExplodeOutDic(FeatureCursor& cursor) {
    std::vector<Polyline> edges;
    for (FeaturePtr feature = cursor.next(); feature; feature = cursor.next()) {
        if (!feature->shape()) {
            continue;
        }
        const auto& line = feature->shape()->as<Polyline>();
        for (const Path& part : line.paths) {
            if (!part.isEmpty()) {
                static_cast<GeometryTraits&>(edges.emplace_back()) = line;
                edges.back().paths.push_back(part);
            }
        }
    }
    return edges;
}

// Sizes the bar at its first step.
StageProgress shownAs(Application& application, const std::string& text) {
    return [&application, text, bar = std::optional<WalkProgress>()](std::size_t done, std::size_t count) mutable {
        if (!bar) {
            bar.emplace(application, static_cast<std::int32_t>(count), text);
        }
        checkInterrupt();
        bar->advance(static_cast<std::int32_t>(done));
    };
}

bool isPolylineLayer(FeatureLayer& layer) {
    const auto& shape = layer.featureClass().schema().shape;
    return shape && shape->kind == GeometryKind::polyline;
}

bool refuse(const char* text) {
    showMessage(text);
    return false;
}

bool store(Application& application, FeatureLayer& layer, const std::vector<Polygon>& polygons, std::int16_t iPriority,
           RefreshArea& refresh) {
    WalkProgress progress(application, static_cast<std::int32_t>(polygons.size()), "Storing poligons: ");
    for (std::size_t i = 0; i < polygons.size(); ++i) {
        checkInterrupt();
        if (!QZ_AddPolygon(layer, polygons[i], iPriority, refresh)) {
            return false;
        }
        progress.advance(static_cast<std::int32_t>(i));
    }
    progress.hide();
    return true;
}

enum class RunStep { select = 1, build = 2, store = 3 };
enum class BuildStep { explode = 1, index = 2, trace = 3 };

} // namespace

bool QZ_BuildPolygonRun(Application& application, FeatureLayer& layer, FeatureLayer& source,
                        const BuildPolygonSettings& settings, RefreshArea& refresh) {
    return withSteppedExit(" QZ_BuildPolygonRun w=", RunStep::select, false, [&](RunStep& step) {
        if (!isPolylineLayer(source)) {
            return refuse(notPolylines);
        }
        const SelectedFeatures selected = QZ_GetSelectedFromLayer(source);
        if (!selected.cursor) {
            return refuse(nothingSelected);
        }
        step = RunStep::build;
        const std::vector<Polygon> polygons = QZ_BuildPolygon(application, source, *selected.cursor, settings.dFuzzy);
        if (polygons.empty()) {
            checkInterrupt();
            return refuse(noPolygons);
        }
        step = RunStep::store;
        return store(application, layer, polygons, settings.iPriority, refresh);
    });
}

std::vector<Polygon> QZ_BuildPolygon(Application& application, FeatureLayer& source, FeatureCursor& cursor,
                                     double dFuzzy) {
    return withSteppedExit(" QZ_BuildPolygon w=", BuildStep::explode, std::vector<Polygon>(), [&](BuildStep& step) {
        const std::vector<Polyline> edges = QZ_ExplodeOutDic(cursor);
        if (edges.empty()) {
            showMessage(noEdges);
            return std::vector<Polygon>();
        }
        step = BuildStep::index;
        const NodeIndex nodes = QZ_GetNodesDic(edges, nodeDecimals(source.featureClass()));
        step = BuildStep::trace;
        std::vector<Polygon> polygons =
            QZ_PolylineToPolygon(edges, nodes, dFuzzy,
                                 {.tracing = shownAs(application, "Building polygons: "),
                                  .cleaning = shownAs(application, "Cleaning built polygons: ")});
        application.statusBar().stepProgressor().hide();
        return polygons;
    });
}

std::vector<Polygon> QZ_BuildPolygonInDic(std::span<const Polyline> edges, std::int16_t decimals, double dFuzzy) {
    return withErrorExit(" QZ_BuildPolygonInDic", std::vector<Polygon>(),
                         [&] { return QZ_PolylineToPolygon(edges, QZ_GetNodesDic(edges, decimals), dFuzzy); });
}

} // namespace qz
