#include "platform/geometry/SegmentIntersection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <tuple>

#include "platform/geometry/Determinant.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

constexpr double almostOne = 1 - 0x1p-53;

double insideRatio(double ratio) noexcept {
    return std::clamp(ratio, 0x1p-1000, almostOne);
}

// Of a place on the segment that is neither of its ends.
double ratioInside(const NodingSegment& segment, XY p) noexcept {
    if (segment.circle != nullptr) {
        return insideRatio(segment.circle->ratioOf(p));
    }
    const XY along = segment.end - segment.start;
    return insideRatio(dot(p - segment.start, along) / dot(along, along));
}

double ratioAt(const NodingSegment& segment, XY p) noexcept {
    if (p == segment.start) {
        return 0;
    }
    return p == segment.end ? 1 : ratioInside(segment, p);
}

XY clampedTo(XY p, const Envelope& window) noexcept {
    return {std::clamp(p.x, window.xMin, window.xMax), std::clamp(p.y, window.yMin, window.yMax)};
}

bool inBoxOf(const NodingSegment& segment, XY p) noexcept {
    return std::min(segment.start.x, segment.end.x) <= p.x && p.x <= std::max(segment.start.x, segment.end.x) &&
           std::min(segment.start.y, segment.end.y) <= p.y && p.y <= std::max(segment.start.y, segment.end.y);
}

NodingSegment ascending(const NodingSegment& segment) noexcept {
    return precedes(segment.end, segment.start) ? NodingSegment{segment.end, segment.start} : segment;
}

// From the end of `a` that is nearer to the other segment, so that little is lost to rounding.
XY pointBetween(const NodingSegment& a, double fromStart, double fromEnd) noexcept {
    const double share = fromStart / (fromStart + fromEnd);
    const XY along = a.end - a.start;
    if (share <= 0.5) {
        return {a.start.x + share * along.x, a.start.y + share * along.y};
    }
    const double rest = fromEnd / (fromStart + fromEnd);
    return {a.end.x - rest * along.x, a.end.y - rest * along.y};
}

XY crossingOf(const NodingSegment& one, const NodingSegment& other) noexcept {
    NodingSegment a = ascending(one);
    NodingSegment b = ascending(other);
    if (std::tie(b.start.x, b.start.y, b.end.x, b.end.y) < std::tie(a.start.x, a.start.y, a.end.x, a.end.y)) {
        std::swap(a, b);
    }
    const XY p = pointBetween(a, std::abs(orientationDeterminant(b.start, b.end, a.start)),
                              std::abs(orientationDeterminant(b.start, b.end, a.end)));
    return clampedTo(clampedTo(p, a.envelope()), b.envelope());
}

bool sameSide(Turn one, Turn other) noexcept {
    return static_cast<int>(one) * static_cast<int>(other) > 0;
}

void addPoint(std::vector<Contact>& found, const NodingSegment& a, const NodingSegment& b, XY p) {
    if (std::ranges::none_of(found, [p](const Contact& known) { return known.position == p; })) {
        found.push_back({p, ratioAt(a, p), ratioAt(b, p)});
    }
}

struct Sides {
    Turn start;
    Turn end;
};

Turn sideOf(XY p, const NodingSegment& line) noexcept {
    // Without the exact arithmetic that the predicate needs for it.
    return p == line.start || p == line.end ? Turn::straight : turn(line.start, line.end, p);
}

Sides sidesOf(const NodingSegment& tested, const NodingSegment& line) noexcept {
    return {sideOf(tested.start, line), sideOf(tested.end, line)};
}

// Two contacts of straight segments bound a stretch that they share.
void settleStraight(Contacts& contacts) {
    if (contacts.points.size() < 2) {
        return;
    }
    const auto [from, to] = std::ranges::minmax(contacts.points, {}, &Contact::ratioA);
    contacts.stretches.push_back({from, to});
    contacts.points.clear();
}

void findStraightContacts(const NodingSegment& a, const NodingSegment& b, Contacts& contacts) {
    const Sides ofA = sidesOf(a, b);
    if (sameSide(ofA.start, ofA.end)) {
        return;
    }
    const Sides ofB = sidesOf(b, a);
    if (sameSide(ofB.start, ofB.end)) {
        return;
    }
    if (areOpposite(ofA.start, ofA.end) && areOpposite(ofB.start, ofB.end)) {
        addPoint(contacts.points, a, b, crossingOf(a, b));
        return;
    }
    const auto addEnd = [&](XY end, Turn side, const NodingSegment& other) {
        if (side == Turn::straight && inBoxOf(other, end)) {
            addPoint(contacts.points, a, b, end);
        }
    };
    addEnd(a.start, ofA.start, b);
    addEnd(a.end, ofA.end, b);
    addEnd(b.start, ofB.start, a);
    addEnd(b.end, ofB.end, a);
    settleStraight(contacts);
}

double distanceFrom(const NodingSegment& segment, XY p) noexcept {
    if (segment.circle != nullptr) {
        if (segment.circle->ratioOf(p) <= 1) {
            return std::abs(distance(p, segment.circle->centre) - segment.circle->radius);
        }
        return std::min(distance(p, segment.start), distance(p, segment.end));
    }
    const XY along = segment.end - segment.start;
    const double ratio = std::clamp(dot(p - segment.start, along) / dot(along, along), 0.0, 1.0);
    return distance(p, {segment.start.x + ratio * along.x, segment.start.y + ratio * along.y});
}

// The ratio of `p`, which is that close to the segment: at an end of it when that is as close.
double ratioNear(const NodingSegment& segment, XY p, double near) noexcept {
    const double toStart = distance(p, segment.start);
    const double toEnd = distance(p, segment.end);
    if (std::min(toStart, toEnd) <= near) {
        return toStart <= toEnd ? 0 : 1;
    }
    return ratioInside(segment, p);
}

// An end of the one that is an end of the other as well within the distance is reported once, where `a` has it.
void addNearPoint(std::vector<Contact>& found, const NodingSegment& a, const NodingSegment& b, XY p, double near) {
    const bool known =
        std::ranges::any_of(found, [p, near](const Contact& contact) { return distance(contact.position, p) <= near; });
    if (!known) {
        found.push_back({p, ratioNear(a, p, near), ratioNear(b, p, near)});
    }
}

void addEndContacts(std::vector<Contact>& found, const NodingSegment& a, const NodingSegment& b, double near) {
    for (const XY end : {a.start, a.end}) {
        if (distanceFrom(b, end) <= near) {
            addNearPoint(found, a, b, end, near);
        }
    }
    for (const XY end : {b.start, b.end}) {
        if (distanceFrom(a, end) <= near) {
            addNearPoint(found, a, b, end, near);
        }
    }
}

void findNearStraightContacts(const NodingSegment& a, const NodingSegment& b, double near, Contacts& contacts) {
    addEndContacts(contacts.points, a, b, near);
    if (contacts.points.empty()) {
        findStraightContacts(a, b, contacts);
    } else {
        settleStraight(contacts);
    }
}

// How far rounding may put a point that was meant to lie on the circle.
double roundingOf(const CircularArc& circle) noexcept {
    constexpr double unitsInTheLastPlace = 32 * 0x1p-53;
    return unitsInTheLastPlace * (std::abs(circle.centre.x) + std::abs(circle.centre.y) + 2 * circle.radius);
}

struct CircleRoots {
    std::array<XY, 2> points;
    std::size_t count = 0;
    bool tangential = false;
    double uncertainty = 0; // how far rounding may have moved the points

    void add(XY p) noexcept { points[count++] = p; }
};

// At `foot` plus and minus the half chord along the unit vector. `rounding` is that of the distance of the foot from
// the centre: a half chord below what it can make is a contact in one point.
CircleRoots rootsAbout(XY foot, XY unit, double halfChordSquared, double radius, double rounding) noexcept {
    CircleRoots roots;
    const double smallest = 2 * radius * rounding;
    if (halfChordSquared < -smallest) {
        return roots;
    }
    if (halfChordSquared <= smallest) {
        roots.add(foot);
        roots.tangential = true;
        roots.uncertainty = 2 * std::sqrt(smallest);
        return roots;
    }
    const double half = std::sqrt(halfChordSquared);
    roots.add({foot.x - half * unit.x, foot.y - half * unit.y});
    roots.add({foot.x + half * unit.x, foot.y + half * unit.y});
    roots.uncertainty = 2 * radius * rounding / half;
    return roots;
}

CircleRoots lineMeets(const NodingSegment& line, const CircularArc& circle) noexcept {
    const NodingSegment directed = ascending(line);
    const XY along = directed.end - directed.start;
    const double length = std::hypot(along.x, along.y);
    const XY unit{along.x / length, along.y / length};
    const double offset = orientationDeterminant(directed.start, directed.end, circle.centre) / length;
    const XY foot{circle.centre.x + offset * unit.y, circle.centre.y - offset * unit.x};
    return rootsAbout(foot, unit, (circle.radius - offset) * (circle.radius + offset), circle.radius,
                      roundingOf(circle));
}

bool precedes(const CircularArc& a, const CircularArc& b) noexcept {
    return std::tie(a.centre.x, a.centre.y, a.radius) < std::tie(b.centre.x, b.centre.y, b.radius);
}

CircleRoots circlesMeet(const CircularArc& one, const CircularArc& other) noexcept {
    const CircularArc& a = precedes(other, one) ? other : one;
    const CircularArc& b = precedes(other, one) ? one : other;
    const XY between = b.centre - a.centre;
    const double apart = std::hypot(between.x, between.y);
    if (apart == 0) {
        return {};
    }
    const double along = (apart + (a.radius - b.radius) * (a.radius + b.radius) / apart) / 2;
    const XY unit{between.x / apart, between.y / apart};
    const XY foot{a.centre.x + along * unit.x, a.centre.y + along * unit.y};
    // The foot is where the circles' difference puts it: the closer the centres, the less sure.
    const double rounding = (roundingOf(a) + roundingOf(b)) * std::max(1.0, std::max(a.radius, b.radius) / apart);
    return rootsAbout(foot, {-unit.y, unit.x}, (a.radius - along) * (a.radius + along), a.radius, rounding);
}

bool covers(const NodingSegment& segment, XY p) noexcept {
    if (segment.circle != nullptr) {
        return segment.circle->ratioOf(p) < 1;
    }
    const XY along = segment.end - segment.start;
    const double ratio = dot(p - segment.start, along) / dot(along, along);
    return 0 < ratio && ratio < 1;
}

void addRoots(std::vector<Contact>& found, const NodingSegment& a, const NodingSegment& b, const CircleRoots& roots,
              double near) {
    const double same = std::max(near, roots.uncertainty);
    for (const XY p : std::span(roots.points).first(roots.count)) {
        const bool known = std::ranges::any_of(
            found, [p, same](const Contact& contact) { return distance(contact.position, p) <= same; });
        if (!known && covers(a, p) && covers(b, p)) {
            found.push_back({p, ratioInside(a, p), ratioInside(b, p), roots.tangential});
        }
    }
}

bool areOneCircle(const CircularArc& a, const CircularArc& b, double tolerance) noexcept {
    return distance(a.centre, b.centre) <= tolerance && std::abs(a.radius - b.radius) <= tolerance;
}

// The start of a full circle is its end as well.
void addBothEndsOfCircle(std::vector<Contact>& found, const NodingSegment& a) {
    const auto start = std::ranges::find(found, 0.0, &Contact::ratioA);
    if (a.start == a.end && start != found.end()) {
        Contact end = *start;
        end.ratioA = 1;
        found.push_back(end);
    }
}

// `found` are the ends of the one that lie on the other: the stretches between them are either of both or of one.
void settleOneCircle(const NodingSegment& a, const NodingSegment& b, std::vector<Contact>& found, Contacts& contacts) {
    std::ranges::sort(found, {}, &Contact::ratioA);
    bool inStretch = false;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const bool wasInStretch = inStretch;
        inStretch =
            i + 1 < found.size() && b.circle->ratioOf(a.circle->at((found[i].ratioA + found[i + 1].ratioA) / 2)) <= 1;
        if (inStretch) {
            contacts.stretches.push_back({found[i], found[i + 1]});
        } else if (!wasInStretch) {
            contacts.points.push_back(found[i]);
        }
    }
}

void findArcContacts(const NodingSegment& a, const NodingSegment& b, const ContactTolerance& tolerance,
                     Contacts& contacts) {
    const double rounding =
        (a.circle != nullptr ? roundingOf(*a.circle) : 0) + (b.circle != nullptr ? roundingOf(*b.circle) : 0);
    const double near = std::max(rounding, tolerance.endDistance);
    const bool bothCurved = a.circle != nullptr && b.circle != nullptr;
    const double oneCircle = std::max(rounding, tolerance.circleDistance);
    if (bothCurved && areOneCircle(*a.circle, *b.circle, oneCircle)) {
        std::vector<Contact> found;
        addEndContacts(found, a, b, std::max(near, 2 * oneCircle));
        addBothEndsOfCircle(found, a);
        settleOneCircle(a, b, found, contacts);
        return;
    }
    addEndContacts(contacts.points, a, b, near);
    const CircleRoots roots = bothCurved ? circlesMeet(*a.circle, *b.circle)
                                         : (a.circle != nullptr ? lineMeets(b, *a.circle) : lineMeets(a, *b.circle));
    addRoots(contacts.points, a, b, roots, near);
}

} // namespace

Envelope NodingSegment::envelope() const {
    Envelope envelope = circle != nullptr ? circle->quadrantEnvelope() : Envelope();
    envelope.expandToInclude(start);
    envelope.expandToInclude(end);
    return envelope;
}

void findContacts(const NodingSegment& a, const NodingSegment& b, const ContactTolerance& tolerance,
                  Contacts& contacts) {
    contacts.clear();
    if (a.circle != nullptr || b.circle != nullptr) {
        findArcContacts(a, b, tolerance, contacts);
    } else if (tolerance.endDistance > 0) {
        findNearStraightContacts(a, b, tolerance.endDistance, contacts);
    } else {
        findStraightContacts(a, b, contacts);
    }
}

} // namespace qz
