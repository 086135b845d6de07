#include "platform/geometry/ParallelCurve.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "platform/geometry/ArcConstruction.h"
#include "platform/geometry/Curve.h"
#include "platform/geometry/SegmentIntersection.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// Ends of neighbouring parallels this close, in distances, are one: the line turns by less than this in radians, which
// changes the distance by the square of it.
constexpr double smoothTurn = 1e-9;

XY rightNormal(XY direction) noexcept {
    return {direction.y, -direction.x};
}

Vertex beside(const Vertex& vertex, XY direction, double distance) noexcept {
    const XY at = vertex.xy() + rightNormal(direction) * distance;
    return {at.x, at.y, vertex.z, vertex.m};
}

// The parallel of one segment, and the stretch of it that its neighbours leave.
struct Side {
    Path path; // of one segment
    ParallelRole role = ParallelRole::parallel;
    XY startDirection;
    XY endDirection;
    Vertex corner; // of the line, at the end of the segment
    double from = 0;
    double to = 1;
    std::optional<XY> crossing; // with the next one, at `to`
};

ArcSense senseOf(const CircularArc& circle) noexcept {
    return circle.sweep > 0 ? ArcSense::counterClockwise : ArcSense::clockwise;
}

// Above 0 on the side of the centre where the arc still has its sense.
double parallelRadius(const CircularArc& circle, double distance) noexcept {
    return circle.radius + (circle.sweep > 0 ? distance : -distance);
}

void appendParallelArc(Side& side, const CurveSegment& segment, const Vertex& end, double distance) {
    const CircularArc& circle = *segment.circle();
    const double radius = parallelRadius(circle, distance);
    side.role = radius > 0 ? ParallelRole::parallel : ParallelRole::inside;
    if (std::abs(radius) <= smoothTurn * distance) {
        side.path.addVertex(end); // no more than the centre
        return;
    }
    const bool isFullCircle = segment.start() == segment.end();
    side.path.addArc(beside(segment.vertexAt(0.5), segment.direction(0.5), distance),
                     isFullCircle ? side.path.front() : end, senseOf(circle));
}

Side sideOf(const CurveSegment& segment, const Vertex& start, const Vertex& end, double distance) {
    Side side;
    side.startDirection = segment.direction(0);
    side.endDirection = segment.direction(1);
    side.corner = end;
    side.path.addVertex(beside(start, side.startDirection, distance));
    const Vertex last = beside(end, side.endDirection, distance);
    if (segment.circle()) {
        appendParallelArc(side, segment, last, distance);
    } else {
        side.path.addVertex(last);
    }
    return side;
}

std::vector<Side> sidesOf(const Path& line, double distance) {
    std::vector<Side> sides;
    sides.reserve(line.segmentCount());
    forEachSegment(line, [&](std::size_t i, const CurveSegment& segment) {
        if (segment.length() > 0) {
            sides.push_back(sideOf(segment, line.vertex(i), line.vertex(i + 1), distance));
        }
    });
    return sides;
}

bool meetSmoothly(const Side& before, const Side& after, double distance) {
    const XY gap = after.path.xy().front() - before.path.xy().back();
    return std::hypot(gap.x, gap.y) <= smoothTurn * distance;
}

// The line turns to the left, or straight back.
bool turnsAway(const Side& before, const Side& after) noexcept {
    const double bend = cross(before.endDirection, after.startDirection);
    return bend > 0 || (bend == 0 && dot(before.endDirection, after.startDirection) < 0);
}

// The only place that two neighbours share, inside of what is left of both.
std::optional<Contact> crossingOf(const Side& before, const Side& after) {
    if (before.role == ParallelRole::inside || after.role == ParallelRole::inside) {
        return std::nullopt;
    }
    const CurveSegment one(before.path, 0);
    const CurveSegment other(after.path, 0);
    const auto forNoding = [](const CurveSegment& segment) {
        return NodingSegment{segment.start(), segment.end(), segment.circle() ? &*segment.circle() : nullptr};
    };
    Contacts contacts;
    findContacts(forNoding(one), forNoding(other), {}, contacts);
    if (contacts.points.size() != 1 || !contacts.stretches.empty()) {
        return std::nullopt;
    }
    const Contact& only = contacts.points.front();
    return only.ratioA > before.from && only.ratioB < after.to ? std::optional(only) : std::nullopt;
}

void trimAtCorner(Side& before, Side& after, double distance) {
    if (meetSmoothly(before, after, distance) || turnsAway(before, after)) {
        return;
    }
    if (const std::optional<Contact> contact = crossingOf(before, after)) {
        before.to = contact->ratioA;
        before.crossing = contact->position;
        after.from = contact->ratioB;
    }
}

Vertex endOf(const Side& side) {
    return side.crossing ? Vertex{side.crossing->x, side.crossing->y, side.corner.z, side.corner.m} : side.path.back();
}

Vertex cornerMiddle(const Side& before, const Side& after, double distance) {
    double half =
        std::atan2(cross(before.endDirection, after.startDirection), dot(before.endDirection, after.startDirection)) /
        2;
    half = std::abs(half); // straight back may come out as half a turn to the right
    const XY along = before.endDirection;
    const XY halfway{along.x * std::cos(half) - along.y * std::sin(half),
                     along.x * std::sin(half) + along.y * std::cos(half)};
    return beside(before.corner, halfway, distance);
}

class CurveBuilder {
public:
    CurveBuilder(const Vertex& start, double distance) : distance_(distance) { curve_.path.addVertex(start); }

    void addSide(const Side& side) {
        const CurveSegment segment(side.path, 0);
        if (segment.length() > 0) {
            appendStretch(curve_.path, segment, side.from, side.to, endOf(side));
        }
        curve_.roles.resize(curve_.path.segmentCount(), side.role);
    }

    void addCorner(const Side& before, const Side& after) {
        if (before.crossing || meetSmoothly(before, after, distance_)) {
            return;
        }
        if (turnsAway(before, after)) {
            curve_.path.addArc(cornerMiddle(before, after, distance_), after.path.front());
            curve_.roles.resize(curve_.path.segmentCount(), ParallelRole::corner);
        } else {
            curve_.path.addVertex(after.path.front());
            curve_.roles.resize(curve_.path.segmentCount(), ParallelRole::inside);
        }
    }

    // Neighbours that meet smoothly do so but for rounding.
    void close() {
        if (curve_.path.segmentCount() > 0 && !curve_.path.isClosed()) {
            curve_.path.setVertex(curve_.path.vertexCount() - 1, curve_.path.front());
        }
    }

    ParallelCurve finish() { return std::move(curve_); }

private:
    double distance_;
    ParallelCurve curve_;
};

ParallelCurve capAround(const Vertex& from, const Vertex& to) {
    const XY half = (to.xy() - from.xy()) * 0.5;
    const XY tip = from.xy() + half + rightNormal(half);
    ParallelCurve cap;
    cap.path.addVertex(from);
    cap.path.addArc({tip.x, tip.y, from.z, from.m}, to);
    cap.roles.assign(cap.path.segmentCount(), ParallelRole::corner);
    return cap;
}

ParallelCurve circleAround(const Vertex& centre, double distance) {
    return {circleFrom(centre.xy(), beside(centre, {0, 1}, distance), ArcSense::counterClockwise),
            {ParallelRole::corner}};
}

} // namespace

ParallelCurve parallelOnRight(const Path& line, double distance) {
    std::vector<Side> sides = sidesOf(line, distance);
    if (sides.empty()) {
        return {};
    }
    for (std::size_t i = 1; i < sides.size(); ++i) {
        trimAtCorner(sides[i - 1], sides[i], distance);
    }
    if (line.isClosed()) {
        trimAtCorner(sides.back(), sides.front(), distance);
    }
    const bool startsAtCrossing = line.isClosed() && sides.back().crossing;
    CurveBuilder builder(startsAtCrossing ? endOf(sides.back()) : sides.front().path.front(), distance);
    for (std::size_t i = 0; i < sides.size(); ++i) {
        if (i > 0) {
            builder.addCorner(sides[i - 1], sides[i]);
        }
        builder.addSide(sides[i]);
    }
    if (line.isClosed()) {
        builder.addCorner(sides.back(), sides.front());
        builder.close();
    }
    return builder.finish();
}

SurroundingCurves curvesAround(std::span<const Path> lines, double distance) {
    SurroundingCurves around;
    const auto add = [&around](ParallelCurve curve, bool isOnRight) {
        around.curves.push_back(std::move(curve));
        around.isOnRight.push_back(isOnRight);
    };
    for (const Path& line : lines) {
        Path reversed = line;
        reversed.reverse();
        ParallelCurve right = parallelOnRight(line, distance);
        ParallelCurve left = parallelOnRight(reversed, distance);
        const bool hasLength = !right.path.isEmpty() && !left.path.isEmpty();
        if (!hasLength && !line.isEmpty()) {
            add(circleAround(line.front(), distance), false);
        }
        if (hasLength && !line.isClosed()) {
            add(capAround(right.path.back(), left.path.front()), false);
            add(capAround(left.path.back(), right.path.front()), false);
        }
        if (hasLength) {
            add(std::move(right), true);
            add(std::move(left), false);
        }
    }
    return around;
}

} // namespace qz
