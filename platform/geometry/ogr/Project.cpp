#include "platform/geometry/Project.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include <fmt/format.h>

#include "platform/geometry/Vectors.h"
#include "platform/geometry/ogr/OgrSpatialReference.h"
#include "platform/geometry/ogr/QuietGdal.h"
#include "platform/geometry/ogr/SpatialReferenceData.h"

namespace qz {

namespace {

// Degrees beyond the area that a projected system is meant for within which it is still used. Farther out formulas give
// finite coordinates that are wrong, such as those of a point on the other side of the earth.
constexpr double usableMargin = 30;

class Transformation {
public:
    Transformation(const SpatialReference& source, const SpatialReference& target);

    // Throws PlatformError that names the first point without a place in the target system.
    void apply(std::span<XY> points) const;

private:
    [[nodiscard]] bool isUsable(XY moved) const { return isFinite(moved) && (!usable_ || usable_->contains(moved)); }

    std::unique_ptr<OGRCoordinateTransformation> ogr_;
    std::string names_;
    std::optional<Envelope> usable_; // in the target system
};

struct Columns {
    std::vector<double> x;
    std::vector<double> y;
    std::vector<int> success;
};

Columns transformed(OGRCoordinateTransformation& ogr, std::span<const XY> points) {
    Columns columns{.x = {}, .y = {}, .success = std::vector<int>(points.size(), 0)};
    columns.x.reserve(points.size());
    columns.y.reserve(points.size());
    for (const XY p : points) {
        columns.x.push_back(p.x);
        columns.y.push_back(p.y);
    }
    const QuietGdal quiet;
    ogr.Transform(static_cast<int>(points.size()), columns.x.data(), columns.y.data(), nullptr, columns.success.data());
    return columns;
}

std::unique_ptr<OGRCoordinateTransformation> makeOgr(const OGRSpatialReference& source,
                                                     const OGRSpatialReference& target) {
    const QuietGdal quiet;
    std::unique_ptr<OGRCoordinateTransformation> ogr(OGRCreateCoordinateTransformation(&source, &target));
    if (!ogr) {
        throw PlatformError(fmt::format("There is no way from the coordinate system '{}' to '{}': {}", source.GetName(),
                                        target.GetName(), quiet.message()));
    }
    return ogr;
}

// Points that cover the area of use of the system and the margin around it, in longitude and latitude.
std::vector<XY> areaOfUse(const OGRSpatialReference& reference) {
    double west = 0;
    double south = 0;
    double east = 0;
    double north = 0;
    if (!reference.GetAreaOfUse(&west, &south, &east, &north, nullptr) || west < -180) {
        return {};
    }
    const double middle = east < west ? (west + east) / 2 + 180 : (west + east) / 2;
    const double half = std::min((east < west ? east + 360 - west : east - west) / 2 + usableMargin, 180.0);
    const double low = std::max(south - usableMargin, -90.0);
    const double high = std::min(north + usableMargin, 90.0);
    constexpr int steps = 24;
    std::vector<XY> points;
    for (int column = 0; column <= steps; ++column) {
        for (int row = 0; row <= steps; ++row) {
            points.push_back({middle - half + column * 2 * half / steps, low + row * (high - low) / steps});
        }
    }
    return points;
}

// Nothing for geographic systems, which know no such places, and for systems that don't say where they are meant for.
std::optional<Envelope> usableExtent(const SpatialReference& target) {
    const OGRSpatialReference& ogr = *ogrReference(target);
    const std::vector<XY> points = target.isGeographic() ? std::vector<XY>() : areaOfUse(ogr);
    const std::unique_ptr<OGRSpatialReference> geographic(ogr.CloneGeogCS());
    if (points.empty() || !geographic) {
        return std::nullopt;
    }
    geographic->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    const Columns columns = transformed(*makeOgr(*geographic, ogr), points);
    Envelope extent;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (columns.success[i] != 0) {
            extent.expandToInclude(XY{columns.x[i], columns.y[i]});
        }
    }
    return extent.isEmpty() ? std::nullopt : std::optional(extent);
}

Transformation::Transformation(const SpatialReference& source, const SpatialReference& target)
    : ogr_(makeOgr(*ogrReference(source), *ogrReference(target))),
      names_(fmt::format("from '{}' to '{}'", source.name(), target.name())), usable_(usableExtent(target)) {}

void Transformation::apply(std::span<XY> points) const {
    const Columns columns = transformed(*ogr_, points);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const XY moved{columns.x[i], columns.y[i]};
        if (columns.success[i] == 0 || !isFinite(points[i]) || !isUsable(moved)) {
            throw PlatformError(fmt::format("The coordinate ({}, {}) can't be projected {}: it has no place there.",
                                            points[i].x, points[i].y, names_));
        }
        points[i] = moved;
    }
}

// Making a transformation takes as long as moving thousands of points, so those made are kept.
const Transformation& transformationBetween(const SpatialReference& source, const SpatialReference& target) {
    thread_local std::map<std::pair<std::string, std::string>, Transformation> made;
    const auto key = std::make_pair(source.wkt(), target.wkt());
    const auto found = made.find(key);
    return found != made.end() ? found->second : made.try_emplace(key, source, target).first->second;
}

bool keepsCoordinates(const SpatialReference& source, const SpatialReference& target) {
    return ogrReference(source) == nullptr || ogrReference(target) == nullptr || isSameSystem(source, target);
}

// The moved points at `count` + 1 even places between two ratios of the sweep.
std::vector<XY> sampled(const CircularArc& arc, double from, double to, std::size_t count,
                        const Transformation& transformation) {
    std::vector<XY> points;
    points.reserve(count + 1);
    for (std::size_t i = 0; i <= count; ++i) {
        points.push_back(arc.at(from + (to - from) * static_cast<double>(i) / static_cast<double>(count)));
    }
    transformation.apply(points);
    return points;
}

bool liesOn(const CircularArc& circle, std::span<const XY> points, double tolerance) {
    return std::ranges::all_of(points,
                               [&](XY p) { return std::abs(distance(p, circle.centre) - circle.radius) <= tolerance; });
}

// Whether straight strokes between every other point pass the points between within the tolerance.
bool followsStrokes(std::span<const XY> points, double tolerance) {
    for (std::size_t i = 1; i + 1 < points.size(); i += 2) {
        const XY chordMiddle{(points[i - 1].x + points[i + 1].x) / 2, (points[i - 1].y + points[i + 1].y) / 2};
        if (distance(points[i], chordMiddle) > tolerance) {
            return false;
        }
    }
    return true;
}

// One arc, before and after the move.
struct MovedArc {
    CircularArc source;
    double middleRatio;
    Vertex start; // in the target system
    Vertex middle;
    Vertex end;
    ArcSense sense;
};

// The arc in the one of its two directions that neighbours who share it, each in its own, agree on.
MovedArc inAgreedDirection(const ArcSegment& arc, const Path& path, const MovedArc& moved) {
    const XY start = path.xy()[arc.segment];
    const XY end = path.xy()[arc.segment + 1];
    const bool turnBack = start == end ? arc.sense == ArcSense::clockwise : precedes(end, start);
    if (!turnBack) {
        return moved;
    }
    const ArcSense sense = arc.sense == ArcSense::clockwise ? ArcSense::counterClockwise : ArcSense::clockwise;
    const CircularArc source = arcThrough(end, arc.middle.xy(), start, sense).value_or(moved.source);
    return {source, source.ratioOf(arc.middle.xy()), moved.end, moved.middle, moved.start, sense};
}

// Moved points between two ratios, so close together that every other one can be left out.
std::vector<XY> closelySampled(const MovedArc& arc, double from, double to, const Transformation& transformation,
                               double tolerance) {
    constexpr std::size_t mostPoints = std::size_t{1} << 18U;
    for (std::size_t count = 8; count <= mostPoints; count *= 2) {
        std::vector<XY> points = sampled(arc.source, from, to, count, transformation);
        if (followsStrokes(points, tolerance)) {
            return points;
        }
    }
    throw PlatformError(fmt::format("The arc that starts at ({}, {}) can't be followed by straight segments within the "
                                    "tolerance {}.",
                                    arc.start.x, arc.start.y, tolerance));
}

// Continues `path` from `start` to `end` through every other point between; z and m run evenly between the two.
void appendStrokes(Path& path, const std::vector<XY>& points, const Vertex& start, const Vertex& end) {
    for (std::size_t i = 2; i + 1 < points.size(); i += 2) {
        const double ratio = static_cast<double>(i) / static_cast<double>(points.size() - 1);
        path.addVertex({points[i].x, points[i].y, std::lerp(start.z, end.z, ratio), std::lerp(start.m, end.m, ratio)});
    }
    path.addVertex(end);
}

Path stroked(const MovedArc& arc, const Transformation& transformation, double tolerance) {
    Path path;
    path.addVertex(arc.start);
    appendStrokes(path, closelySampled(arc, 0, arc.middleRatio, transformation, tolerance), arc.start, arc.middle);
    appendStrokes(path, closelySampled(arc, arc.middleRatio, 1, transformation, tolerance), arc.middle, arc.end);
    return path;
}

bool staysArc(const MovedArc& arc, const Transformation& transformation, double tolerance) {
    // Enough places for the two curves, which differ by smooth low waves only, to show their largest distance.
    constexpr std::size_t samples = 32;
    const auto circle = arcThrough(arc.start.xy(), arc.middle.xy(), arc.end.xy(), arc.sense);
    return circle && liesOn(*circle, sampled(arc.source, 0, 1, samples, transformation), tolerance);
}

Vertex movedTo(Vertex vertex, XY place) {
    vertex.x = place.x;
    vertex.y = place.y;
    return vertex;
}

// Continues `result`, which ends at the moved start of the arc.
void appendMovedArc(Path& result, const Path& path, const ArcSegment& arc, const Vertex& middle, const Vertex& end,
                    const Transformation& transformation, double tolerance) {
    const CircularArc circle = path.circularArc(arc);
    const MovedArc moved{circle, circle.ratioOf(arc.middle.xy()), result.back(), middle, end, arc.sense};
    const MovedArc agreed = inAgreedDirection(arc, path, moved);
    if (staysArc(agreed, transformation, tolerance)) {
        result.addArc(middle, end, arc.sense);
        return;
    }
    Path strokes = stroked(agreed, transformation, tolerance);
    if (agreed.sense != arc.sense) {
        strokes.reverse();
    }
    result.append(strokes);
}

Path movedWithArcs(const Path& path, const Transformation& transformation, double tolerance) {
    std::vector<XY> places(path.xy().begin(), path.xy().end());
    for (const ArcSegment& arc : path.arcs()) {
        places.push_back(arc.middle.xy());
    }
    transformation.apply(places);
    const auto movedVertex = [&](std::size_t i) { return movedTo(path.vertex(i), places[i]); };

    Path result;
    result.addVertex(movedVertex(0));
    std::size_t nextMiddle = path.vertexCount();
    for (std::size_t i = 0; i < path.segmentCount(); ++i) {
        const ArcSegment* arc = path.arcAt(i);
        if (arc == nullptr) {
            result.addVertex(movedVertex(i + 1));
            continue;
        }
        appendMovedArc(result, path, *arc, movedTo(arc->middle, places[nextMiddle++]), movedVertex(i + 1),
                       transformation, tolerance);
    }
    return result;
}

Path movedPath(const Path& path, const Transformation& transformation, double tolerance) {
    if (path.hasArcs()) {
        return movedWithArcs(path, transformation, tolerance);
    }
    std::vector<XY> places(path.xy().begin(), path.xy().end());
    transformation.apply(places);
    return Path(std::move(places), {path.z().begin(), path.z().end()}, {path.m().begin(), path.m().end()});
}

std::vector<Path> movedPaths(const std::vector<Path>& paths, const Transformation& transformation, double tolerance) {
    std::vector<Path> moved;
    moved.reserve(paths.size());
    for (const Path& path : paths) {
        moved.push_back(movedPath(path, transformation, tolerance));
    }
    return moved;
}

void moveShape(Point& point, const Transformation& transformation, double) {
    if (!point.isEmpty()) {
        std::array<XY, 1> place{point.vertex.xy()};
        transformation.apply(place);
        point.vertex = movedTo(point.vertex, place[0]);
    }
}

void moveShape(Multipoint& multipoint, const Transformation& transformation, double) {
    std::vector<XY> places;
    for (const Vertex& vertex : multipoint.vertices) {
        places.push_back(vertex.xy());
    }
    transformation.apply(places);
    for (std::size_t i = 0; i < places.size(); ++i) {
        multipoint.vertices[i] = movedTo(multipoint.vertices[i], places[i]);
    }
}

void moveShape(Polyline& polyline, const Transformation& transformation, double tolerance) {
    polyline.paths = movedPaths(polyline.paths, transformation, tolerance);
}

void moveShape(Polygon& polygon, const Transformation& transformation, double tolerance) {
    polygon.rings = movedPaths(polygon.rings, transformation, tolerance);
}

// Along the sides, corners included.
std::vector<XY> outline(const Envelope& envelope) {
    constexpr int steps = 32;
    std::vector<XY> points;
    for (int i = 0; i <= steps; ++i) {
        const double x = envelope.xMin + envelope.width() * i / steps;
        const double y = envelope.yMin + envelope.height() * i / steps;
        points.insert(points.end(), {{x, envelope.yMin}, {x, envelope.yMax}, {envelope.xMin, y}, {envelope.xMax, y}});
    }
    return points;
}

} // namespace

void project(Geometry& geometry, const SpatialReference& target) {
    if (!keepsCoordinates(geometry.spatialReference(), target)) {
        const Transformation& transformation = transformationBetween(geometry.spatialReference(), target);
        geometry.visit([&](auto& shape) { moveShape(shape, transformation, target.grid().xyTolerance); });
    }
    geometry.traits().spatialReference = target;
}

Envelope projected(const Envelope& envelope, const SpatialReference& source, const SpatialReference& target) {
    if (envelope.isEmpty() || keepsCoordinates(source, target)) {
        return envelope;
    }
    std::vector<XY> points = outline(envelope);
    transformationBetween(source, target).apply(points);
    Envelope result;
    for (const XY p : points) {
        result.expandToInclude(p);
    }
    return result;
}

} // namespace qz
