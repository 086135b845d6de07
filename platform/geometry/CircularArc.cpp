#include "platform/geometry/CircularArc.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/geometry/Determinant.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

using std::numbers::pi;

CircularArc fullCircle(XY start, XY middle, ArcSense sense) noexcept {
    const XY centre{start.x + (middle.x - start.x) / 2, start.y + (middle.y - start.y) / 2};
    const XY toStart = start - centre;
    return {centre, std::hypot(toStart.x, toStart.y), std::atan2(toStart.y, toStart.x),
            sense == ArcSense::counterClockwise ? 2 * pi : -2 * pi, start};
}

// Sine and cosine of a multiple of the right angle, without the rounding of the library functions.
XY quadrantDirection(long quadrant) noexcept {
    switch (((quadrant % 4) + 4) % 4) {
    case 0:
        return {1, 0};
    case 1:
        return {0, 1};
    case 2:
        return {-1, 0};
    default:
        return {0, -1};
    }
}

// Radians; below it points are found from the chord, since the centre is far away for the size of the arc.
constexpr double flatSweep = 0.01;

XY startPoint(const CircularArc& arc) noexcept {
    if (isFinite(arc.start)) {
        return arc.start;
    }
    return {arc.centre.x + arc.radius * std::cos(arc.startAngle), arc.centre.y + arc.radius * std::sin(arc.startAngle)};
}

// By the direction from the centre, which is seen from the start; a point behind the start is on the part of the circle
// left out.
double flatRatioOf(const CircularArc& arc, XY p) noexcept {
    const XY chord = p - startPoint(arc);
    const XY outward{std::cos(arc.startAngle), std::sin(arc.startAngle)};
    const double ahead = cross(outward, chord) * (arc.sweep < 0 ? -1 : 1);
    const double angle = std::atan2(ahead, arc.radius + dot(chord, outward));
    return (angle < 0 ? angle + 2 * pi : angle) / std::abs(arc.sweep);
}

} // namespace

XY CircularArc::at(double ratio) const noexcept {
    const double half = ratio * sweep / 2;
    const double chord = 2 * radius * std::sin(half);
    const XY from = startPoint(*this);
    return {from.x - chord * std::sin(startAngle + half), from.y + chord * std::cos(startAngle + half)};
}

double CircularArc::ratioOf(XY p) const noexcept {
    if (sweep == 0) {
        return 0;
    }
    if (std::abs(sweep) < flatSweep) {
        return flatRatioOf(*this, p);
    }
    const double turned = std::atan2(p.y - centre.y, p.x - centre.x) - startAngle;
    const double along = std::fmod(sweep < 0 ? -turned : turned, 2 * pi);
    return (along < 0 ? along + 2 * pi : along) / std::abs(sweep);
}

Envelope CircularArc::quadrantEnvelope() const noexcept {
    const double low = std::min(startAngle, startAngle + sweep);
    const double high = std::max(startAngle, startAngle + sweep);
    Envelope envelope;
    for (long quadrant = std::lround(std::ceil(low / (pi / 2))); static_cast<double>(quadrant) * (pi / 2) <= high;
         ++quadrant) {
        const double angle = static_cast<double>(quadrant) * (pi / 2);
        const XY direction = quadrantDirection(quadrant);
        envelope.expandToInclude(std::abs(sweep) < flatSweep
                                     ? at((angle - startAngle) / sweep)
                                     : XY{centre.x + radius * direction.x, centre.y + radius * direction.y});
    }
    return envelope;
}

Envelope CircularArc::envelope() const noexcept {
    Envelope envelope = quadrantEnvelope();
    envelope.expandToInclude(at(0));
    envelope.expandToInclude(at(1));
    return envelope;
}

double CircularArc::signedSegmentArea() const noexcept {
    const double square = sweep * sweep;
    // Below half a radian the plain formula loses digits; the series is then exact to the last place.
    if (square < 0.25) {
        const double arcLength = radius * sweep;
        return arcLength * arcLength * sweep / 12 *
               (1 - square / 20 * (1 - square / 42 * (1 - square / 72 * (1 - square / 110))));
    }
    return radius * radius / 2 * (sweep - std::sin(sweep));
}

std::optional<CircularArc> arcThrough(XY start, XY middle, XY end, ArcSense fullCircleSense) {
    if (start == middle) {
        return std::nullopt;
    }
    if (start == end) {
        return fullCircle(start, middle, fullCircleSense);
    }
    const double determinant = orientationDeterminant(start, middle, end);
    if (determinant == 0) {
        return std::nullopt;
    }
    const XY b = middle - start;
    const XY c = end - start;
    const XY toCentre{(c.y * dot(b, b) - b.y * dot(c, c)) / (2 * determinant),
                      (b.x * dot(c, c) - c.x * dot(b, b)) / (2 * determinant)};
    const double radius = std::hypot(toCentre.x, toCentre.y);
    if (!std::isfinite(radius)) {
        return std::nullopt;
    }
    // Seen from the middle the ends are half the rest of the circle apart; this keeps all digits of a flat arc.
    const double half = std::atan2(determinant, -dot(start - middle, end - middle));
    return CircularArc{
        {start.x + toCentre.x, start.y + toCentre.y}, radius, std::atan2(-toCentre.y, -toCentre.x), 2 * half, start};
}

} // namespace qz
