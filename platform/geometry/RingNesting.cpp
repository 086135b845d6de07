#include "platform/geometry/RingNesting.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <set>

#include "platform/geometry/Orientation.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

// The vertices of all rings in one row. Edge i runs from vertex i to the next one of its ring.
struct RingVertices {
    std::vector<XY> places;
    std::vector<std::uint32_t> next;
    std::vector<std::uint32_t> previous;
    std::vector<std::uint32_t> ring;

    explicit RingVertices(std::span<const Path* const> rings);

    [[nodiscard]] bool ascends(std::uint32_t edge) const { return precedes(places[edge], places[next[edge]]); }
    [[nodiscard]] std::uint32_t lowEnd(std::uint32_t edge) const { return ascends(edge) ? edge : next[edge]; }
    [[nodiscard]] std::uint32_t highEnd(std::uint32_t edge) const { return ascends(edge) ? next[edge] : edge; }
};

RingVertices::RingVertices(std::span<const Path* const> rings) {
    for (std::size_t number = 0; number < rings.size(); ++number) {
        const std::span<const XY> xy = rings[number]->xy();
        const auto first = static_cast<std::uint32_t>(places.size());
        const auto count = static_cast<std::uint32_t>(rings[number]->segmentCount());
        places.insert(places.end(), xy.begin(), xy.begin() + count);
        ring.insert(ring.end(), count, static_cast<std::uint32_t>(number));
        for (std::uint32_t i = 0; i < count; ++i) {
            next.push_back(first + (i + 1) % count);
            previous.push_back(first + (i + count - 1) % count);
        }
    }
}

// An edge that the sweep line crosses. Where an edge goes on at the end of another, it takes over its place.
struct ActiveEdge {
    mutable std::uint32_t edge;
};

// From below upward along the sweep line, for edges that have not met.
class IsBelow {
public:
    using is_transparent = void;

    IsBelow(const RingVertices& vertices, bool& anyMet) : vertices_(&vertices), anyMet_(&anyMet) {}

    bool operator()(const ActiveEdge& a, const ActiveEdge& b) const {
        const std::uint32_t startOfA = vertices_->lowEnd(a.edge);
        const std::uint32_t startOfB = vertices_->lowEnd(b.edge);
        if (startOfA == startOfB) {
            return a.edge != b.edge && side(a.edge, vertices_->highEnd(b.edge)) == Turn::left;
        }
        const bool startsEarlier = precedes(vertices_->places[startOfA], vertices_->places[startOfB]);
        return startsEarlier ? side(a.edge, startOfB) == Turn::left : side(b.edge, startOfA) == Turn::right;
    }

    bool operator()(const ActiveEdge& active, std::uint32_t vertex) const {
        const Turn turn = side(active.edge, vertex);
        *anyMet_ = *anyMet_ || turn == Turn::straight;
        return turn == Turn::left;
    }

    // Where a vertex lies, seen along the edge in the direction of the sweep: left is above.
    [[nodiscard]] Turn side(std::uint32_t edge, std::uint32_t vertex) const {
        return turn(vertices_->places[vertices_->lowEnd(edge)], vertices_->places[vertices_->highEnd(edge)],
                    vertices_->places[vertex]);
    }

private:
    const RingVertices* vertices_;
    bool* anyMet_;
};

class RingSweep {
public:
    explicit RingSweep(std::span<const Path* const> rings)
        : vertices_(rings), active_(IsBelow(vertices_, anyMet_)), positions_(vertices_.places.size(), active_.end()),
          ringPlaces_(rings.size()), isSeen_(rings.size()), isCounterClockwise_(rings.size()) {}

    std::optional<std::vector<RingPlace>> run();

private:
    using Active = std::set<ActiveEdge, IsBelow>;

    [[nodiscard]] std::vector<std::uint32_t> alongSweep();
    void pass(std::uint32_t vertex);
    void begin(std::uint32_t vertex);
    void goOn(std::uint32_t ending, std::uint32_t beginning);
    void end(std::uint32_t edge);
    void placeRing(Active::iterator lowest);
    [[nodiscard]] bool isInsideAbove(std::uint32_t edge) const;
    void compare(Active::iterator below, Active::iterator above);
    void compareWithNeighbours(Active::iterator position);
    [[nodiscard]] bool meet(std::uint32_t a, std::uint32_t b) const;
    [[nodiscard]] bool areOnBothSides(std::uint32_t edge, std::uint32_t other) const;

    RingVertices vertices_;
    bool anyMet_ = false;
    Active active_;
    std::vector<Active::iterator> positions_; // by edge
    std::vector<RingPlace> ringPlaces_;
    std::vector<bool> isSeen_;
    std::vector<bool> isCounterClockwise_;
};

// All vertices by x, then y; of two at one place the rings meet there.
std::vector<std::uint32_t> RingSweep::alongSweep() {
    const std::vector<XY>& places = vertices_.places;
    std::vector<std::uint32_t> order(places.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::sort(order, precedes, [&places](std::uint32_t vertex) { return places[vertex]; });
    anyMet_ = std::ranges::adjacent_find(order, {}, [&places](std::uint32_t vertex) { return places[vertex]; }) !=
              order.end();
    return order;
}

std::optional<std::vector<RingPlace>> RingSweep::run() {
    const std::vector<std::uint32_t> order = alongSweep();
    for (std::size_t i = 0; i < order.size() && !anyMet_; ++i) {
        pass(order[i]);
    }
    return anyMet_ ? std::nullopt : std::optional(std::move(ringPlaces_));
}

void RingSweep::pass(std::uint32_t vertex) {
    const std::uint32_t arriving = vertices_.previous[vertex];
    const bool arrivesFromBehind = vertices_.ascends(arriving);
    const bool leavesForward = vertices_.ascends(vertex);
    if (arrivesFromBehind && leavesForward) {
        goOn(arriving, vertex);
    } else if (!arrivesFromBehind && !leavesForward) {
        goOn(vertex, arriving);
    } else if (leavesForward) {
        begin(vertex);
    } else {
        end(arriving);
        end(vertex);
    }
}

void RingSweep::begin(std::uint32_t vertex) {
    const std::uint32_t arriving = vertices_.previous[vertex];
    const Turn between = active_.key_comp().side(vertex, arriving);
    const auto above = active_.lower_bound(vertex);
    anyMet_ = anyMet_ || between == Turn::straight;
    if (anyMet_) {
        return;
    }
    const bool leavesBelow = between == Turn::left;
    const auto upper = active_.insert(above, {leavesBelow ? arriving : vertex});
    const auto lower = active_.insert(upper, {leavesBelow ? vertex : arriving});
    positions_[upper->edge] = upper;
    positions_[lower->edge] = lower;
    placeRing(lower);
    compareWithNeighbours(upper);
    compareWithNeighbours(lower);
}

void RingSweep::goOn(std::uint32_t ending, std::uint32_t beginning) {
    const auto position = positions_[ending];
    position->edge = beginning;
    positions_[beginning] = position;
    compareWithNeighbours(position);
}

void RingSweep::end(std::uint32_t edge) {
    const auto above = active_.erase(positions_[edge]);
    if (above != active_.begin() && above != active_.end()) {
        compare(std::prev(above), above);
    }
}

// A ring is first met at the joint of its lowest two edges there: what is just below it decides what it is in.
void RingSweep::placeRing(Active::iterator lowest) {
    const std::uint32_t ring = vertices_.ring[lowest->edge];
    if (isSeen_[ring]) {
        return;
    }
    isSeen_[ring] = true;
    isCounterClockwise_[ring] = vertices_.ascends(lowest->edge);
    if (lowest != active_.begin()) {
        const std::uint32_t below = std::prev(lowest)->edge;
        const std::size_t other = vertices_.ring[below];
        const RingPlace& beside = ringPlaces_[other];
        ringPlaces_[ring] = isInsideAbove(below) ? RingPlace{other, beside.depth + 1} : beside;
    }
}

bool RingSweep::isInsideAbove(std::uint32_t edge) const {
    return vertices_.ascends(edge) == isCounterClockwise_[vertices_.ring[edge]];
}

void RingSweep::compare(Active::iterator below, Active::iterator above) {
    anyMet_ = anyMet_ || meet(below->edge, above->edge);
}

void RingSweep::compareWithNeighbours(Active::iterator position) {
    if (position != active_.begin()) {
        compare(std::prev(position), position);
    }
    if (const auto above = std::next(position); above != active_.end()) {
        compare(position, above);
    }
}

// Of edges that are active at the same time: on one line they overlap.
bool RingSweep::meet(std::uint32_t a, std::uint32_t b) const {
    const IsBelow& order = active_.key_comp();
    if (vertices_.lowEnd(a) == vertices_.lowEnd(b)) {
        return order.side(a, vertices_.highEnd(b)) == Turn::straight;
    }
    if (vertices_.highEnd(a) == vertices_.highEnd(b)) {
        return order.side(a, vertices_.lowEnd(b)) == Turn::straight;
    }
    return areOnBothSides(a, b) && areOnBothSides(b, a);
}

// Whether the other edge reaches the line of the edge or goes across it.
bool RingSweep::areOnBothSides(std::uint32_t edge, std::uint32_t other) const {
    const IsBelow& order = active_.key_comp();
    const auto start = static_cast<int>(order.side(edge, other));
    const auto end = static_cast<int>(order.side(edge, vertices_.next[other]));
    return start * end <= 0;
}

} // namespace

bool canBeSwept(const Path& ring) {
    return ring.isClosed() && !ring.hasArcs() && std::ranges::all_of(ring.xy(), isFinite) &&
           std::ranges::adjacent_find(ring.xy()) == ring.xy().end();
}

std::optional<std::vector<RingPlace>> ringPlaces(std::span<const Path* const> rings) {
    return RingSweep(rings).run();
}

} // namespace qz
