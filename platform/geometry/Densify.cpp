#include "platform/geometry/Densify.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <span>
#include <string>

#include "platform/Error.h"
#include "platform/geometry/CoordinateLimits.h"
#include "platform/geometry/Curve.h"

namespace qz {

namespace {

using std::numbers::pi;

constexpr double none = std::numeric_limits<double>::infinity();

struct Limits {
    double length = none;
    double deviation = none;
    double angle = none; // radians

    [[nodiscard]] bool any() const { return length < none || deviation < none || angle < none; }
};

double limitOf(double given, const char* name) {
    if (std::isnan(given)) {
        throw PlatformError("A shape can't be densified: the maximum " + std::string(name) + " is not a number.");
    }
    return given > 0 ? given : none;
}

// The turn between neighbouring strokes of a circle that depart from it by so much.
double turnFor(double deviation, double radius) {
    // deviation = radius (1 - cos(turn / 2)) = 2 radius sin²(turn / 4)
    return 4 * std::asin(std::min(1.0, std::sqrt(deviation / radius / 2)));
}

// As a double, since it may be beyond all whole numbers.
double piecesOf(const CurveSegment& segment, const Limits& limits) {
    const double byLength = std::ceil(segment.length() / limits.length);
    if (!segment.circle()) {
        return std::max(1.0, byLength);
    }
    const CircularArc& circle = *segment.circle();
    const double turn = std::min({limits.angle, turnFor(limits.deviation, circle.radius), 2 * pi / 3});
    return std::max(byLength, std::ceil(std::abs(circle.sweep) / turn));
}

double verticesOf(std::span<const Path> paths, const Limits& limits) {
    double count = 0;
    for (const Path& path : paths) {
        forEachSegment(path, [&](std::size_t, const CurveSegment& segment) { count += piecesOf(segment, limits); });
    }
    return count;
}

void requireDensity(std::span<const Path> paths, const Limits& limits) {
    const double count = verticesOf(paths, limits);
    if (!(count <= maximumDensity)) {
        throw PlatformError("A shape can't be densified: it would have " + std::to_string(count) +
                            " vertices, and no more than " + std::to_string(maximumDensity) +
                            " are possible. A larger maximum length, deviation or angle gives fewer.");
    }
}

Path densified(const Path& path, const Limits& limits) {
    Path result;
    if (!path.isEmpty()) {
        result.addVertex(path.front());
    }
    forEachSegment(path, [&](std::size_t, const CurveSegment& segment) {
        const double pieces = piecesOf(segment, limits);
        for (double k = 1; k <= pieces; ++k) {
            result.addVertex(segment.vertexAt(k / pieces));
        }
    });
    return result;
}

void densify(std::span<Path> paths, const Limits& limits) {
    requireUsableCoordinates(paths, "densified shape");
    if (!limits.any()) {
        return;
    }
    requireDensity(paths, limits);
    for (Path& path : paths) {
        path = densified(path, limits);
    }
}

Limits byDeviation(double maximumLength, double maximumDeviation) {
    return {.length = limitOf(maximumLength, "length"), .deviation = limitOf(maximumDeviation, "deviation")};
}

Limits byAngle(double maximumLength, double maximumAngle) {
    return {.length = limitOf(maximumLength, "length"),
            .angle = maximumAngle < 0 ? pi / 18 : limitOf(maximumAngle, "angle")};
}

} // namespace

void densify(Polyline& line, double maximumLength, double maximumDeviation) {
    densify(line.paths, byDeviation(maximumLength, maximumDeviation));
}

void densify(Polygon& polygon, double maximumLength, double maximumDeviation) {
    densify(polygon.rings, byDeviation(maximumLength, maximumDeviation));
}

void densifyByAngle(Polyline& line, double maximumLength, double maximumAngle) {
    densify(line.paths, byAngle(maximumLength, maximumAngle));
}

void densifyByAngle(Polygon& polygon, double maximumLength, double maximumAngle) {
    densify(polygon.rings, byAngle(maximumLength, maximumAngle));
}

} // namespace qz
