#include "polygon/QZSquareAngles.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string_view>
#include <vector>

#include "common/ErrorExit.h"
#include "common/QZPlane.h"
#include "platform/app/Services.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/Simplify.h"
#include "platform/geometry/Vectors.h"
#include "polygon/RightAngledRing.h"

namespace qz {

namespace {

enum class Step { check = 1, angles = 2, sides = 3, polygon = 4 };

constexpr const char* multipartNotice = "Multi-Part geometries cannot be processed";
constexpr const char* invalidNotice = "Invalid shape";
constexpr const char* crossingNotice =
    "The operation results in a self intersecting ring!\nDecrease the angle tolerance and try again";

// Of a clockwise ring, its first vertex once.
using Corners = std::vector<Vertex>;

Corners cornersOf(const Path& ring) {
    Corners corners;
    for (std::size_t i = 0; i < ring.segmentCount(); ++i) {
        corners.push_back(ring.vertex(i));
    }
    return corners;
}

bool isRefused(const Polyline& sequence) {
    if (sequence.paths.size() > 1) {
        showMessage(multipartNotice);
        return true;
    }
    if (sequence.paths.empty() || !(std::abs(signedArea(sequence.paths.front())) > 0)) {
        showMessage(invalidNotice);
        return true;
    }
    return false;
}

std::optional<Polygon> refusedFor(const char* notice) {
    showMessage(notice);
    return std::nullopt;
}

Polygon polygonOf(const Path& ring, const GeometryTraits& traits) {
    Polygon polygon;
    static_cast<GeometryTraits&>(polygon) = traits;
    polygon.rings = {ring};
    return polygon;
}

bool areSame(const Corners& a, const Corners& b, double resolution) {
    return std::ranges::equal(a, b, [resolution](const Vertex& p, const Vertex& q) {
        return QZ_Distance2D(p.x, p.y, q.x, q.y) <= resolution;
    });
}

std::optional<Polygon> squaredPolygon(const Polyline& sequence, Corners corners) {
    if (areSame(corners, cornersOf(sequence.paths.front()), sequence.spatialReference.grid().xyResolution)) {
        return polygonOf(sequence.paths.front(), sequence);
    }
    corners.push_back(corners.front());
    Polygon polygon = simplified(polygonOf(Path(corners), sequence));
    return polygon.rings.size() == 1 ? std::optional(std::move(polygon)) : refusedFor(crossingNotice);
}

double internalAngle(const Corners& corners, std::size_t i) {
    const std::size_t n = corners.size();
    return QZ_Angle3Points(corners[i].xy(), corners[(i + 1) % n].xy(), corners[(i + n - 1) % n].xy());
}

Corners withoutStraight(const Corners& corners, double angleTolerance) {
    Corners kept = {corners.front()};
    for (std::size_t i = 1; i < corners.size(); ++i) {
        if (std::abs(internalAngle(corners, i) - 180) >= angleTolerance) {
            kept.push_back(corners[i]);
        }
    }
    return kept;
}

// Nothing for an angle that is not snapped.
std::optional<double> targetOf(double measured, double angleTolerance) {
    const double whole = std::fmod(std::nearbyint(measured), 360); // halves to even
    if (std::fmod(whole, 90) == 0) {
        return whole;
    }
    if (measured < angleTolerance) {
        return 0;
    }
    for (const double target : {90.0, 180.0, 270.0}) {
        if (std::abs(measured - target) < angleTolerance) {
            return target;
        }
    }
    return std::nullopt;
}

struct SquaredAngles {
    std::vector<double> degrees; // by corner
    bool anySnapped = false;
    bool close = true; // whether they sum up to those of a ring
};

SquaredAngles squaredAngles(const Corners& corners, double angleTolerance) {
    SquaredAngles squared{std::vector<double>(corners.size())};
    double difference = 0; // of the angles snapped since the last that was not
    std::optional<std::size_t> lastFree;
    for (std::size_t turn = 1; turn <= corners.size(); ++turn) {
        const std::size_t i = turn % corners.size(); // the first corner last
        const double measured = internalAngle(corners, i);
        const auto target = targetOf(measured, angleTolerance);
        squared.degrees[i] = target ? *target : measured - difference;
        difference = target ? difference + *target - measured : 0;
        squared.anySnapped = squared.anySnapped || target;
        lastFree = target ? lastFree : i;
    }
    if (lastFree) {
        squared.degrees[*lastFree] -= difference;
    } else {
        squared.close = std::abs(difference) < 1; // else it is a right angle or more
    }
    return squared;
}

struct Side {
    XY direction; // unit vector
    double length = 0;
};

std::vector<Side> sidesOf(const Corners& corners, const std::vector<double>& angles) {
    const XY first = corners[1].xy() - corners[0].xy();
    double direction = std::atan2(first.y, first.x) * 180 / std::numbers::pi;
    std::vector<Side> sides;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        direction -= i > 0 ? 180 - angles[i] : 0;
        const double radians = direction * std::numbers::pi / 180;
        const Vertex& next = corners[(i + 1) % corners.size()];
        sides.push_back(
            {{std::cos(radians), std::sin(radians)}, QZ_Distance2D(corners[i].x, corners[i].y, next.x, next.y)});
    }
    return sides;
}

// Whether the change is less than the side is long; a larger one would make another shape.
bool lengthen(Side& side, double change) {
    const bool isSmall = std::abs(change) < side.length;
    side.length += change;
    return isSmall;
}

// Changes the lengths of two sides so that the ring closes; whether that is possible.
bool closeRing(std::vector<Side>& sides) {
    XY gap;
    for (const Side& side : sides) {
        gap = gap - side.direction * side.length;
    }
    const auto longest = std::ranges::max_element(sides.begin() + 1, sides.end(), {}, &Side::length);
    const auto across = std::ranges::max_element(sides.begin() + 1, sides.end(), {}, [&](const Side& side) {
        return std::abs(cross(longest->direction, side.direction)) * side.length;
    });
    const double sine = cross(longest->direction, across->direction);
    if (sine == 0) {
        return false;
    }
    return lengthen(*longest, cross(gap, across->direction) / sine) &&
           lengthen(*across, cross(longest->direction, gap) / sine);
}

Corners walked(const std::vector<Side>& sides, const Corners& corners) {
    Corners moved = corners;
    for (std::size_t i = 1; i < corners.size(); ++i) {
        const XY place = moved[i - 1].xy() + sides[i - 1].direction * sides[i - 1].length;
        moved[i].x = place.x;
        moved[i].y = place.y;
    }
    return moved;
}

// The frame of both forms: `square` gets the corners of a ring without arcs.
template <typename Square>
std::optional<Polygon> withSquaringExit(std::string_view label, const Polyline& sequence, Square square) {
    return withSteppedExit(label, Step::check, std::optional<Polygon>(), [&](Step& step) -> std::optional<Polygon> {
        if (isRefused(sequence)) {
            return std::nullopt;
        }
        const Path& ring = sequence.paths.front();
        return ring.hasArcs() ? polygonOf(ring, sequence) : square(cornersOf(ring), step);
    });
}

} // namespace

std::optional<Polygon> QZ_SquarePolygonAngles(const Polyline& sequence, double angleTolerance) {
    const auto square = [&](const Corners& all, Step& step) -> std::optional<Polygon> {
        step = Step::angles;
        const Corners corners = withoutStraight(all, angleTolerance);
        if (corners.size() < 3) {
            return refusedFor(invalidNotice);
        }
        const SquaredAngles angles = squaredAngles(corners, angleTolerance);
        if (!angles.anySnapped) {
            return polygonOf(sequence.paths.front(), sequence);
        }
        step = Step::sides;
        std::vector<Side> sides = sidesOf(corners, angles.degrees);
        if (!angles.close || !closeRing(sides)) {
            return refusedFor(crossingNotice);
        }
        step = Step::polygon;
        return squaredPolygon(sequence, walked(sides, corners));
    };
    return withSquaringExit(" QZ_SquarePolygonAngles w =", sequence, square);
}

std::optional<Polygon> QZ_SquarePolygonAnglesAll(const Polyline& sequence) {
    const auto square = [&](const Corners& corners, Step& step) -> std::optional<Polygon> {
        step = Step::sides;
        const Corners squared = rightAngled(corners);
        if (squared.empty()) {
            return refusedFor(invalidNotice);
        }
        step = Step::polygon;
        return squaredPolygon(sequence, squared);
    };
    return withSquaringExit(" QZ_SquarePolygonAnglesAll w =", sequence, square);
}

} // namespace qz
