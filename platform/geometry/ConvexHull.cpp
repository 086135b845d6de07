#include "platform/geometry/ConvexHull.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <fmt/format.h>

#include "platform/geometry/Orientation.h"
#include "platform/geometry/Strokes.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

std::vector<XY> pointsOf(const Geometry& geometry, const char* operation) {
    const double sagitta = geometry.spatialReference().grid().xyTolerance;
    std::vector<XY> points;
    if (geometry.isEmpty()) {
        return points;
    }
    forEachVertex(straightened(geometry, sagitta), [&](const Vertex& vertex) {
        if (!isFinite(vertex.xy())) {
            throw PlatformError(fmt::format("{}: the coordinate {}, {} is not finite.", operation, vertex.x, vertex.y));
        }
        points.push_back(vertex.xy());
    });
    return points;
}

// Appends the point to a chain that turns left everywhere, without the corners that it makes superfluous.
void addCorner(std::vector<XY>& chain, std::size_t keep, XY point) {
    while (chain.size() > keep && turn(chain[chain.size() - 2], chain.back(), point) != Turn::left) {
        chain.pop_back();
    }
    chain.push_back(point);
}

GeometryTraits planar(const Geometry& geometry) {
    return {false, false, geometry.spatialReference()};
}

Polygon polygonOf(std::vector<XY> clockwise, const GeometryTraits& traits) {
    clockwise.push_back(clockwise.front());
    Polygon polygon;
    static_cast<GeometryTraits&>(polygon) = traits;
    polygon.rings.emplace_back(std::move(clockwise));
    return polygon;
}

// Walks around a hull with four lines that touch it, two along the direction and two across.
class Calipers {
public:
    explicit Calipers(const std::vector<XY>& hull) : hull_(hull) {}

    // The rectangle along side `side`, which comes in ascending order; the corners run counter-clockwise.
    [[nodiscard]] std::vector<XY> rectangle(std::size_t side) {
        const XY along = unit(at(side + 1) - at(side));
        const XY across{-along.y, along.x};
        advance(right_, side + 1, along);
        advance(top_, right_, across);
        advance(left_, top_, {-along.x, -along.y});
        const XY origin = at(side);
        const double from = dot(at(left_) - origin, along);
        const double to = dot(at(right_) - origin, along);
        const double height = dot(at(top_) - origin, across);
        area = (to - from) * height;
        const auto corner = [&](double u, double v) {
            return XY{origin.x + u * along.x + v * across.x, origin.y + u * along.y + v * across.y};
        };
        return {corner(from, 0), corner(to, 0), corner(to, height), corner(from, height)};
    }

    double area = 0; // of the last rectangle

private:
    [[nodiscard]] XY at(std::size_t index) const { return hull_[index % hull_.size()]; }

    static XY unit(XY vector) {
        const double length = std::hypot(vector.x, vector.y);
        return {vector.x / length, vector.y / length};
    }

    // Moves a touching point on, from `first` at least, as long as the hull goes on in the direction.
    void advance(std::size_t& touching, std::size_t first, XY direction) const {
        touching = std::max(touching, first);
        while (dot(at(touching + 1) - at(touching), direction) > 0) {
            ++touching;
        }
    }

    const std::vector<XY>& hull_;
    std::size_t right_ = 0;
    std::size_t top_ = 0;
    std::size_t left_ = 0;
};

} // namespace

std::vector<XY> hullCorners(std::vector<XY> points) {
    std::sort(points.begin(), points.end(), [](XY a, XY b) { return precedes(a, b); });
    points.erase(std::unique(points.begin(), points.end()), points.end());
    if (points.size() < 3) {
        return points;
    }
    std::vector<XY> hull;
    for (const XY point : points) {
        addCorner(hull, 1, point);
    }
    const std::size_t lower = hull.size();
    for (auto point = points.rbegin() + 1; point != points.rend(); ++point) {
        addCorner(hull, lower, *point);
    }
    hull.pop_back();
    return hull;
}

Geometry convexHull(const Geometry& geometry) {
    std::vector<XY> corners = hullCorners(pointsOf(geometry, "Convex hull"));
    const GeometryTraits traits = planar(geometry);
    if (corners.size() == 1) {
        return Point({corners[0].x, corners[0].y}, traits);
    }
    if (corners.size() == 2) {
        Polyline line;
        static_cast<GeometryTraits&>(line) = traits;
        line.paths.emplace_back(std::move(corners));
        return line;
    }
    if (corners.empty()) {
        Polygon empty;
        static_cast<GeometryTraits&>(empty) = traits;
        return empty;
    }
    std::reverse(corners.begin() + 1, corners.end());
    return polygonOf(std::move(corners), traits);
}

std::optional<Polygon> minimumAreaRectangle(const Geometry& geometry) {
    const std::vector<XY> hull = hullCorners(pointsOf(geometry, "Minimum-area rectangle"));
    if (hull.size() < 3) {
        return std::nullopt;
    }
    Calipers calipers(hull);
    std::vector<XY> best;
    double bestArea = std::numeric_limits<double>::infinity();
    for (std::size_t side = 0; side < hull.size(); ++side) {
        std::vector<XY> corners = calipers.rectangle(side);
        if (calipers.area < bestArea) {
            bestArea = calipers.area;
            best = std::move(corners);
        }
    }
    std::reverse(best.begin() + 1, best.end());
    return polygonOf(std::move(best), planar(geometry));
}

} // namespace qz
