#include "platform/geometry/TangentLine.h"

#include <array>
#include <cmath>
#include <string>

#include "platform/Error.h"

namespace qz {

namespace {

void requireLength(double length) {
    if (!std::isfinite(length) || length < 0) {
        throw PlatformError("A tangent line can't be " + std::to_string(length) + " long.");
    }
}

void requirePlace(double along) {
    if (!std::isfinite(along)) {
        throw PlatformError("A tangent line can't start at " + std::to_string(along) + " along a curve.");
    }
}

Path lineFrom(const Vertex& start, XY direction, double length) {
    const Vertex end{start.x + direction.x * length, start.y + direction.y * length, start.z};
    return Path(std::array{start, end});
}

bool hasLength(const Path& path, std::size_t segment) {
    return CurveSegment(path, segment).length() > 0;
}

// Direction in which the path arrives at a vertex, leaving it where nothing arrives; (0, 0) for a path without length.
XY directionAtVertex(const Path& path, std::size_t vertex) {
    for (std::size_t i = vertex; i > 0; --i) {
        if (hasLength(path, i - 1)) {
            return CurveSegment(path, i - 1).direction(1);
        }
    }
    for (std::size_t i = vertex; i < path.segmentCount(); ++i) {
        if (hasLength(path, i)) {
            return CurveSegment(path, i).direction(0);
        }
    }
    return {};
}

XY directionAt(const Curve& curve, const CurvePlace& place) {
    const Path& path = curve.parts()[place.part];
    return place.ratio > 0 ? CurveSegment(path, place.segment).direction(place.ratio)
                           : directionAtVertex(path, place.segment);
}

std::optional<Path> tangentAt(const Curve& curve, const CurvePlace& place, double length) {
    const XY direction = directionAt(curve, place);
    return direction == XY{} ? std::nullopt : std::optional(lineFrom(vertexAt(curve, place), direction, length));
}

std::optional<Path> tangentAt(const Curve& curve, double distance, double curveLength, double length) {
    const double distances[] = {distance};
    return tangentAt(curve, distance <= 0 ? startPlace(curve) : placesAt(curve, curveLength, distances).front(),
                     length);
}

double checkedLength(const Curve& curve, double length) {
    requireLength(length);
    return curve.lengthFor("tangent line of a curve");
}

} // namespace

std::optional<Path> tangentBeforeStart(const Curve& curve, double length) {
    checkedLength(curve, length);
    if (curve.isEmpty()) {
        return std::nullopt;
    }
    const CurvePlace start = startPlace(curve);
    const XY ahead = directionAt(curve, start);
    return ahead == XY{} ? std::nullopt : std::optional(lineFrom(vertexAt(curve, start), {-ahead.x, -ahead.y}, length));
}

std::optional<Path> tangentBeyondEnd(const Curve& curve, double length) {
    checkedLength(curve, length);
    return curve.isEmpty() ? std::nullopt : tangentAt(curve, endPlace(curve), length);
}

std::optional<Path> tangentAtDistance(const Curve& curve, double distance, double length) {
    requirePlace(distance);
    const double curveLength = checkedLength(curve, length);
    return curve.isEmpty() ? std::nullopt : tangentAt(curve, distance, curveLength, length);
}

std::optional<Path> tangentAtRatio(const Curve& curve, double ratio, double length) {
    requirePlace(ratio);
    const double curveLength = checkedLength(curve, length);
    return curve.isEmpty() ? std::nullopt : tangentAt(curve, ratio * curveLength, curveLength, length);
}

} // namespace qz
