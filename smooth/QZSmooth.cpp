#include "smooth/QZSmooth.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include <fmt/format.h>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/InReference.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "platform/geometry/Densify.h"
#include "platform/geometry/Simplify.h"
#include "smooth/QZSmoothCurves.h"

namespace qz {

namespace {

constexpr std::size_t pointsPerChunk = 100;
constexpr std::size_t fewestUnderTension = 5;
constexpr double neverByLength = 1e11;
constexpr double strokeAngle = 0.2; // radians

using Points = std::vector<Vertex>;

// Why the curve can't be made; empty when it can.
std::string refusal(const SmoothCurve& curve) {
    if (curve.sCurType != "Bezier" && curve.sCurType != "bSpline" && curve.sCurType != "tSpline") {
        return fmt::format("The curve \"{}\" is not known. Curves are Bezier, bSpline and tSpline.", curve.sCurType);
    }
    if (curve.iPar0 < 1) {
        return fmt::format("A curve needs at least 1 point for each vertex, not {}.", curve.iPar0);
    }
    if (curve.sCurType == "bSpline" && curve.iPar1 < 2) {
        return fmt::format("The order of a B-spline is at least 2, not {}.", curve.iPar1);
    }
    if (curve.sCurType == "tSpline" && curve.iPar1 < 1) {
        return fmt::format("The tension of a spline is at least 1, not {}.", curve.iPar1);
    }
    return {};
}

std::int32_t countFor(const SmoothCurve& curve, std::size_t points) {
    const auto count = static_cast<std::int64_t>(curve.iPar0) * static_cast<std::int64_t>(points);
    if (count >= std::numeric_limits<std::int32_t>::max()) {
        throw PlatformError(fmt::format("Overflow: {} points for each of {} vertices.", curve.iPar0, points));
    }
    return static_cast<std::int32_t>(count);
}

Points smoothedChunk(const SmoothCurve& curve, const Points& chunk) {
    const std::int32_t count = countFor(curve, chunk.size());
    if (curve.sCurType == "Bezier") {
        return QZ_SmoothBZ(chunk, count);
    }
    if (curve.sCurType == "bSpline") {
        const auto order = std::min(static_cast<std::int32_t>(curve.iPar1), static_cast<std::int32_t>(chunk.size()));
        return chunk.size() > 1 ? QZ_SmoothBS(chunk, order, count) : chunk;
    }
    return chunk.size() < fewestUnderTension ? chunk : QZ_SmoothTS(chunk, curve.iPar1, count);
}

Points pointsOf(const Path& path) {
    Points points;
    points.reserve(path.vertexCount());
    for (std::size_t i = 0; i < path.vertexCount(); ++i) {
        points.push_back(path.vertex(i));
    }
    return points;
}

// Grown by what rounding may move a point.
Envelope withRounding(const Envelope& envelope) {
    const double largest =
        std::max({std::abs(envelope.xMin), std::abs(envelope.xMax), std::abs(envelope.yMin), std::abs(envelope.yMax)});
    const double rounding = 64 * std::numeric_limits<double>::epsilon() * largest;
    return envelope.expandedBy(rounding, rounding);
}

Vertex middleOf(const Vertex& a, const Vertex& b) {
    return {std::midpoint(a.x, b.x), std::midpoint(a.y, b.y), std::midpoint(a.z, b.z), std::midpoint(a.m, b.m)};
}

// A closed path from the middle of its first segment on, so that the ends of the curve are not at a corner.
Path fromMiddleOfFirstSegment(const Path& path) {
    if (!path.isClosed()) {
        return path;
    }
    const Vertex middle = middleOf(path.vertex(0), path.vertex(1));
    Path rebuilt;
    rebuilt.addVertex(middle);
    for (std::size_t i = 1; i < path.vertexCount(); ++i) {
        rebuilt.addVertex(path.vertex(i));
    }
    rebuilt.addVertex(middle);
    return rebuilt;
}

std::vector<Path> smoothedParts(const SmoothCurve& curve, const std::vector<Path>& parts, const Envelope& envelope) {
    std::vector<Path> smoothed;
    for (const Path& part : parts) {
        if (auto path = QZ_SmoothGeometry(curve, fromMiddleOfFirstSegment(part), envelope)) {
            smoothed.push_back(std::move(*path));
        }
    }
    return smoothed;
}

Geometry smoothed(const SmoothCurve& curve, Polyline line) {
    const Envelope envelope = line.envelope();
    densifyByAngle(line, neverByLength, strokeAngle);
    line.paths = smoothedParts(curve, line.paths, envelope);
    return line;
}

Geometry smoothed(const SmoothCurve& curve, Polygon polygon) {
    const Envelope envelope = polygon.envelope();
    densifyByAngle(polygon, neverByLength, strokeAngle);
    polygon.rings = smoothedParts(curve, polygon.rings, envelope);
    return isSimple(polygon) ? polygon : simplified(polygon);
}

Geometry smoothed(const SmoothCurve& curve, const Geometry& shape, const SpatialReference& data) {
    const auto* polygon = shape.getIf<Polygon>();
    return polygon ? smoothed(curve, inReference(*polygon, data))
                   : smoothed(curve, inReference(shape.as<Polyline>(), data));
}

} // namespace

std::optional<Path> QZ_SmoothGeometry(const SmoothCurve& curve, const Path& part, const Envelope& envelope) {
    if (part.vertexCount() < 2) {
        return std::nullopt;
    }
    const bool isBezier = curve.sCurType == "Bezier";
    const Envelope kept = withRounding(envelope);
    const Points points = pointsOf(part);
    const std::size_t size = isBezier || points.size() <= pointsPerChunk ? points.size() : pointsPerChunk;
    Path result;
    for (std::size_t first = 0; first < points.size(); first += size) {
        const auto begin = points.begin() + static_cast<std::ptrdiff_t>(first);
        const auto end = points.begin() + static_cast<std::ptrdiff_t>(std::min(first + size, points.size()));
        for (const Vertex& point : smoothedChunk(curve, {begin, end})) {
            if (!isBezier || kept.contains(point.xy())) {
                result.addVertex(point);
            }
        }
    }
    return result;
}

bool QZ_SmoothRun(Application& application, FeatureCursor& cursor, const SmoothCurve& curve, std::int32_t expected,
                  RefreshArea& refresh, const SpatialReference& data) {
    return withErrorExit("", false, [&] {
        if (const std::string why = refusal(curve); !why.empty()) {
            showMessage(why);
            return false;
        }
        walkShapes(application, cursor, expected, "Smoothing features: ", [&](Feature& feature, const Geometry& shape) {
            refresh.add(shape);
            feature.setShape(smoothed(curve, shape, data));
            cursor.update(feature);
        });
        return true;
    });
}

} // namespace qz
