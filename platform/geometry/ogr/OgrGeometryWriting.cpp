#include <algorithm>
#include <ranges>

#include "platform/Error.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/ogr/OgrGeometry.h"
#include "platform/geometry/ogr/QuietGdal.h"

namespace qz {

namespace {

// GDAL's point is laid out as ours, so that whole runs are copied at once.
static_assert(sizeof(XY) == sizeof(OGRRawPoint) && offsetof(XY, y) == offsetof(OGRRawPoint, y));

void setDimensions(OGRGeometry& target, const GeometryTraits& traits) {
    target.set3D(traits.zAware);
    target.setMeasured(traits.mAware);
}

std::vector<double> filled(std::span<const double> values, std::size_t count) {
    return values.empty() ? std::vector<double>(count, undefined) : std::vector<double>(values.begin(), values.end());
}

void setPoints(OGRSimpleCurve& target, const Path& path, const GeometryTraits& traits) {
    const std::size_t count = path.vertexCount();
    const auto* xy = reinterpret_cast<const OGRRawPoint*>(path.xy().data());
    const std::vector<double> z = traits.zAware ? filled(path.z(), count) : std::vector<double>();
    const std::vector<double> m = traits.mAware ? filled(path.m(), count) : std::vector<double>();
    if (traits.mAware && !traits.zAware) {
        target.setPointsM(static_cast<int>(count), xy, m.data());
    } else if (traits.mAware) {
        target.setPoints(static_cast<int>(count), xy, z.data(), m.data());
    } else {
        target.setPoints(static_cast<int>(count), xy, traits.zAware ? z.data() : nullptr);
    }
}

template <typename Curve> std::unique_ptr<Curve> makeSimple(const Path& path, const GeometryTraits& traits) {
    auto curve = std::make_unique<Curve>();
    setDimensions(*curve, traits);
    if (!path.isEmpty()) {
        setPoints(*curve, path, traits);
    }
    return curve;
}

Vertex between(const Vertex& a, const Vertex& b, XY at) {
    return {at.x, at.y, (a.z + b.z) / 2, (a.m + b.m) / 2};
}

// What a reader takes a full circle for that is given by its three control points only.
bool isReadAlike(const Path& path, const ArcSegment& arc, ArcSense readSense) {
    return path.xy()[arc.segment] != path.xy()[arc.segment + 1] || arc.sense == readSense;
}

// Appends the control points that follow the start of an arc.
void appendArc(Path& points, const Path& path, const ArcSegment& arc, ArcSense readSense) {
    const Vertex end = path.vertex(arc.segment + 1);
    if (isReadAlike(path, arc, readSense)) {
        points.addVertex(arc.middle);
        points.addVertex(end);
        return;
    }
    const CircularArc circle = path.circularArc(arc);
    points.addVertex(between(path.vertex(arc.segment), arc.middle, circle.at(0.25)));
    points.addVertex(arc.middle);
    points.addVertex(between(arc.middle, end, circle.at(0.75)));
    points.addVertex(end);
}

// The longest run from the segment on that is all arcs, or all straight; its points as GDAL wants them.
struct Run {
    Path points;
    bool arcs = false;
    std::size_t end = 0; // the first segment that is not of it
};

Run runFrom(const Path& path, std::size_t segment, ArcSense readSense) {
    Run run;
    run.arcs = path.arcAt(segment) != nullptr;
    run.points.addVertex(path.vertex(segment));
    for (run.end = segment; run.end < path.segmentCount(); ++run.end) {
        const ArcSegment* arc = path.arcAt(run.end);
        if ((arc != nullptr) != run.arcs) {
            break;
        }
        if (arc != nullptr) {
            appendArc(run.points, path, *arc, readSense);
        } else {
            run.points.addVertex(path.vertex(run.end + 1));
        }
    }
    return run;
}

std::unique_ptr<OGRCurve> makeRun(const Run& run, const GeometryTraits& traits) {
    if (run.arcs) {
        return makeSimple<OGRCircularString>(run.points, traits);
    }
    return makeSimple<OGRLineString>(run.points, traits);
}

std::unique_ptr<OGRCurve> makeCurve(const Path& path, const GeometryTraits& traits, ArcSense readSense) {
    if (!path.hasArcs()) {
        return makeSimple<OGRLineString>(path, traits);
    }
    Run run = runFrom(path, 0, readSense);
    if (run.end == path.segmentCount()) {
        return makeRun(run, traits);
    }
    auto compound = std::make_unique<OGRCompoundCurve>();
    setDimensions(*compound, traits);
    while (true) {
        if (compound->addCurveDirectly(makeRun(run, traits).release()) != OGRERR_NONE) {
            throw PlatformError("A curve of " + std::to_string(path.segmentCount()) +
                                " segments can't be handed to GDAL.");
        }
        if (run.end == path.segmentCount()) {
            return compound;
        }
        run = runFrom(path, run.end, readSense);
    }
}

bool hasArcs(std::span<const Path> paths) {
    return std::ranges::any_of(paths, [](const Path& path) { return path.hasArcs(); });
}

void addRing(OGRCurvePolygon& polygon, std::unique_ptr<OGRCurve> ring) {
    if (polygon.addRingDirectly(ring.get()) != OGRERR_NONE) {
        throw PlatformError("A ring of " + std::to_string(ring->getNumPoints()) + " points can't be handed to GDAL.");
    }
    (void)ring.release();
}

std::unique_ptr<OGRCurvePolygon> makeStraightPolygon(std::span<const Path> rings, const GeometryTraits& traits) {
    auto polygon = std::make_unique<OGRPolygon>();
    setDimensions(*polygon, traits);
    for (const Path& ring : rings) {
        if (!ring.isEmpty()) {
            addRing(*polygon, makeSimple<OGRLinearRing>(ring, traits));
        }
    }
    return polygon;
}

std::unique_ptr<OGRCurvePolygon> makeCurvePolygon(std::span<const Path> rings, const GeometryTraits& traits) {
    auto polygon = std::make_unique<OGRCurvePolygon>();
    setDimensions(*polygon, traits);
    ArcSense roleSense = ArcSense::clockwise;
    for (const Path& ring : rings) {
        if (!ring.isEmpty()) {
            addRing(*polygon, makeCurve(ring, traits, roleSense));
        }
        roleSense = ArcSense::counterClockwise;
    }
    return polygon;
}

std::unique_ptr<OGRCurvePolygon> makePolygon(std::span<const Path> rings, const GeometryTraits& traits) {
    // GDAL warns of open rings where the z or m of the ends is undefined and so not equal.
    const QuietGdal quiet;
    return hasArcs(rings) ? makeCurvePolygon(rings, traits) : makeStraightPolygon(rings, traits);
}

std::unique_ptr<OGRPoint> makePoint(const Vertex& vertex, const GeometryTraits& traits) {
    auto point = std::make_unique<OGRPoint>(vertex.x, vertex.y);
    if (traits.zAware) {
        point->setZ(vertex.z);
    }
    if (traits.mAware) {
        point->setM(vertex.m);
    }
    return point;
}

template <typename Collection> std::unique_ptr<Collection> makeCollection(const GeometryTraits& traits) {
    auto collection = std::make_unique<Collection>();
    setDimensions(*collection, traits);
    return collection;
}

std::unique_ptr<OGRGeometry> makeShape(const Point& point, bool multipart) {
    std::unique_ptr<OGRPoint> single = point.isEmpty() ? std::make_unique<OGRPoint>() : makePoint(point.vertex, point);
    setDimensions(*single, point);
    if (!multipart) {
        return single;
    }
    auto collection = makeCollection<OGRMultiPoint>(point);
    if (!point.isEmpty()) {
        collection->addGeometryDirectly(single.release());
    }
    return collection;
}

std::unique_ptr<OGRGeometry> makeShape(const Multipoint& multipoint, bool) {
    auto collection = makeCollection<OGRMultiPoint>(multipoint);
    for (const Vertex& vertex : multipoint.vertices) {
        collection->addGeometryDirectly(makePoint(vertex, multipoint).release());
    }
    return collection;
}

std::unique_ptr<OGRGeometry> makeShape(const Polyline& polyline, bool multipart) {
    const auto isPart = [](const Path& path) { return !path.isEmpty(); };
    if (!multipart && std::ranges::count_if(polyline.paths, isPart) < 2) {
        const Path none;
        const auto only = std::ranges::find_if(polyline.paths, isPart);
        return makeCurve(only == polyline.paths.end() ? none : *only, polyline, ArcSense::counterClockwise);
    }
    auto collection = hasArcs(polyline.paths) ? makeCollection<OGRMultiCurve>(polyline)
                                              : makeCollection<OGRMultiLineString>(polyline);
    for (const Path& path : polyline.paths | std::views::filter(isPart)) {
        collection->addGeometryDirectly(makeCurve(path, polyline, ArcSense::counterClockwise).release());
    }
    return collection;
}

std::unique_ptr<OGRGeometry> makeShape(const Polygon& polygon, bool multipart) {
    std::vector<std::span<const Path>> parts = polygonParts(polygon);
    std::erase_if(parts, [](std::span<const Path> rings) { return rings.front().isEmpty(); });
    if (!multipart && parts.size() < 2) {
        return makePolygon(parts.empty() ? std::span<const Path>() : parts.front(), polygon);
    }
    auto collection =
        hasArcs(polygon.rings) ? makeCollection<OGRMultiSurface>(polygon) : makeCollection<OGRMultiPolygon>(polygon);
    for (const std::span<const Path> rings : parts) {
        collection->addGeometryDirectly(makePolygon(rings, polygon).release());
    }
    return collection;
}

} // namespace

std::unique_ptr<OGRGeometry> toOgr(const Geometry& geometry, bool multipart) {
    return geometry.visit([multipart](const auto& shape) { return makeShape(shape, multipart); });
}

} // namespace qz
