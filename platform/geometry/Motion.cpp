#include "platform/geometry/Motion.h"

#include <cmath>
#include <numbers>
#include <string>

namespace qz {

namespace {

void requireFinite(double a, double b, double c, const char* what) {
    if (!std::isfinite(a) || !std::isfinite(b) || !std::isfinite(c)) {
        throw PlatformError("A geometry can't be " + std::string(what) + ": the numbers " + std::to_string(a) + ", " +
                            std::to_string(b) + " and " + std::to_string(c) + " are not all finite.");
    }
}

// (cosine, sine); at multiples of the right angle, as closely as doubles tell them, without rounding.
XY unitVector(double radians) {
    const XY direction{std::cos(radians), std::sin(radians)};
    constexpr double rounding = 1e-15;
    if (std::abs(direction.x) < rounding) {
        return {0, std::copysign(1.0, direction.y)};
    }
    return std::abs(direction.y) < rounding ? XY{std::copysign(1.0, direction.x), 0} : direction;
}

} // namespace

void move(Geometry& geometry, double dx, double dy) {
    requireFinite(dx, dy, 0, "moved");
    transformVertices(geometry, [dx, dy](Vertex& vertex) {
        vertex.x += dx;
        vertex.y += dy;
    });
}

void rotate(Geometry& geometry, XY centre, double radians) {
    requireFinite(centre.x, centre.y, radians, "rotated");
    const XY turned = unitVector(radians);
    transformVertices(geometry, [centre, turned](Vertex& vertex) {
        const XY arm{vertex.x - centre.x, vertex.y - centre.y};
        vertex.x = centre.x + (arm.x * turned.x - arm.y * turned.y);
        vertex.y = centre.y + (arm.x * turned.y + arm.y * turned.x);
    });
}

} // namespace qz
