#include "platform/geometry/Geometry.h"

#include <algorithm>
#include <string>

namespace qz {

namespace {

bool haveNoVertex(const std::vector<Path>& paths) {
    return std::ranges::all_of(paths, [](const Path& path) { return path.isEmpty(); });
}

Envelope envelopeOf(const std::vector<Path>& paths) {
    Envelope envelope;
    for (const Path& path : paths) {
        envelope.expandToInclude(path.envelope());
    }
    return envelope;
}

bool sameVertex(const Vertex& a, const Vertex& b, const GeometryTraits& traits) {
    return sameBits(a.xy(), b.xy()) && (!traits.zAware || sameBits(a.z, b.z)) && (!traits.mAware || sameBits(a.m, b.m));
}

bool samePaths(const std::vector<Path>& a, const std::vector<Path>& b, const GeometryTraits& traits) {
    return std::ranges::equal(a, b, [&traits](const Path& one, const Path& other) {
        return one.hasSameXY(other) && (!traits.zAware || one.hasSameZ(other)) &&
               (!traits.mAware || one.hasSameM(other));
    });
}

bool sameShape(const Point& a, const Point& b) {
    return sameVertex(a.vertex, b.vertex, a);
}

bool sameShape(const Multipoint& a, const Multipoint& b) {
    return std::ranges::equal(a.vertices, b.vertices,
                              [&a](const Vertex& one, const Vertex& other) { return sameVertex(one, other, a); });
}

bool sameShape(const Polyline& a, const Polyline& b) {
    return samePaths(a.paths, b.paths, a);
}

bool sameShape(const Polygon& a, const Polygon& b) {
    return samePaths(a.rings, b.rings, a);
}

} // namespace

std::string_view nameOf(GeometryKind kind) noexcept {
    switch (kind) {
    case GeometryKind::point:
        return "point";
    case GeometryKind::multipoint:
        return "multipoint";
    case GeometryKind::polyline:
        return "polyline";
    case GeometryKind::polygon:
        return "polygon";
    }
    return "";
}

Envelope Point::envelope() const {
    Envelope envelope;
    envelope.expandToInclude(vertex.xy());
    return envelope;
}

Envelope Multipoint::envelope() const {
    Envelope envelope;
    for (const Vertex& vertex : vertices) {
        envelope.expandToInclude(vertex.xy());
    }
    return envelope;
}

bool Polyline::isEmpty() const noexcept {
    return haveNoVertex(paths);
}

Envelope Polyline::envelope() const {
    return envelopeOf(paths);
}

bool Polygon::isEmpty() const noexcept {
    return haveNoVertex(rings);
}

Envelope Polygon::envelope() const {
    return envelopeOf(rings);
}

Geometry::Geometry(GeometryKind kind) {
    switch (kind) {
    case GeometryKind::point:
        break;
    case GeometryKind::multipoint:
        shape_ = Multipoint();
        break;
    case GeometryKind::polyline:
        shape_ = Polyline();
        break;
    case GeometryKind::polygon:
        shape_ = Polygon();
        break;
    }
}

GeometryKind Geometry::kind() const noexcept {
    return std::visit([](const auto& shape) { return shape.kind; }, shape_);
}

bool Geometry::isEmpty() const noexcept {
    return std::visit([](const auto& shape) { return shape.isEmpty(); }, shape_);
}

Envelope Geometry::envelope() const {
    return std::visit([](const auto& shape) { return shape.envelope(); }, shape_);
}

const GeometryTraits& Geometry::traits() const noexcept {
    return std::visit([](const auto& shape) -> const GeometryTraits& { return shape; }, shape_);
}

GeometryTraits& Geometry::traits() noexcept {
    return std::visit([](auto& shape) -> GeometryTraits& { return shape; }, shape_);
}

void Geometry::failConversion(GeometryKind wanted) const {
    throw PlatformError("A " + std::string(nameOf(wanted)) + " is needed, but the geometry is a " +
                        std::string(nameOf(kind())) + ".");
}

bool identical(const Geometry& a, const Geometry& b) {
    if (a.traits().zAware != b.traits().zAware || a.traits().mAware != b.traits().mAware) {
        return false;
    }
    return a.visit([&b](const auto& shape) {
        const auto* other = b.getIf<std::decay_t<decltype(shape)>>();
        return other != nullptr && sameShape(shape, *other);
    });
}

std::vector<const Path*> pathsOf(const Geometry& geometry) {
    std::vector<const Path*> paths;
    const auto addAll = [&paths](const std::vector<Path>& parts) {
        for (const Path& path : parts) {
            paths.push_back(&path);
        }
    };
    if (const Polyline* polyline = geometry.getIf<Polyline>()) {
        addAll(polyline->paths);
    } else if (const Polygon* polygon = geometry.getIf<Polygon>()) {
        addAll(polygon->rings);
    }
    return paths;
}

bool hasArcs(const Geometry& geometry) {
    return std::ranges::any_of(pathsOf(geometry), [](const Path* path) { return path->hasArcs(); });
}

Polygon rectangle(const Envelope& envelope, const SpatialReference& reference) {
    Polygon polygon;
    polygon.spatialReference = reference;
    polygon.rings.emplace_back(std::vector<XY>{{envelope.xMin, envelope.yMin},
                                               {envelope.xMin, envelope.yMax},
                                               {envelope.xMax, envelope.yMax},
                                               {envelope.xMax, envelope.yMin},
                                               {envelope.xMin, envelope.yMin}});
    return polygon;
}

} // namespace qz
