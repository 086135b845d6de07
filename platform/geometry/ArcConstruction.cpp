#include "platform/geometry/ArcConstruction.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>

#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

std::string text(XY p) {
    return "(" + std::to_string(p.x) + ", " + std::to_string(p.y) + ")";
}

[[noreturn]] void refuse(const char* what, const std::string& why) {
    throw PlatformError("The " + std::string(what) + " can't be built: " + why + ".");
}

void requireFinite(const char* what, XY p) {
    if (!isFinite(p)) {
        refuse(what, "the point " + text(p) + " is not finite");
    }
}

void requireRadius(const char* what, double radius) {
    if (!std::isfinite(radius) || radius <= 0) {
        refuse(what, "the radius " + std::to_string(radius) + " is not above 0");
    }
}

Path pathOf(const Vertex& start, const Vertex& middle, const Vertex& end, ArcSense sense) {
    Path path;
    path.addVertex(start);
    if (arcThrough(start.xy(), middle.xy(), end.xy())) {
        path.addArc(middle, end, sense);
    } else {
        path.addVertex(end); // so flat that coordinates don't tell it from its chord
    }
    return path;
}

// Half the chord, at most the radius.
double halfChordWithin(double radius, XY chord) {
    const char* const what = "arc between two points";
    const double half = std::hypot(chord.x, chord.y) / 2;
    if (half == 0) {
        refuse(what, "its ends are equal");
    }
    if (radius < half * (1 - 1e-9)) {
        refuse(what, "the radius " + std::to_string(radius) + " is less than half the chord, " + std::to_string(half));
    }
    return std::min(half, radius);
}

// How far the middle of the arc lies from that of its chord.
double riseOf(double radius, double halfChord, ArcSize size) {
    const double toCentre = std::sqrt((radius - halfChord) * (radius + halfChord));
    return size == ArcSize::major ? radius + toCentre : halfChord * (halfChord / (radius + toCentre));
}

XY unitVector(const Segment& segment) {
    const XY along = segment.end - segment.start;
    const double length = std::hypot(along.x, along.y);
    if (!std::isfinite(length) || length == 0) {
        refuse("fillet", "a segment at " + text(segment.start) + " has no length");
    }
    return along * (1 / length);
}

XY cornerOf(const Segment& first, XY a, const Segment& second, XY b) {
    const double sine = cross(a, b);
    constexpr double parallel = 1e-12; // radians: a fillet that is as long as the world for a radius of metres
    if (std::abs(sine) < parallel) {
        refuse("fillet", "the segments at " + text(first.start) + " and " + text(second.start) + " are parallel");
    }
    return first.start + a * (cross(second.start - first.start, b) / sine);
}

// The direction of a line away from the corner, on the side where `share`, the hint's part along it, is positive.
XY legAlong(XY direction, double share, double rounding, const Segment& segment, XY corner) {
    const double toStart = dot(segment.start - corner, direction);
    const double toEnd = dot(segment.end - corner, direction);
    const double farther = std::abs(toEnd) >= std::abs(toStart) ? toEnd : toStart;
    return (std::abs(share) > rounding ? share : farther) < 0 ? direction * -1 : direction;
}

// The arc in the corner between two unit vectors away from it.
Path arcInCorner(XY corner, XY first, XY second, double radius) {
    const double cosine = dot(first, second);
    const double sine = std::abs(cross(first, second));
    // radius / tan(angle / 2), in the form that keeps the digits.
    const double reach = radius * (cosine < 0 ? sine / (1 - cosine) : (1 + cosine) / sine);
    const XY bisector = first + second;
    const double bisectorLength = std::hypot(bisector.x, bisector.y);
    const double toCentre = std::hypot(radius, reach);
    const XY middle = corner + bisector * ((toCentre - radius) / bisectorLength);
    const XY start = corner + first * reach;
    const XY end = corner + second * reach;
    const ArcSense sense = cross(first, second) > 0 ? ArcSense::clockwise : ArcSense::counterClockwise;
    return pathOf({start.x, start.y}, {middle.x, middle.y}, {end.x, end.y}, sense);
}

} // namespace

Path arcBetween(const Vertex& start, const Vertex& end, double radius, ArcSense sense, ArcSize size) {
    const char* const what = "arc between two points";
    requireFinite(what, start.xy());
    requireFinite(what, end.xy());
    requireRadius(what, radius);
    const XY chord = end.xy() - start.xy();
    const double halfChord = halfChordWithin(radius, chord);
    // Seen along the chord a counter-clockwise arc passes on the right.
    const double side = sense == ArcSense::counterClockwise ? 1 : -1;
    const XY rise = XY{chord.y, -chord.x} * (side * riseOf(radius, halfChord, size) / std::hypot(chord.x, chord.y));
    const XY middle = start.xy() + chord * 0.5 + rise;
    return pathOf(start, {middle.x, middle.y, std::midpoint(start.z, end.z), std::midpoint(start.m, end.m)}, end,
                  sense);
}

Path arcThroughPoints(const Vertex& start, const Vertex& middle, const Vertex& end) {
    const char* const what = "arc through three points";
    requireFinite(what, start.xy());
    requireFinite(what, middle.xy());
    requireFinite(what, end.xy());
    if (start.xy() == end.xy() || !arcThrough(start.xy(), middle.xy(), end.xy())) {
        refuse(what, text(start.xy()) + ", " + text(middle.xy()) + " and " + text(end.xy()) + " lie on one line");
    }
    return pathOf(start, middle, end, ArcSense::counterClockwise);
}

Path circleFrom(XY centre, const Vertex& start, ArcSense sense) {
    requireFinite("circle", centre);
    requireFinite("circle", start.xy());
    const XY opposite = centre + (centre - start.xy());
    if (opposite == start.xy()) {
        refuse("circle", "it starts in its centre " + text(centre));
    }
    return pathOf(start, {opposite.x, opposite.y, start.z, start.m}, start, sense);
}

Path circleRing(XY centre, double radius) {
    requireRadius("circle", radius);
    return circleFrom(centre, {centre.x, centre.y + radius}, ArcSense::clockwise);
}

Polygon circlePolygon(XY centre, double radius, const SpatialReference& reference) {
    Polygon polygon;
    polygon.spatialReference = reference;
    polygon.rings.push_back(circleRing(centre, radius));
    return polygon;
}

Path filletArc(const Segment& first, const Segment& second, double radius, XY hint) {
    requireRadius("fillet", radius);
    requireFinite("fillet", hint);
    const XY a = unitVector(first);
    const XY b = unitVector(second);
    const XY corner = cornerOf(first, a, second, b);
    // hint - corner == a * shareA + b * shareB
    const XY toHint = hint - corner;
    const double shareA = cross(toHint, b) / cross(a, b);
    const double shareB = cross(a, toHint) / cross(a, b);
    const double rounding = 1e-9 * radius;
    return arcInCorner(corner, legAlong(a, shareA, rounding, first, corner),
                       legAlong(b, shareB, rounding, second, corner), radius);
}

} // namespace qz
