#pragma once

#include <functional>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Error.h"
#include "platform/geometry/Coordinates.h"
#include "platform/geometry/Envelope.h"
#include "platform/geometry/Path.h"
#include "platform/geometry/SpatialReference.h"

namespace qz {

// The numbers are those that users of geometry kinds know.
enum class GeometryKind { point = 1, multipoint = 2, polyline = 3, polygon = 4 };

// "point", "multipoint", "polyline", "polygon".
[[nodiscard]] std::string_view nameOf(GeometryKind kind) noexcept;

// What belongs to a whole geometry. Awareness is a switch: values of a geometry that is not aware are kept and ignored.
struct GeometryTraits {
    bool zAware = false;
    bool mAware = false;
    SpatialReference spatialReference = {};
};

// Empty when x or y is undefined.
struct Point : GeometryTraits {
    Vertex vertex{undefined, undefined, undefined, undefined};

    Point() = default;
    explicit Point(const Vertex& at, const GeometryTraits& traits = {}) : GeometryTraits(traits), vertex(at) {}

    static constexpr GeometryKind kind = GeometryKind::point;
    [[nodiscard]] bool isEmpty() const noexcept { return std::isnan(vertex.x) || std::isnan(vertex.y); }
    [[nodiscard]] Envelope envelope() const;
};

struct Multipoint : GeometryTraits {
    std::vector<Vertex> vertices;

    static constexpr GeometryKind kind = GeometryKind::multipoint;
    [[nodiscard]] bool isEmpty() const noexcept { return vertices.empty(); }
    [[nodiscard]] Envelope envelope() const;
};

struct Polyline : GeometryTraits {
    std::vector<Path> paths;

    static constexpr GeometryKind kind = GeometryKind::polyline;
    // No path with a vertex.
    [[nodiscard]] bool isEmpty() const noexcept;
    [[nodiscard]] Envelope envelope() const;
};

// Rings are closed: the last vertex repeats the first. Exterior rings run clockwise, holes counter-clockwise; an
// exterior ring is followed by the holes that lie directly in it, and ring 0 is an exterior ring.
struct Polygon : GeometryTraits {
    std::vector<Path> rings;

    static constexpr GeometryKind kind = GeometryKind::polygon;
    [[nodiscard]] bool isEmpty() const noexcept;
    [[nodiscard]] Envelope envelope() const;
};

// Any one of the four kinds. A null shape is no geometry at all; an empty one is a geometry without a place.
class Geometry {
public:
    Geometry() = default;
    Geometry(Point point) : shape_(std::move(point)) {}
    Geometry(Multipoint multipoint) : shape_(std::move(multipoint)) {}
    Geometry(Polyline polyline) : shape_(std::move(polyline)) {}
    Geometry(Polygon polygon) : shape_(std::move(polygon)) {}
    // An empty geometry of the kind.
    explicit Geometry(GeometryKind kind);

    [[nodiscard]] GeometryKind kind() const noexcept;
    [[nodiscard]] bool isEmpty() const noexcept;
    [[nodiscard]] Envelope envelope() const;

    [[nodiscard]] const GeometryTraits& traits() const noexcept;
    [[nodiscard]] GeometryTraits& traits() noexcept;
    [[nodiscard]] const SpatialReference& spatialReference() const noexcept { return traits().spatialReference; }

    // Nothing when it is of another kind.
    template <typename Shape> [[nodiscard]] const Shape* getIf() const noexcept { return std::get_if<Shape>(&shape_); }
    template <typename Shape> [[nodiscard]] Shape* getIf() noexcept { return std::get_if<Shape>(&shape_); }

    // Throws PlatformError that names both kinds when it is of another one.
    template <typename Shape> [[nodiscard]] const Shape& as() const;
    template <typename Shape> [[nodiscard]] Shape& as();

    template <typename Visitor> decltype(auto) visit(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), shape_);
    }
    template <typename Visitor> decltype(auto) visit(Visitor&& visitor) {
        return std::visit(std::forward<Visitor>(visitor), shape_);
    }

private:
    [[noreturn]] void failConversion(GeometryKind wanted) const;

    std::variant<Point, Multipoint, Polyline, Polygon> shape_;
};

template <typename Shape> const Shape& Geometry::as() const {
    if (const Shape* shape = getIf<Shape>()) {
        return *shape;
    }
    failConversion(Shape::kind);
}

template <typename Shape> Shape& Geometry::as() {
    return const_cast<Shape&>(std::as_const(*this).as<Shape>());
}

// Calls `change(Vertex&)` for every vertex and every control point of an arc.
template <typename Change> void transformVertices(Geometry& geometry, Change change);
// Calls `see(Vertex)` for every vertex and every control point of an arc.
template <typename See> void forEachVertex(const Geometry& geometry, See see);

// The paths of a polyline or the rings of a polygon; none for points.
[[nodiscard]] std::vector<const Path*> pathsOf(const Geometry& geometry);

// Whether a segment of a polyline or polygon is an arc.
[[nodiscard]] bool hasArcs(const Geometry& geometry);

// The rectangle as a polygon of one clockwise ring.
[[nodiscard]] Polygon rectangle(const Envelope& envelope, const SpatialReference& reference);

// An ordered list of geometries of any kinds.
struct GeometryCollection {
    std::vector<Geometry> geometries;
    SpatialReference spatialReference = {};
};

// Same kind, awareness and coordinates, bit for bit; undefined equals undefined. The spatial reference is not compared.
[[nodiscard]] bool identical(const Geometry& a, const Geometry& b);

template <typename Change> void transformVertices(Geometry& geometry, Change change) {
    geometry.visit([&change](auto& shape) {
        using Shape = std::decay_t<decltype(shape)>;
        if constexpr (std::is_same_v<Shape, Point>) {
            change(shape.vertex);
        } else if constexpr (std::is_same_v<Shape, Multipoint>) {
            for (Vertex& vertex : shape.vertices) {
                change(vertex);
            }
        } else if constexpr (std::is_same_v<Shape, Polyline>) {
            for (Path& path : shape.paths) {
                path.transform(std::ref(change));
            }
        } else {
            for (Path& ring : shape.rings) {
                ring.transform(std::ref(change));
            }
        }
    });
}

template <typename See> void forEachVertex(const Geometry& geometry, See see) {
    geometry.visit([&see](const auto& shape) {
        using Shape = std::decay_t<decltype(shape)>;
        if constexpr (std::is_same_v<Shape, Point>) {
            see(shape.vertex);
        } else if constexpr (std::is_same_v<Shape, Multipoint>) {
            for (const Vertex& vertex : shape.vertices) {
                see(vertex);
            }
        } else if constexpr (std::is_same_v<Shape, Polyline>) {
            for (const Path& path : shape.paths) {
                path.forEachVertex(std::ref(see));
            }
        } else {
            for (const Path& ring : shape.rings) {
                ring.forEachVertex(std::ref(see));
            }
        }
    });
}

} // namespace qz
