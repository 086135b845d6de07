#include "cogo/QZPieSegment.h"

#include <cmath>
#include <numbers>

#include <fmt/format.h>

#include "common/ErrorExit.h"
#include "platform/Error.h"
#include "platform/geometry/ArcConstruction.h"
#include "platform/geometry/Simplify.h"

namespace qz {

namespace {

constexpr double fullCircle = 360;
constexpr double angleInsteadOfMoreThanFull = 90;

void requirePositive(const char* what, double value) {
    if (!std::isfinite(value) || value <= 0) {
        throw PlatformError(fmt::format("The {} of a pie segment must be above 0, not {}.", what, value));
    }
}

struct Pie {
    const Vertex& centre;
    double radius;

    [[nodiscard]] Vertex outerEnd(double polarDegrees) const {
        const XY end = QZ_PolarLine(centre.xy(), polarDegrees, radius).end;
        return {end.x, end.y, centre.z, centre.m};
    }
};

Path arcOf(const Pie& pie, double centralAngle, double polarDirection) {
    const Vertex start = pie.outerEnd(polarDirection - centralAngle / 2);
    const Vertex end = pie.outerEnd(polarDirection + centralAngle / 2);
    return centralAngle > fullCircle ? arcBetween(start, end, pie.radius, ArcSense::counterClockwise, ArcSize::minor)
                                     : arcThroughPoints(start, pie.outerEnd(polarDirection), end);
}

Path ringOf(const Pie& pie, double centralAngle, double polarDirection) {
    if (centralAngle == fullCircle) {
        return circleFrom(pie.centre.xy(), pie.outerEnd(90), ArcSense::clockwise);
    }
    Path ring;
    ring.addVertex(pie.centre);
    const Path arc = arcOf(pie, centralAngle, polarDirection);
    ring.addVertex(arc.front());
    ring.append(arc);
    ring.addVertex(pie.centre);
    return ring;
}

} // namespace

Segment QZ_PolarLine(XY from, double polarDegrees, double distance) {
    const double radians = 2 * polarDegrees * std::numbers::pi / fullCircle;
    return {from, {from.x + distance * std::cos(radians), from.y + distance * std::sin(radians)}};
}

std::optional<Polygon> QZ_CreatePieSegment(const Point& centre, double radius, double& centralAngle,
                                           double polarDirection) {
    return withErrorExit(" QZ_CreatePieSegment", std::optional<Polygon>(), [&]() -> std::optional<Polygon> {
        requirePositive("radius", radius);
        requirePositive("central angle", centralAngle);
        if (centre.isEmpty() || !std::isfinite(polarDirection)) {
            throw PlatformError("The centre and the direction of a pie segment must be known.");
        }
        Polygon pie;
        static_cast<GeometryTraits&>(pie) = centre;
        const double asked = centralAngle;
        centralAngle = asked > fullCircle ? angleInsteadOfMoreThanFull : asked;
        pie.rings = {ringOf({centre.vertex, radius}, asked, polarDirection)};
        pie = simplified(pie);
        if (pie.isEmpty()) {
            throw PlatformError(fmt::format("A pie segment of radius {} and {} degrees has no width.", radius, asked));
        }
        return pie;
    });
}

} // namespace qz
