#include "topology/Departures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "platform/geometry/Orientation.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// A half-edge walked from vertex to vertex; segments without length are passed over.
class EdgeWalk {
public:
    EdgeWalk(const Path& path, bool reversed) : path_(path), reversed_(reversed) { passRepeated(); }

    [[nodiscard]] bool atEnd() const noexcept { return step_ >= path_.segmentCount(); }
    [[nodiscard]] XY here() const noexcept { return vertex(step_); }
    [[nodiscard]] XY next() const noexcept { return vertex(step_ + 1); }
    [[nodiscard]] const ArcSegment* arc() const noexcept {
        return path_.hasArcs() ? path_.arcAt(reversed_ ? path_.segmentCount() - 1 - step_ : step_) : nullptr;
    }
    // How far a circle around `here` may reach for the segment to leave it.
    [[nodiscard]] double reach() const {
        const double chord = distance(here(), next());
        return chord > 0 ? chord : 2 * path_.circularArc(*arc()).radius;
    }
    // Where an arc leaves the circle around its start; the end of a straight segment.
    [[nodiscard]] XY ahead(double circle) const { return arc() == nullptr ? next() : onArc(circle, reversed_); }
    // Where the last segment walked entered the circle around `here`.
    [[nodiscard]] XY behind(double circle) const {
        EdgeWalk last = *this;
        --last.step_;
        return last.arc() == nullptr ? last.here() : last.onArc(circle, !reversed_);
    }
    void advance() {
        ++step_;
        passRepeated();
    }

private:
    [[nodiscard]] XY vertex(std::size_t index) const noexcept {
        return path_.xy()[reversed_ ? path_.vertexCount() - 1 - index : index];
    }
    void passRepeated() {
        while (!atEnd() && here() == next() && arc() == nullptr) {
            ++step_;
        }
    }
    [[nodiscard]] XY onArc(double circle, bool fromItsEnd) const {
        const CircularArc arcHere = path_.circularArc(*arc());
        const double turned = 2 * std::asin(std::min(1.0, circle / (2 * arcHere.radius)));
        const double ratio = std::min(1.0, turned / std::abs(arcHere.sweep));
        return arcHere.at(fromItsEnd ? 1 - ratio : ratio);
    }

    const Path& path_;
    bool reversed_;
    std::size_t step_ = 0;
};

EdgeWalk walkAlong(const LinkedNetwork& network, EdgeEnd halfEdge) {
    return {network.edge(edgeOf(halfEdge)), isReversed(halfEdge)};
}

bool isSameSegment(const EdgeWalk& a, const EdgeWalk& b) {
    const bool bothStraight = a.arc() == nullptr && b.arc() == nullptr;
    const bool bothArcs = a.arc() != nullptr && b.arc() != nullptr;
    return a.next() == b.next() && (bothStraight || (bothArcs && a.arc()->middle.xy() == b.arc()->middle.xy()));
}

// Below the half-turn from east on: 0, else 1.
int halfTurn(XY place, XY ahead) noexcept {
    return ahead.y > place.y || (ahead.y == place.y && ahead.x > place.x) ? 0 : 1;
}

// Which of the two is met first on a turn counter-clockwise from the way back; nothing when both lie ahead alike.
std::optional<bool> liesRight(XY behind, XY here, XY a, XY b) {
    const Turn ofA = turn(behind, here, a);
    const Turn ofB = turn(behind, here, b);
    if (ofA != ofB) {
        return ofA < ofB;
    }
    const Turn between = turn(here, a, b);
    return between == Turn::straight ? std::nullopt : std::optional(between == Turn::left);
}

} // namespace

void DepartureOrder::sort(std::span<EdgeEnd> halfEdges) {
    if (halfEdges.size() < 3) {
        return; // around two of them every order is the same
    }
    const double circle = circleAround(halfEdges);
    departures_.clear();
    for (const EdgeEnd halfEdge : halfEdges) {
        departures_.push_back({walkAlong(network_, halfEdge).ahead(circle), halfEdge});
    }
    const XY place = placeOf(network_.edge(edgeOf(halfEdges.front())), halfEdges.front());
    std::ranges::sort(departures_, [&](const Departure& a, const Departure& b) { return precedes(place, a, b); });
    std::ranges::transform(departures_, halfEdges.begin(), &Departure::halfEdge);
}

// The radius of a circle that all first segments leave; of no use where there are no arcs.
double DepartureOrder::circleAround(std::span<const EdgeEnd> halfEdges) const {
    double circle = std::numeric_limits<double>::infinity();
    const auto hasArcs = [&](EdgeEnd halfEdge) { return network_.edge(edgeOf(halfEdge)).hasArcs(); };
    if (std::ranges::any_of(halfEdges, hasArcs)) {
        for (const EdgeEnd halfEdge : halfEdges) {
            circle = std::min(circle, walkAlong(network_, halfEdge).reach() / 2);
        }
    }
    return circle;
}

bool DepartureOrder::precedes(XY place, const Departure& a, const Departure& b) const {
    if (a.halfEdge == b.halfEdge) {
        return false;
    }
    const int halfOfA = halfTurn(place, a.ahead);
    const int halfOfB = halfTurn(place, b.ahead);
    if (halfOfA != halfOfB) {
        return halfOfA < halfOfB;
    }
    const Turn between = turn(place, a.ahead, b.ahead);
    return between == Turn::straight ? runsRightOf(a.halfEdge, b.halfEdge) : between == Turn::left;
}

// Both start in the same direction.
bool DepartureOrder::runsRightOf(EdgeEnd a, EdgeEnd b) const {
    EdgeWalk walkA = walkAlong(network_, a);
    EdgeWalk walkB = walkAlong(network_, b);
    while (!walkA.atEnd() && !walkB.atEnd() && isSameSegment(walkA, walkB)) {
        walkA.advance();
        walkB.advance();
        if (!walkA.atEnd() && !walkB.atEnd()) {
            const double circle = std::min(walkA.reach(), walkB.reach()) / 2;
            const XY behind = walkA.behind(circle);
            if (const auto right = liesRight(behind, walkA.here(), walkA.ahead(circle), walkB.ahead(circle))) {
                return *right;
            }
        }
    }
    // Like each other as far as both go. At their other ends the order is reversed.
    return isReversed(std::min(a, b)) == (b < a);
}

} // namespace qz
