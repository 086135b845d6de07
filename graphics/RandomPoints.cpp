#include "graphics/RandomPoints.h"

#include <unordered_set>

#include "common/NodeKey.h"
#include "platform/app/Services.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Relations.h"

namespace qz {

namespace {

constexpr int mostMisses = 100'000;
constexpr std::int16_t keyDecimals = 7;

std::uint64_t seed() {
    const auto fromClock = [] { return static_cast<std::uint64_t>(services().clock().time_since_epoch().count()); };
    return services().randomSeed ? *services().randomSeed : fromClock();
}

Multipoint pointsFor(const GeometryTraits& shape) {
    Multipoint points;
    points.spatialReference = shape.spatialReference;
    return points;
}

} // namespace

UniformNumbers::UniformNumbers() : generator_(seed()) {}

Multipoint QZ_RandomPointsInPolygon(const Polygon& polygon, std::int32_t count, UniformNumbers& numbers) {
    Multipoint points = pointsFor(polygon);
    if (polygon.isEmpty() || !(area(polygon) > 0)) {
        return points;
    }
    const Envelope extent = polygon.envelope();
    const PreparedRelation inside(polygon, SpatialRelation::within);
    NodeNumbers keys(keyDecimals);
    Point point;
    point.spatialReference = polygon.spatialReference;
    for (int misses = 0; std::ssize(points.vertices) < count && misses < mostMisses; ++misses) {
        point.vertex.x = extent.xMin + numbers.next() * (extent.xMax - extent.xMin);
        point.vertex.y = extent.yMin + numbers.next() * (extent.yMax - extent.yMin);
        if (inside.holdsFor(point) && keys.add(point.vertex.xy()) == points.vertices.size()) {
            points.vertices.push_back(point.vertex);
            misses = 0;
            checkInterrupt();
        }
    }
    return points;
}

Multipoint QZ_RandomPointsOnPolyline(const Polyline& line, std::int32_t count, UniformNumbers& numbers) {
    Multipoint points = pointsFor(line);
    if (line.isEmpty() || !(length(line) > 0)) {
        return points;
    }
    const Curve curve(line);
    std::unordered_set<double> drawn;
    while (std::ssize(points.vertices) < count) {
        const double ratio = numbers.next();
        if (drawn.insert(ratio).second) {
            const Vertex place = *pointAtRatio(curve, ratio);
            points.vertices.push_back({place.x, place.y});
            checkInterrupt();
        }
    }
    return points;
}

} // namespace qz
