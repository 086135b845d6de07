#include "platform/geometry/EnclosingCircle.h"

#include <cmath>
#include <cstdint>
#include <span>
#include <utility>

#include "platform/geometry/ConvexHull.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// Rounding of a circle's centre and radius, as a share of the radius.
constexpr double slack = 1e-14;

bool encloses(const Circle& circle, XY place) {
    return distance(circle.centre, place) <= circle.radius * (1 + slack);
}

Circle circleOver(XY a, XY b) {
    return {(a + b) * 0.5, distance(a, b) / 2};
}

// The circumcircle, computed relative to one of the three; nothing for places on one line.
std::optional<Circle> circleThrough(XY a, XY b, XY c) {
    const XY ab = b - a, ac = c - a;
    const double determinant = 2 * cross(ab, ac);
    if (determinant == 0) {
        return std::nullopt;
    }
    const double bb = dot(ab, ab), cc = dot(ac, ac);
    const XY toCentre{(ac.y * bb - ab.y * cc) / determinant, (ab.x * cc - ac.x * bb) / determinant};
    return Circle{a + toCentre, std::hypot(toCentre.x, toCentre.y)};
}

// Through both places, around those before them.
Circle throughTwo(std::span<const XY> before, XY a, XY b) {
    Circle circle = circleOver(a, b);
    for (const XY place : before) {
        if (!encloses(circle, place)) {
            circle = circleThrough(place, a, b).value_or(circle);
        }
    }
    return circle;
}

Circle throughOne(std::span<const XY> before, XY a) {
    Circle circle{a, 0};
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (!encloses(circle, before[i])) {
            circle = throughTwo(before.first(i), before[i], a);
        }
    }
    return circle;
}

// Fisher & Yates, with the numbers of a linear congruential generator (D. Knuth's MMIX).
void shuffle(std::span<XY> places) {
    std::uint64_t state = 1;
    for (std::size_t i = places.size(); i > 1; --i) {
        state = state * 6364136223846793005U + 1442695040888963407U;
        std::swap(places[i - 1], places[(state >> 33) % i]);
    }
}

} // namespace

std::optional<Circle> smallestEnclosingCircle(std::vector<XY> places) {
    std::vector<XY> corners = hullCorners(std::move(places));
    if (corners.empty()) {
        return std::nullopt;
    }
    const XY origin = corners.front(); // small numbers keep their digits
    for (XY& corner : corners) {
        corner = corner - origin;
    }
    shuffle(corners);
    Circle circle{corners.front(), 0};
    for (std::size_t i = 1; i < corners.size(); ++i) {
        if (!encloses(circle, corners[i])) {
            circle = throughOne(std::span(corners).first(i), corners[i]);
        }
    }
    circle.centre = circle.centre + origin;
    return circle;
}

} // namespace qz
