#include "platform/geometry/Measures.h"

#include <cmath>

#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

double lengthOf(const std::vector<Path>& paths) {
    double sum = 0;
    for (const Path& path : paths) {
        sum += length(path);
    }
    return sum;
}

// Positive counter-clockwise; from the first vertex, so that large coordinates cost no digits.
double chordArea(std::span<const XY> xy) {
    double twice = 0;
    for (std::size_t i = 2; i < xy.size(); ++i) {
        const XY a{xy[i - 1].x - xy[0].x, xy[i - 1].y - xy[0].y};
        const XY b{xy[i].x - xy[0].x, xy[i].y - xy[0].y};
        twice += a.x * b.y - a.y * b.x;
    }
    return twice / 2;
}

} // namespace

double segmentLength(const Path& path, std::size_t segment) {
    if (const ArcSegment* arc = path.arcAt(segment)) {
        return path.circularArc(*arc).length();
    }
    return distance(path.xy()[segment], path.xy()[segment + 1]);
}

double length(const Path& path) {
    double sum = 0;
    for (std::size_t i = 0; i < path.segmentCount(); ++i) {
        sum += segmentLength(path, i);
    }
    return sum;
}

double length(const Polyline& polyline) {
    return lengthOf(polyline.paths);
}

double perimeter(const Polygon& polygon) {
    return lengthOf(polygon.rings);
}

double signedArea(const Path& ring) {
    double counterClockwise = chordArea(ring.xy());
    for (const ArcSegment& arc : ring.arcs()) {
        counterClockwise += ring.circularArc(arc).signedSegmentArea();
    }
    return -counterClockwise;
}

double area(const Polygon& polygon) {
    double sum = 0;
    for (const Path& ring : polygon.rings) {
        sum += signedArea(ring);
    }
    return sum;
}

} // namespace qz
