#include "polyline/QZExtendPolyline.h"

#include <algorithm>
#include <optional>

#include "common/ErrorExit.h"
#include "common/FeatureShapes.h"
#include "common/InReference.h"
#include "common/QZPlane.h"
#include "common/QZSpatialSearch.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/Grid.h"
#include "platform/geometry/MeasureInterpolation.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/SetOperations.h"
#include "platform/geometry/TangentLine.h"
#include "platform/geometry/Vectors.h"
#include "polyline/QZPolylineSplitFunctions.h"

namespace qz {

namespace {

double squaredDistance(XY a, XY b) {
    return dot(b - a, b - a);
}

XY placeOf(XY click, const SpatialReference& from, const SpatialReference& to) {
    return inReference(Point({click.x, click.y}, {.spatialReference = from}), to).vertex.xy();
}

// The line so that the end near the click is its last vertex.
struct OrientedLine {
    Polyline line;
    bool reversed = false;
};

OrientedLine towards(XY click, const Polyline& given) {
    OrientedLine oriented{given};
    const Path& path = given.paths.front();
    if (squaredDistance(path.front().xy(), click) < squaredDistance(path.back().xy(), click)) {
        reverseOrientation(oriented.line);
        oriented.reversed = true;
    }
    return oriented;
}

// The straight line from the end of the line outward.
Polyline extensionOf(const Polyline& line, double length) {
    const auto tangent = tangentBeyondEnd(line, length);
    if (!tangent) {
        throw PlatformError("A line without length has no direction to extend it in");
    }
    Polyline extension;
    extension.spatialReference = line.spatialReference;
    extension.paths = {*tangent};
    return extension;
}

// Of the places where other lines meet the extension the one nearest to its start.
std::optional<Vertex> nearestMeeting(const Polyline& extension, FeatureClass& featureClass, ObjectId own) {
    const XY start = extension.paths.front().front().xy();
    const CursorPtr cursor =
        QZ_FindFeaturesSpatialy(extension, featureClass, extension.spatialReference, "Intersects", "Update");
    if (!cursor) {
        throw PlatformError("The lines that the extension meets can't be searched for");
    }
    std::optional<Vertex> nearest;
    for (FeaturePtr other = cursor->next(); other; other = cursor->next()) {
        if (other->objectId() == own) {
            continue;
        }
        const Geometry meetings = intersection(*other->shape(), extension, ResultDimension::points);
        for (const Vertex& vertex : meetings.as<Multipoint>().vertices) {
            if (!nearest || squaredDistance(vertex.xy(), start) < squaredDistance(nearest->xy(), start)) {
                nearest = vertex;
            }
        }
    }
    return nearest;
}

// The measure at a new end, as the line's own goes on.
double measureAt(Vertex end, Path path) {
    end.m = undefined;
    path.addVertex(end);
    extrapolateMeasures(path);
    return path.back().m;
}

// Moves the end, or goes on from it where the last segment is an arc.
void extendTo(Polyline& line, Vertex end) {
    Path& path = line.paths.front();
    end.m = line.mAware ? measureAt(end, path) : undefined;
    if (path.arcAt(path.segmentCount() - 1)) {
        path.addVertex(end);
    } else {
        path.setVertex(path.vertexCount() - 1, end);
    }
}

Vertex onGrid(Vertex vertex, const SpatialReference& reference) {
    const CoordinateGrid& grid = reference.grid();
    vertex.x = snapped(vertex.x, grid.xOrigin, grid.xyResolution);
    vertex.y = snapped(vertex.y, grid.yOrigin, grid.xyResolution);
    return vertex;
}

// The one other feature at the end of the extended line; nothing when there are more, or none.
FeaturePtr onlyOther(FeatureClass& featureClass, XY end, double fuzzy, ObjectId own) {
    const SpatialReference& reference = featureClass.spatialReference();
    const double reach = std::max(fuzzy, reference.grid().xyTolerance);
    const Envelope around = Envelope{end.x, end.y, end.x, end.y}.expandedBy(reach, reach);
    const CursorPtr cursor =
        QZ_FindFeaturesSpatialy(rectangle(around, reference), featureClass, {}, "Intersects", "Update");
    std::vector<FeaturePtr> found;
    for (FeaturePtr feature = cursor ? cursor->next() : nullptr; feature; feature = cursor->next()) {
        found.push_back(feature);
    }
    if (found.size() != 2) {
        return nullptr;
    }
    return found[0]->objectId() == own ? found[1] : found[0];
}

void splitAtEnd(FeatureLayer& layer, XY end, double fuzzy, ObjectId own, bool bOver) {
    if (const FeaturePtr target = onlyOther(layer.featureClass(), end, fuzzy, own)) {
        const double position = QZ_PointPosition(target->shape()->as<Polyline>(), end).ratioAlong;
        LineSplitter(layer, bOver).split(*target, {{.x = end.x, .y = end.y, .pos = position}});
    }
}

enum class Step { line = 1, extension = 2, meeting = 3, store = 4, split = 5 };

} // namespace

bool QZ_ExtendPolyline2(FeatureLayer& layer, FeatureCursor& cursor, const ExtensionClicks& clicks, double fuzzy,
                        RefreshArea& refresh, bool split, bool bOver) {
    return withSteppedExit(" QZ_ExtendPolyline2 w=", Step::line, false, [&](Step& step) {
        const FeaturePtr feature = firstFeature(cursor, "There is no line to extend");
        const auto& given = feature->shape()->as<Polyline>();
        if (given.paths.size() > 1) {
            showMessage("A multipart polyline selected!\nExplode it and try again.");
            return false;
        }
        step = Step::extension;
        const SpatialReference& reference = given.spatialReference;
        const XY first = placeOf(clicks.first, clicks.reference, reference);
        OrientedLine oriented = towards(first, given);
        const XY second = placeOf(clicks.second, clicks.reference, reference);
        const double reach = QZ_Distance2D(first.x, first.y, second.x, second.y);
        Geometry extension(extensionOf(oriented.line, reach));
        step = Step::meeting;
        const auto end = nearestMeeting(extension.as<Polyline>(), layer.featureClass(), feature->objectId());
        if (!end) {
            showMessage("no selected");
            return false;
        }
        step = Step::store;
        const Vertex stored = onGrid(*end, reference);
        extendTo(oriented.line, stored);
        if (oriented.reversed) {
            reverseOrientation(oriented.line);
        }
        feature->setShape(oriented.line);
        feature->store();
        refresh.add(oriented.line);
        step = Step::split;
        if (split) {
            splitAtEnd(layer, stored.xy(), fuzzy, feature->objectId(), bOver);
        }
        return true;
    });
}

} // namespace qz
