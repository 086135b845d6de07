#include "platform/geometry/Noding.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <tuple>

#include "platform/geometry/Curve.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/RingNesting.h"
#include "platform/geometry/SegmentChains.h"

namespace qz {

namespace {

struct Place {
    std::size_t segment = 0;
    double ratio = 0;

    friend bool operator==(const Place&, const Place&) = default;
};

auto sortKey(const Node& node) {
    return std::tie(node.segment, node.ratio, node.otherPath, node.otherSegment, node.otherRatio, node.kind);
}

NodeKind opposite(NodeKind overlap) noexcept {
    return overlap == NodeKind::overlapBegin ? NodeKind::overlapEnd : NodeKind::overlapBegin;
}

class Noder {
public:
    Noder(std::span<const Path* const> paths, const ContactTolerance& tolerance)
        : paths_(paths), tolerance_(tolerance), chains_(paths), nodes_(paths.size()) {}

    // Of the first paths only, among themselves and with the others.
    std::vector<std::vector<Node>> run(std::size_t firstPaths);
    // Nothing when that can't be told from so many pairs of segments with close envelopes.
    [[nodiscard]] std::optional<bool> findsNone(std::size_t maximumPairs);

private:
    [[nodiscard]] NodingSegment segmentOf(const SegmentChain& chain) const;
    void meet(const SegmentChain& a, const SegmentChain& b);
    [[nodiscard]] Place placeOf(const SegmentChain& chain, double ratio) const;
    void addNodes(const SegmentChain& a, const SegmentChain& b, const Contact& contact, NodeKind kindA, NodeKind kindB);
    void addStretch(const SegmentChain& a, const SegmentChain& b, const Contacts::Stretch& stretch);
    [[nodiscard]] bool isJoint(std::size_t path, const Place& one, const Place& other) const;

    std::span<const Path* const> paths_;
    ContactTolerance tolerance_;
    SegmentChains chains_;
    Contacts contacts_;
    std::vector<std::vector<Node>> nodes_;
    bool foundAny_ = false;
};

std::vector<std::vector<Node>> Noder::run(std::size_t firstPaths) {
    chains_.forEachClosePair(
        tolerance_.endDistance, [firstPaths](std::size_t path) { return path < firstPaths; },
        [this](const SegmentChain& a, const SegmentChain& b) {
            meet(a, b);
            return true;
        });
    nodes_.resize(firstPaths);
    for (std::vector<Node>& nodes : nodes_) {
        std::ranges::sort(nodes, [](const Node& a, const Node& b) { return sortKey(a) < sortKey(b); });
        nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    }
    return std::move(nodes_);
}

std::optional<bool> Noder::findsNone(std::size_t maximumPairs) {
    std::size_t pairs = 0;
    const bool sawAll =
        chains_.forEachClosePair(tolerance_.endDistance, [&](const SegmentChain& a, const SegmentChain& b) {
            if (pairs++ == maximumPairs) {
                return false;
            }
            meet(a, b);
            return !foundAny_;
        });
    return sawAll || foundAny_ ? std::optional(sawAll) : std::nullopt;
}

NodingSegment Noder::segmentOf(const SegmentChain& chain) const {
    const std::span<const XY> xy = paths_[chain.path]->xy();
    return {xy[chain.first], xy[chain.end], chain.circle};
}

NodeKind kindOf(const Contact& contact) noexcept {
    const bool endOfA = contact.ratioA == 0 || contact.ratioA == 1;
    const bool endOfB = contact.ratioB == 0 || contact.ratioB == 1;
    if (endOfA && endOfB) {
        return NodeKind::sharedEnd;
    }
    return endOfA || endOfB || contact.tangential ? NodeKind::touch : NodeKind::crossing;
}

// Whether consecutive segments have no more than their joint in common, as nearly all have.
bool turnAside(const NodingSegment& before, const NodingSegment& after) noexcept {
    return before.circle == nullptr && after.circle == nullptr &&
           turn(before.start, before.end, after.end) != Turn::straight;
}

void Noder::meet(const SegmentChain& a, const SegmentChain& b) {
    const NodingSegment one = segmentOf(a);
    const NodingSegment other = segmentOf(b);
    if ((a.circle == nullptr && one.start == one.end) || (b.circle == nullptr && other.start == other.end)) {
        return;
    }
    if (a.path == b.path && a.end == b.first && turnAside(one, other)) {
        return;
    }
    findContacts(one, other, a.path == b.path ? ContactTolerance{0, tolerance_.circleDistance} : tolerance_, contacts_);
    for (const Contact& contact : contacts_.points) {
        addNodes(a, b, contact, kindOf(contact), kindOf(contact));
    }
    for (const Contacts::Stretch& stretch : contacts_.stretches) {
        addStretch(a, b, stretch);
    }
}

Place Noder::placeOf(const SegmentChain& chain, double ratio) const {
    if (ratio > 0 && ratio < 1) {
        return {chain.first, ratio};
    }
    const std::span<const XY> xy = paths_[chain.path]->xy();
    std::size_t vertex = ratio == 0 ? chain.first : chain.end;
    while (vertex > 0 && xy[vertex - 1] == xy[vertex] && paths_[chain.path]->arcAt(vertex - 1) == nullptr) {
        --vertex;
    }
    return {vertex, 0};
}

// Whether two places of a path are one because of how it runs.
bool Noder::isJoint(std::size_t path, const Place& one, const Place& other) const {
    if (one == other) {
        return true;
    }
    const Place last = placeOf({path, 0, paths_[path]->segmentCount()}, 1);
    return paths_[path]->isClosed() && ((one == Place{} && other == last) || (other == Place{} && one == last));
}

void Noder::addNodes(const SegmentChain& a, const SegmentChain& b, const Contact& contact, NodeKind kindA,
                     NodeKind kindB) {
    const Place onA = placeOf(a, contact.ratioA);
    const Place onB = placeOf(b, contact.ratioB);
    if (a.path == b.path && kindA == NodeKind::sharedEnd && isJoint(a.path, onA, onB)) {
        return;
    }
    foundAny_ = true;
    nodes_[a.path].push_back({onA.segment, onA.ratio, contact.position, b.path, onB.segment, onB.ratio, kindA});
    nodes_[b.path].push_back({onB.segment, onB.ratio, contact.position, a.path, onA.segment, onA.ratio, kindB});
}

void Noder::addStretch(const SegmentChain& a, const SegmentChain& b, const Contacts::Stretch& stretch) {
    const bool sameDirection = stretch.from.ratioB <= stretch.to.ratioB;
    const auto kindOnB = [sameDirection](NodeKind onA) { return sameDirection ? onA : opposite(onA); };
    addNodes(a, b, stretch.from, NodeKind::overlapBegin, kindOnB(NodeKind::overlapBegin));
    addNodes(a, b, stretch.to, NodeKind::overlapEnd, kindOnB(NodeKind::overlapEnd));
}

// Comparing that many pairs of segments a vertex takes about as long as sweeping over the vertex (measured).
constexpr std::size_t pairsThatCostASweep = 8;

std::size_t vertexCountOf(std::span<const Path* const> paths) {
    std::size_t count = 0;
    for (const Path* path : paths) {
        count += path->vertexCount();
    }
    return count;
}

Vertex placed(Vertex vertex, XY at) noexcept {
    vertex.x = at.x;
    vertex.y = at.y;
    return vertex;
}

} // namespace

XY NodeWalk::vertex(std::size_t index) {
    XY position = path_->xy()[index];
    for (; next_ != nodes_.end() && next_->segment == index && next_->ratio == 0; ++next_) {
        position = next_->position;
    }
    if (index == 0) {
        start_ = position;
    }
    return path_->isClosed() && index == path_->segmentCount() ? start_ : position;
}

const Node* NodeWalk::nextInside(std::size_t segment) {
    return next_ != nodes_.end() && next_->segment == segment ? &*next_++ : nullptr;
}

std::vector<std::vector<Node>> nodesOf(std::span<const Path* const> paths, const ContactTolerance& tolerance) {
    return Noder(paths, tolerance).run(paths.size());
}

std::vector<std::vector<Node>> nodesOfFirst(std::size_t count, std::span<const Path* const> paths,
                                            const ContactTolerance& tolerance) {
    return Noder(paths, tolerance).run(count);
}

bool meetNowhere(std::span<const Path* const> paths) {
    const bool asSweep = std::ranges::all_of(paths, [](const Path* path) { return canBeSwept(*path); });
    const std::size_t maximumPairs =
        asSweep ? pairsThatCostASweep * vertexCountOf(paths) : std::numeric_limits<std::size_t>::max();
    const std::optional<bool> none = Noder(paths, {}).findsNone(maximumPairs);
    return none ? *none : ringPlaces(paths).has_value();
}

Path withVerticesAt(const Path& path, std::span<const Node> nodes) {
    Path result;
    result.reserve(path.vertexCount() + nodes.size());
    NodeWalk walk(path, nodes);
    if (!path.isEmpty()) {
        result.addVertex(placed(path.vertex(0), walk.vertex(0)));
    }
    forEachSegment(path, [&](std::size_t index, const CurveSegment& segment) {
        double from = 0;
        for (; const Node* node = walk.nextInside(index);) {
            if (!(result.back().xy() == node->position)) {
                appendStretch(result, segment, from, node->ratio,
                              placed(segment.vertexAt(node->ratio), node->position));
                from = node->ratio;
            }
        }
        appendStretch(result, segment, from, 1, placed(path.vertex(index + 1), walk.vertex(index + 1)));
    });
    return result;
}

} // namespace qz
