#include "common/OverlapCandidates.h"

#include <algorithm>
#include <iterator>

#include "platform/geometry/Orientation.h"
#include "platform/geometry/Vectors.h"

namespace qz {

namespace {

struct Straight {
    XY from;
    XY to;
};

bool goSameWay(XY corner, XY a, XY b) {
    return turn(corner, a, b) == Turn::straight && dot(a - corner, b - corner) > 0;
}

// Segments without a common end that have a place in common.
bool meet(const Straight& a, const Straight& b) {
    const auto liesApart = [](const Straight& line, const Straight& other) {
        const Turn from = turn(line.from, line.to, other.from);
        return from != Turn::straight && from == turn(line.from, line.to, other.to);
    };
    return !liesApart(a, b) && !liesApart(b, a);
}

// The inside of a ring at one of its vertices: counter-clockwise from the segment that arrives to the one that leaves.
struct Corner {
    XY at;
    XY before;
    XY after;

    // Whether the direction goes inside, or along the segment that arrives.
    [[nodiscard]] bool begins(XY direction) const {
        if (goSameWay(at, before, direction)) {
            return true;
        }
        const auto isLeft = [this](XY from, XY to) { return turn(at, from, to) == Turn::left; };
        const Turn opening = turn(at, before, after);
        if (opening == Turn::right) {
            return !goSameWay(at, after, direction) && !(isLeft(after, direction) && isLeft(direction, before));
        }
        return isLeft(before, direction) && (opening == Turn::straight || isLeft(direction, after));
    }
};

// The segment before a vertex of a ring; a simple ring has none without length.
std::size_t segmentBefore(const Path& ring, std::size_t vertex) {
    return (vertex == 0 ? ring.segmentCount() : vertex) - 1;
}

Corner cornerAt(const Path& ring, std::size_t vertex) {
    return {ring.xy()[vertex], ring.xy()[segmentBefore(ring, vertex)], ring.xy()[vertex + 1]};
}

bool isCurvedAt(const Path& ring, std::size_t vertex) {
    return ring.arcAt(vertex) != nullptr || ring.arcAt(segmentBefore(ring, vertex)) != nullptr;
}

Straight straightOf(const Path& ring, const SegmentChain& chain) {
    return {ring.xy()[chain.first], ring.xy()[chain.end]};
}

bool haveSameCurve(const Path& a, std::size_t segmentA, const Path& b, std::size_t segmentB) {
    const ArcSegment* arcA = a.arcAt(segmentA);
    const ArcSegment* arcB = b.arcAt(segmentB);
    return arcA && arcB ? arcA->middle.xy() == arcB->middle.xy() : arcA == arcB;
}

} // namespace

OverlapCandidates::OverlapCandidates(std::span<const Polygon> polygons)
    : polygons_(polygons), locators_(polygons.size()) {
    for (std::uint32_t polygon = 0; polygon < polygons.size(); ++polygon) {
        for (const Path& ring : polygons[polygon].rings) {
            rings_.push_back(&ring);
            polygonOf_.push_back(polygon);
        }
    }
    lookAlongSegments();
    lookInsideRings();
    std::ranges::sort(pairs_);
    pairs_.erase(std::unique(pairs_.begin(), pairs_.end()), pairs_.end());
    std::vector<std::uint32_t> earlier;
    for (std::size_t polygon = 0, next = 0; polygon < polygons.size(); ++polygon) {
        earlier.clear();
        for (; next < pairs_.size() && pairs_[next].first == polygon; ++next) {
            earlier.push_back(pairs_[next].second);
        }
        earlierOf_.append(earlier);
    }
}

void OverlapCandidates::addPair(std::uint32_t one, std::uint32_t other) {
    const Pair pair{std::max(one, other), std::min(one, other)};
    if (pairs_.empty() || pairs_.back() != pair) {
        pairs_.push_back(pair);
    }
}

void OverlapCandidates::lookAlongSegments() {
    const SegmentChains chains(rings_);
    chains.forEachClosePair(0, [this](const SegmentChain& a, const SegmentChain& b) {
        if (polygonOf_[a.path] != polygonOf_[b.path]) {
            lookAt(a, b);
        }
        return true;
    });
    std::ranges::sort(contacts_);
    contacts_.erase(std::unique(contacts_.begin(), contacts_.end()), contacts_.end());
}

void OverlapCandidates::lookAt(const SegmentChain& a, const SegmentChain& b) {
    const Straight one = straightOf(*rings_[a.path], a), other = straightOf(*rings_[b.path], b);
    const bool haveCommonEnd =
        one.from == other.from || one.from == other.to || one.to == other.from || one.to == other.to;
    if (haveCommonEnd) {
        addContact(a, b);
    }
    if (haveCommonEnd ? mayOverlapAt(a, b) : a.circle != nullptr || b.circle != nullptr || meet(one, other)) {
        addPair(polygonOf_[a.path], polygonOf_[b.path]);
    }
}

void OverlapCandidates::addContact(const SegmentChain& a, const SegmentChain& b) {
    const auto add = [this](std::size_t ring, std::size_t other) {
        contacts_.emplace_back(static_cast<std::uint32_t>(ring), polygonOf_[other]);
    };
    add(a.path, b.path);
    add(b.path, a.path);
}

// Segments with a common end, straight or not. Corners are compared when the segments that leave them come.
bool OverlapCandidates::mayOverlapAt(const SegmentChain& a, const SegmentChain& b) const {
    const Path &ringA = *rings_[a.path], &ringB = *rings_[b.path];
    const Straight one = straightOf(ringA, a), other = straightOf(ringB, b);
    if (one.from == other.to && one.to == other.from) {
        return !haveSameCurve(ringA, a.first, ringB, b.first);
    }
    if (a.circle || b.circle) {
        return true;
    }
    if (one.from == other.from) {
        return cornersOverlap(a, b);
    }
    if (one.to == other.to) {
        return goSameWay(one.to, one.from, other.from);
    }
    return one.from == other.to ? goSameWay(one.from, one.to, other.from) : goSameWay(one.to, one.from, other.to);
}

bool OverlapCandidates::cornersOverlap(const SegmentChain& a, const SegmentChain& b) const {
    const Path &ringA = *rings_[a.path], &ringB = *rings_[b.path];
    if (isCurvedAt(ringA, a.first) || isCurvedAt(ringB, b.first)) {
        return true;
    }
    const Corner one = cornerAt(ringA, a.first), other = cornerAt(ringB, b.first);
    return one.begins(other.before) || other.begins(one.before);
}

// What lies in a polygon without meeting its boundary.
void OverlapCandidates::lookInsideRings() {
    std::vector<Envelope> envelopes;
    std::ranges::transform(polygons_, std::back_inserter(envelopes), &Polygon::envelope);
    const PackedEnvelopeTree tree(envelopes);
    for (std::uint32_t ring = 0; ring < rings_.size(); ++ring) {
        const Envelope extent = rings_[ring]->envelope();
        tree.query(extent, [&](std::size_t found) {
            const auto polygon = static_cast<std::uint32_t>(found);
            if (polygon != polygonOf_[ring] && envelopes[found].contains(extent) &&
                !std::ranges::binary_search(contacts_, Pair{ring, polygon}) &&
                holds(polygon, rings_[ring]->xy().front())) {
                addPair(polygonOf_[ring], polygon);
            }
        });
    }
}

bool OverlapCandidates::holds(std::uint32_t polygon, XY place) {
    std::vector<RingLocator>& locators = locators_[polygon];
    if (locators.empty()) {
        const double tenthOfResolution = polygons_[polygon].spatialReference.grid().xyResolution / 10;
        for (const Path& ring : polygons_[polygon].rings) {
            locators.emplace_back(ring, tenthOfResolution);
        }
    }
    return std::ranges::count_if(
               locators, [&](const RingLocator& locator) { return locator.sideOf(place) != RingSide::outside; }) %
               2 !=
           0;
}

} // namespace qz
