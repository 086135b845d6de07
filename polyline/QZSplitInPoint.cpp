#include "polyline/QZSplitInPoint.h"

#include <optional>

#include "common/ErrorExit.h"
#include "common/FeatureShapes.h"
#include "common/InReference.h"
#include "common/QZFuzzyTolerance.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Project.h"
#include "platform/geometry/Vectors.h"
#include "polyline/QZPolylineSplitFunctions.h"

namespace qz {

namespace {

SplitPoint recordAt(const Polyline& line, XY point) {
    return {.x = point.x, .y = point.y, .pos = QZ_PointPosition(line, point).ratioAlong};
}

XY nearestVertex(const Polyline& line, XY point) {
    if (!isFinite(point)) {
        throw PlatformError("The point to split at has coordinates that are no numbers");
    }
    std::optional<XY> nearest;
    const auto squaredDistance = [point](XY vertex) { return dot(vertex - point, vertex - point); };
    for (const Path& path : line.paths) {
        for (const XY vertex : path.xy()) {
            if (!nearest || squaredDistance(vertex) < squaredDistance(*nearest)) {
                nearest = vertex;
            }
        }
    }
    return nearest.value();
}

XY pointAt(const Polyline& line, double ratio) {
    return pointAtRatio(line, ratio).value().xy();
}

// Nothing when the distance is larger than the line, which the user is told.
std::optional<std::vector<SplitPoint>> recordsAtDistance(const Polyline& line, double distance) {
    const double total = length(line);
    if (total == 0) {
        throw PlatformError("Division by zero: a line without length has no place at a distance");
    }
    const double ratio = distance / total;
    if (ratio > 1) {
        showMessage("The Split distance is larger than the total length\nSplit will not occur!!!");
        return std::nullopt;
    }
    return std::vector{recordAt(line, pointAt(line, ratio))};
}

std::optional<std::vector<SplitPoint>> recordsFor(const Polyline& line, const SplitPlace& place) {
    if (place.option == "Point") {
        return std::vector{recordAt(line, QZ_PointPosition(line, place.click).nearest.xy())};
    }
    if (place.option == "Vertex") {
        return std::vector{recordAt(line, nearestVertex(line, place.click))};
    }
    if (place.option == "Middle") {
        const XY middle = pointAt(line, 0.5);
        return std::vector{SplitPoint{.x = middle.x, .y = middle.y, .pos = 0.5}};
    }
    if (place.option == "AllVertices") {
        return QZ_InteriorVertexPositions(line);
    }
    if (place.option == "Distance") {
        return recordsAtDistance(line, place.distance);
    }
    return std::vector<SplitPoint>();
}

// Records found on the line in another reference, as places on the line itself.
void moveToLine(std::vector<SplitPoint>& records, const SpatialReference& reference, const Polyline& line) {
    for (SplitPoint& record : records) {
        Geometry point(Point({record.x, record.y}, {.spatialReference = reference}));
        project(point, line.spatialReference);
        record = recordAt(line, point.as<Point>().vertex.xy());
    }
}

enum class Step { layer = 1, line = 2, place = 3, split = 4 };

} // namespace

bool QZ_SplitInPoint2(FeatureLayer& layer, FeatureCursor& cursor, const SplitPlace& place, RefreshArea& refresh,
                      bool bOver) {
    return withSteppedExit(" QZ_SplitInPoint2 w=", Step::layer, false, [&](Step& step) {
        LineSplitter splitter(layer, bOver);
        step = Step::line;
        const FeaturePtr feature = firstFeature(cursor, "There is no line to split");
        const auto& line = feature->shape()->as<Polyline>();
        const Polyline measured = inReference(line, place.reference);
        refresh.add(measured);
        if (line.paths.size() > 1) {
            showMessage("This polyline is multipart\nExplode and try again!");
            return false;
        }
        step = Step::place;
        auto records = recordsFor(measured, place);
        if (!records) {
            return false;
        }
        if (!QZ_SameSpatialReference(line.spatialReference, place.reference)) {
            moveToLine(*records, place.reference, line);
        }
        step = Step::split;
        if (!records->empty()) {
            splitter.split(*feature, std::move(*records));
        }
        return true;
    });
}

} // namespace qz
