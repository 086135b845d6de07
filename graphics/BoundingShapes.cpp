#include "graphics/BoundingShapes.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/geometry/ArcConstruction.h"
#include "platform/geometry/ConvexHull.h"
#include "platform/geometry/EnclosingCircle.h"
#include "platform/geometry/InteriorPoint.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Motion.h"
#include "platform/geometry/Strokes.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

std::vector<XY> placesOf(const Geometry& shape) {
    std::vector<XY> places;
    forEachVertex(straightened(shape, shape.spatialReference().grid().xyTolerance),
                  [&](const Vertex& vertex) { places.push_back(vertex.xy()); });
    return places;
}

Polygon circleAround(XY centre, double radius, const SpatialReference& reference) {
    Polygon circle;
    circle.spatialReference = reference;
    circle.rings = {circleFrom(centre, Vertex{centre.x, centre.y + radius}, ArcSense::clockwise)};
    return circle;
}

// The farthest pair of a hull's corners is among those that two parallel lines can touch at the same time, which a walk
// around the hull finds (M. Shamos, 1978).
class FarthestCorners {
public:
    explicit FarthestCorners(const std::vector<XY>& hull) : hull_(hull) {
        std::size_t across = 1;
        for (std::size_t i = 0; i < hull.size(); ++i) {
            while (areaOver(i, across + 1) > areaOver(i, across)) {
                see(i, ++across);
            }
            see(i, across);
            see(i + 1, across);
            if (areaOver(i, across + 1) == areaOver(i, across)) { // parallel sides
                see(i, across + 1);
                see(i + 1, across + 1);
            }
        }
    }

    [[nodiscard]] XY first() const { return at(first_); }
    [[nodiscard]] XY second() const { return at(second_); }

private:
    [[nodiscard]] XY at(std::size_t corner) const { return hull_[corner % hull_.size()]; }
    // Of the triangle over a side.
    [[nodiscard]] double areaOver(std::size_t side, std::size_t corner) const {
        return cross(at(side + 1) - at(side), at(corner) - at(side));
    }
    void see(std::size_t a, std::size_t b) {
        const auto [low, high] = std::minmax({a % hull_.size(), b % hull_.size()});
        const double apart = distance(at(low), at(high));
        if (std::tuple(-apart, low, high) < std::tuple(-apart_, first_, second_)) {
            std::tie(apart_, first_, second_) = std::tuple(apart, low, high);
        }
    }

    const std::vector<XY>& hull_;
    double apart_ = 0;
    std::size_t first_ = 0;
    std::size_t second_ = 0;
};

} // namespace

std::optional<BoundingCircle> QZ_MinBoundingCircle(const Geometry& points) {
    const auto circle = smallestEnclosingCircle(placesOf(points));
    if (!circle || circle->radius == 0) {
        return std::nullopt;
    }
    return BoundingCircle{circleAround(circle->centre, circle->radius, points.spatialReference()), circle->radius};
}

std::optional<BoundingRectangle> QZ_BoundingRectangle(const Geometry& shape) {
    const std::vector<XY> hull = hullCorners(placesOf(shape));
    if (hull.size() < 2) {
        return std::nullopt;
    }
    const FarthestCorners axis(hull);
    const XY along = axis.second() - axis.first();
    const double angle = std::atan2(along.y, along.x);
    const XY centre = axis.first();
    Geometry turned = shape;
    rotate(turned, centre, -angle);
    const Envelope extent = turned.envelope();
    Geometry outline = rectangle(extent, shape.spatialReference());
    rotate(outline, centre, angle);
    const auto [shortSide, longSide] = std::minmax({extent.xMax - extent.xMin, extent.yMax - extent.yMin});
    return BoundingRectangle{std::move(outline.as<Polygon>()), longSide, shortSide};
}

std::optional<Polygon> QZ_EACircle(const Polygon& polygon) {
    const double size = area(polygon);
    const std::optional<Point> centre = centroid(polygon);
    if (!centre || !(size > 0)) {
        return std::nullopt;
    }
    return circleAround(centre->vertex.xy(), std::sqrt(size / std::numbers::pi), polygon.spatialReference);
}

} // namespace qz
