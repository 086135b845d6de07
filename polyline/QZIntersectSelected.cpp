#include "polyline/QZIntersectSelected.h"

#include <algorithm>
#include <map>
#include <optional>
#include <span>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/QZFuzzyTolerance.h"
#include "common/QZSelfIntersection.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/CurveIndex.h"
#include "platform/geometry/Grid.h"
#include "platform/geometry/MeasureInterpolation.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Project.h"
#include "polyline/LineNetwork.h"
#include "polyline/QZPolylineSplitFunctions.h"

namespace qz {

namespace {

// In the order of their middles along the line, with the stretches that they cover.
std::vector<std::pair<FromTo, Polyline>> orderedPieces(const GeometryCollection& found, const Polyline& line) {
    const CurveIndex index{Curve(line)};
    std::map<double, const Polyline*> byMiddle;
    for (const Geometry& geometry : found.geometries) {
        const auto& piece = geometry.as<Polyline>();
        const XY middle = pointAtRatio(piece, 0.5).value().xy();
        byMiddle.emplace(index.positionOf(middle).value().ratioAlong, &piece);
    }
    std::vector<std::pair<FromTo, Polyline>> pieces;
    double from = 0;
    for (const auto& [middle, piece] : byMiddle) {
        const double to = pieces.size() + 1 == byMiddle.size() ? 1.0 : from + length(*piece) / index.length();
        pieces.push_back({{from, to}, *piece});
        from = to;
    }
    return pieces;
}

// Replaces the feature by its pieces, which go into the network.
void SelfIntersect(const GeometryCollection& pieces, Feature& feature, LineSplitter& splitter, LineNetwork& network) {
    const Polyline line = feature.shape()->as<Polyline>();
    for (const ObjectId id : splitter.replace(feature, orderedPieces(pieces, line))) {
        network.add(id, splitter.featureClass().feature(id)->shape()->as<Polyline>());
    }
}

// Undefined measures between known ones filled, so that cuts have one.
Polyline withMeasures(Polyline line) {
    if (line.mAware) {
        interpolateMeasures(line);
    }
    return line;
}

// The line in the reference of its class, where it is stored as well when it had another one.
const Polyline& inClassReference(Feature& feature, const FeatureClass& featureClass) {
    if (!QZ_SameSpatialReference(feature.shape()->spatialReference(), featureClass.spatialReference())) {
        Geometry shape = *feature.shape();
        project(shape, featureClass.spatialReference());
        snapToSpatialReference(shape);
        feature.setShape(std::move(shape));
        feature.store();
    }
    return feature.shape()->as<Polyline>();
}

// Cuts the features that the records name, each in one go.
void splitAll(LineSplitter& splitter, std::vector<SplitPoint> records) {
    QZ_SortPoints(std::span(records), &SplitPoint::fid, SortOrder::ascending);
    FeatureFilter filter;
    filter.ids.emplace();
    for (const SplitPoint& record : records) {
        if (filter.ids->empty() || filter.ids->back() != record.fid) {
            filter.ids->push_back(record.fid);
        }
    }
    const CursorPtr cursor = splitter.featureClass().update(filter);
    for (auto first = records.begin(); first != records.end();) {
        const auto last = std::find_if(first, records.end(), [&](const SplitPoint& r) { return r.fid != first->fid; });
        const FeaturePtr feature = cursor->next();
        if (!feature || feature->objectId() != first->fid) {
            throw PlatformError("A line to be cut was deleted meanwhile: " + std::to_string(first->fid));
        }
        splitter.split(*feature, {first, last});
        first = last;
    }
}

std::function<void(std::size_t)> intersectingProgress(WalkProgress& progress) {
    return [&progress](std::size_t line) {
        checkInterrupt();
        progress.advance(static_cast<std::int32_t>(line));
    };
}

enum class Step { layer = 1, collect = 2, intersect = 3, split = 4 };

std::vector<SplitPoint> QZ_GetIntFeatures2(Application& application, const LineNetwork& network,
                                           std::int32_t expected) {
    WalkProgress progress(application, expected, "Intersecting polylines: ");
    auto records = network.crossings(intersectingProgress(progress));
    progress.hide();
    return records;
}

std::vector<SplitPoint> QZ_GetFeaturesToSplit2(Application& application, const LineNetwork& network,
                                               const Polyline& cutter, std::int32_t expected) {
    WalkProgress progress(application, expected, "Intersecting polylines: ");
    auto records = network.crossingsWith(cutter, intersectingProgress(progress));
    progress.hide();
    return records;
}

// The lines that the cursor delivers, those that cross themselves cut into pieces first.
LineNetwork collected(Application& application, FeatureCursor& cursor, std::int32_t expected, RefreshArea& refresh,
                      LineSplitter& splitter) {
    LineNetwork network;
    walkShapes(application, cursor, expected,
               "Collecting self intersecting polylines: ", [&](Feature& feature, const Geometry&) {
                   const Polyline& line = inClassReference(feature, splitter.featureClass());
                   refresh.add(line);
                   const GeometryCollection pieces = SelfIntersectFind(withMeasures(line));
                   if (pieces.geometries.empty()) {
                       network.add(feature.objectId(), line);
                   } else {
                       SelfIntersect(pieces, feature, splitter, network);
                   }
               });
    return network;
}

} // namespace

std::optional<bool> intersectSelected(Application& application, FeatureLayer& layer, FeatureCursor& cursor,
                                      std::int32_t expected, RefreshArea& refresh, bool bOver) {
    return withSteppedExit(" IntersectSelected2 w=", Step::layer, std::optional<bool>(), [&](Step& step) {
        LineSplitter splitter(layer, bOver);
        step = Step::collect;
        std::optional<LineNetwork> network = collected(application, cursor, expected, refresh, splitter);
        if (network->size() <= 1) {
            return false;
        }
        step = Step::intersect;
        std::vector<SplitPoint> records = QZ_GetIntFeatures2(application, *network, expected);
        network.reset(); // makes room for the pieces
        if (records.empty()) {
            return false;
        }
        step = Step::split;
        splitAll(splitter, std::move(records));
        return true;
    });
}

bool IntersectSelected2(Application& application, FeatureLayer& layer, FeatureCursor& cursor, std::int32_t expected,
                        RefreshArea& refresh, bool bOver) {
    return intersectSelected(application, layer, cursor, expected, refresh, bOver).value_or(false);
}

bool QZ_SplitWithPolyline2(Application& application, FeatureLayer& layer, FeatureCursor& cursor, const Polyline& cutter,
                           std::int32_t expected, RefreshArea& refresh, bool bOver) {
    return withSteppedExit(" QZ_SplitWithPolyline2 w=", Step::layer, false, [&](Step& step) {
        LineSplitter splitter(layer, bOver);
        LineNetwork network;
        step = Step::collect;
        walkShapes(application, cursor, expected,
                   "Collecting polylines: ", [&](Feature& feature, const Geometry& shape) {
                       refresh.add(shape);
                       network.add(feature.objectId(), shape.as<Polyline>());
                   });
        step = Step::intersect;
        std::vector<SplitPoint> records = QZ_GetFeaturesToSplit2(application, network, cutter, expected);
        step = Step::split;
        splitAll(splitter, std::move(records));
        return true;
    });
}

} // namespace qz
