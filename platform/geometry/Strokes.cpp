#include "platform/geometry/Strokes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <fmt/format.h>

#include "platform/Error.h"

namespace qz {

namespace {

constexpr double fullTurn = 2 * std::numbers::pi;
// A stroke point this close to the end of an arc, in strokes, is that end but for rounding.
constexpr double endOfArc = 1e-6;
constexpr int mostStrokes = 250'000;
// Strokes are counted along the circle in whole numbers.
constexpr double mostStrokesOfCircle = 0x1p50;

// A power of two, so that radii that differ by their rounding only agree on it.
double strokesOfCircle(double radius, double maximumSagitta) {
    // sagitta = radius (1 - cos(step / 2)) = 2 radius sin²(step / 4)
    const double step = 4 * std::asin(std::min(std::sqrt(maximumSagitta / radius / 2), 0.5));
    return std::max(std::exp2(std::ceil(std::log2(fullTurn / step))), 8.0);
}

Path straightenedPath(const Path& path, double maximumSagitta) {
    std::vector<XY> xy;
    xy.reserve(path.vertexCount());
    for (std::size_t i = 0; i < path.vertexCount(); ++i) {
        if (const ArcSegment* arc = i == 0 ? nullptr : path.arcAt(i - 1)) {
            const std::vector<XY> strokes = strokePoints(path.circularArc(*arc), maximumSagitta);
            xy.insert(xy.end(), strokes.begin(), strokes.end());
        }
        xy.push_back(path.xy()[i]);
    }
    return Path(std::move(xy));
}

void straighten(std::vector<Path>& paths, double maximumSagitta) {
    for (Path& path : paths) {
        if (path.hasArcs()) {
            path = straightenedPath(path, maximumSagitta);
        }
    }
}

} // namespace

std::vector<XY> strokePoints(const CircularArc& arc, double maximumSagitta) {
    const double count = strokesOfCircle(arc.radius, maximumSagitta);
    const double rise = 2 * std::pow(std::sin(arc.sweep / 4), 2) * arc.radius;
    if (count > mostStrokesOfCircle && rise <= maximumSagitta) {
        return {};
    }
    const double from = arc.startAngle / fullTurn * count;
    const double to = (arc.startAngle + arc.sweep) / fullTurn * count;
    const double low = std::floor(std::min(from, to) + endOfArc) + 1;
    const double high = std::ceil(std::max(from, to) - endOfArc) - 1;
    if (count > mostStrokesOfCircle || !(high - low < mostStrokes)) {
        throw PlatformError(
            fmt::format("An arc of radius {} can't be straightened within {}: it would take more than {} "
                        "strokes.",
                        arc.radius, maximumSagitta, mostStrokes));
    }
    std::vector<XY> points;
    points.reserve(high < low ? 0 : static_cast<std::size_t>(high - low) + 1);
    for (double k = low; k <= high; ++k) {
        // Within one turn, so that a place has the same angle however far the arc winds to it.
        const double angle = (k - std::floor(k / count) * count) / count * fullTurn;
        points.push_back({arc.centre.x + arc.radius * std::cos(angle), arc.centre.y + arc.radius * std::sin(angle)});
    }
    if (arc.sweep < 0) {
        std::ranges::reverse(points);
    }
    return points;
}

Geometry straightened(const Geometry& geometry, double maximumSagitta) {
    Geometry result = geometry;
    if (Polyline* polyline = result.getIf<Polyline>()) {
        straighten(polyline->paths, maximumSagitta);
    } else if (Polygon* polygon = result.getIf<Polygon>()) {
        straighten(polygon->rings, maximumSagitta);
    }
    return result;
}

} // namespace qz
