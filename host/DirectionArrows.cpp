#include "host/DirectionArrows.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/geometry/Curve.h"
#include "platform/geometry/Measures.h"

namespace qz {

namespace {

constexpr double degreesPerRadian = 180 / std::numbers::pi;

DirectionMark markOn(const CurveSegment& segment, double ratio) {
    const XY direction = segment.direction(ratio);
    return {segment.at(ratio), std::atan2(direction.y, direction.x) * degreesPerRadian};
}

// The multiples of `interval` that lie in [begin, end), as whole numbers.
struct Multiples {
    double first;
    double end;
};

Multiples multiplesIn(double begin, double end, double interval) {
    return {std::ceil(begin / interval), std::ceil(end / interval)};
}

void addMarks(const Path& path, double spacing, const Envelope& window, std::vector<DirectionMark>& marks) {
    const double total = length(path);
    const double count = std::max(1.0, std::floor(total / spacing));
    const double interval = total / count;
    double begin = interval / 2; // half an interval ahead, so that no mark comes onto an end
    for (std::size_t i = 0; i < path.segmentCount(); ++i) {
        const double size = segmentLength(path, i);
        const double end = begin + size;
        const Multiples multiples = multiplesIn(begin, end, interval);
        for (double k = multiples.first; k < multiples.end; ++k) {
            const DirectionMark mark = markOn(CurveSegment(path, i), (k * interval - begin) / size);
            if (window.contains(mark.at)) {
                marks.push_back(mark);
            }
        }
        begin = end;
    }
}

} // namespace

std::vector<DirectionMark> directionMarks(const Geometry& geometry, double spacing, const Envelope& window) {
    std::vector<DirectionMark> marks;
    const auto addAll = [&](const std::vector<Path>& paths) {
        for (const Path& path : paths) {
            if (path.envelope().intersects(window) && length(path) > 0) {
                addMarks(path, spacing, window, marks);
            }
        }
    };
    if (const Polyline* polyline = geometry.getIf<Polyline>()) {
        addAll(polyline->paths);
    } else if (const Polygon* polygon = geometry.getIf<Polygon>()) {
        addAll(polygon->rings);
    }
    return marks;
}

} // namespace qz
