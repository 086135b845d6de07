#include "platform/geometry/Boundary.h"

#include "platform/geometry/Orientation.h"

namespace qz {

namespace {

template <typename Shape> Shape emptyLike(const GeometryTraits& traits) {
    Shape shape;
    static_cast<GeometryTraits&>(shape) = traits;
    return shape;
}

std::vector<Geometry> partsOf(const Point& point) {
    return point.isEmpty() ? std::vector<Geometry>() : std::vector<Geometry>{point};
}

std::vector<Geometry> partsOf(const Multipoint& multipoint) {
    std::vector<Geometry> parts;
    for (const Vertex& vertex : multipoint.vertices) {
        parts.emplace_back(Point(vertex, multipoint));
    }
    return parts;
}

std::vector<Geometry> partsOf(const Polyline& polyline) {
    std::vector<Geometry> parts;
    for (const Path& path : polyline.paths) {
        if (!path.isEmpty()) {
            Polyline part = emptyLike<Polyline>(polyline);
            part.paths.push_back(path);
            parts.emplace_back(std::move(part));
        }
    }
    return parts;
}

std::vector<Geometry> partsOf(const Polygon& polygon) {
    std::vector<Geometry> parts;
    for (const std::span<const Path> rings : polygonParts(polygon)) {
        if (!rings.front().isEmpty()) {
            Polygon part = emptyLike<Polygon>(polygon);
            part.rings.assign(rings.begin(), rings.end());
            parts.emplace_back(std::move(part));
        }
    }
    return parts;
}

} // namespace

Polyline boundary(const Polygon& polygon) {
    Polyline result = emptyLike<Polyline>(polygon);
    result.paths = polygon.rings;
    return result;
}

Multipoint boundary(const Polyline& polyline) {
    Multipoint ends = emptyLike<Multipoint>(polyline);
    for (const Path& path : polyline.paths) {
        if (!path.isEmpty() && !path.isClosed()) {
            ends.vertices.push_back(path.front());
            ends.vertices.push_back(path.back());
        }
    }
    return ends;
}

std::vector<Geometry> exploded(const Geometry& geometry) {
    return geometry.visit([](const auto& shape) { return partsOf(shape); });
}

} // namespace qz
