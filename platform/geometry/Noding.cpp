#include "platform/geometry/Noding.h"

#include <algorithm>
#include <tuple>

#include "platform/geometry/Curve.h"
#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/Orientation.h"

namespace qz {

namespace {

// A run of straight segments that all go the same way in x and in y, or one arc.
struct Chain {
    std::size_t path = 0;
    std::size_t first = 0; // segments first … end - 1
    std::size_t end = 0;
    const CircularArc* circle = nullptr;
};

struct Place {
    std::size_t segment = 0;
    double ratio = 0;

    friend bool operator==(const Place&, const Place&) = default;
};

auto sortKey(const Node& node) {
    return std::tie(node.segment, node.ratio, node.otherPath, node.otherSegment, node.otherRatio, node.kind);
}

// The direction of a segment by the signs of its differences; 0 without length.
int quadrantOf(XY from, XY to) noexcept {
    if (from == to) {
        return 0;
    }
    return (to.x < from.x ? 2 : 1) + (to.y < from.y ? 8 : 4);
}

// Whether the extents of two segments or chains by their ends come that close.
bool areNear(XY a0, XY a1, XY b0, XY b1, double distance) noexcept {
    return std::max(a0.x, a1.x) + distance >= std::min(b0.x, b1.x) &&
           std::max(b0.x, b1.x) + distance >= std::min(a0.x, a1.x) &&
           std::max(a0.y, a1.y) + distance >= std::min(b0.y, b1.y) &&
           std::max(b0.y, b1.y) + distance >= std::min(a0.y, a1.y);
}

NodeKind opposite(NodeKind overlap) noexcept {
    return overlap == NodeKind::overlapBegin ? NodeKind::overlapEnd : NodeKind::overlapBegin;
}

class Noder {
public:
    Noder(std::span<const Path* const> paths, const ContactTolerance& tolerance)
        : paths_(paths), tolerance_(tolerance), nodes_(paths.size()) {}

    std::vector<std::vector<Node>> run();

private:
    void addChains(std::size_t path);
    void addStraightChains(std::size_t path, std::size_t first, std::size_t end);
    [[nodiscard]] Envelope envelopeOf(const Chain& chain) const;
    [[nodiscard]] NodingSegment segmentOf(const Chain& chain) const;
    void meet(const Chain& a, const Chain& b);
    void meetSegments(const Chain& a, const Chain& b);
    [[nodiscard]] Place placeOf(const Chain& chain, double ratio) const;
    void addNodes(const Chain& a, const Chain& b, const Contact& contact, NodeKind kindA, NodeKind kindB);
    void addStretch(const Chain& a, const Chain& b, const Contacts::Stretch& stretch);
    [[nodiscard]] bool isJoint(std::size_t path, const Place& one, const Place& other) const;

    std::span<const Path* const> paths_;
    ContactTolerance tolerance_;
    std::vector<std::vector<CircularArc>> circles_; // of each path's arcs
    std::vector<Chain> chains_;
    Contacts contacts_;
    std::vector<std::vector<Node>> nodes_;
};

std::vector<std::vector<Node>> Noder::run() {
    circles_.reserve(paths_.size());
    for (std::size_t path = 0; path < paths_.size(); ++path) {
        addChains(path);
    }
    std::vector<Envelope> envelopes;
    envelopes.reserve(chains_.size());
    std::ranges::transform(chains_, std::back_inserter(envelopes), [this](const Chain& c) { return envelopeOf(c); });
    const PackedEnvelopeTree tree(envelopes);
    for (std::size_t i = 0; i < chains_.size(); ++i) {
        tree.query(envelopes[i].expandedBy(tolerance_.endDistance, tolerance_.endDistance), [this, i](std::size_t j) {
            if (j > i) {
                meet(chains_[i], chains_[j]);
            }
        });
    }
    for (std::vector<Node>& nodes : nodes_) {
        std::ranges::sort(nodes, [](const Node& a, const Node& b) { return sortKey(a) < sortKey(b); });
        nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    }
    return std::move(nodes_);
}

void Noder::addChains(std::size_t path) {
    const Path& curve = *paths_[path];
    std::vector<CircularArc>& circles = circles_.emplace_back();
    circles.reserve(curve.arcs().size());
    std::size_t straightFrom = 0;
    for (const ArcSegment& arc : curve.arcs()) {
        addStraightChains(path, straightFrom, arc.segment);
        circles.push_back(curve.circularArc(arc));
        chains_.push_back({path, arc.segment, arc.segment + 1, &circles.back()});
        straightFrom = arc.segment + 1;
    }
    addStraightChains(path, straightFrom, curve.segmentCount());
}

void Noder::addStraightChains(std::size_t path, std::size_t first, std::size_t end) {
    const std::span<const XY> xy = paths_[path]->xy();
    int direction = 0;
    for (std::size_t i = first; i < end; ++i) {
        const int quadrant = quadrantOf(xy[i], xy[i + 1]);
        if (quadrant == 0) {
            continue;
        }
        if (quadrant == direction) {
            chains_.back().end = i + 1;
        } else {
            chains_.push_back({path, i, i + 1});
            direction = quadrant;
        }
    }
}

Envelope Noder::envelopeOf(const Chain& chain) const {
    return segmentOf(chain).envelope();
}

// From end to end of a chain; the segment itself when it has only one.
NodingSegment Noder::segmentOf(const Chain& chain) const {
    const std::span<const XY> xy = paths_[chain.path]->xy();
    return {xy[chain.first], xy[chain.end], chain.circle};
}

void Noder::meet(const Chain& a, const Chain& b) {
    const std::span<const XY> xyA = paths_[a.path]->xy();
    const std::span<const XY> xyB = paths_[b.path]->xy();
    if (a.circle == nullptr && b.circle == nullptr &&
        !areNear(xyA[a.first], xyA[a.end], xyB[b.first], xyB[b.end], tolerance_.endDistance)) {
        return;
    }
    const std::size_t lengthA = a.end - a.first;
    const std::size_t lengthB = b.end - b.first;
    if (lengthA == 1 && lengthB == 1) {
        meetSegments(a, b);
    } else if (lengthA >= lengthB) {
        const std::size_t middle = a.first + lengthA / 2;
        meet({a.path, a.first, middle, a.circle}, b);
        meet({a.path, middle, a.end, a.circle}, b);
    } else {
        const std::size_t middle = b.first + lengthB / 2;
        meet(a, {b.path, b.first, middle, b.circle});
        meet(a, {b.path, middle, b.end, b.circle});
    }
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

void Noder::meetSegments(const Chain& a, const Chain& b) {
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

Place Noder::placeOf(const Chain& chain, double ratio) const {
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

void Noder::addNodes(const Chain& a, const Chain& b, const Contact& contact, NodeKind kindA, NodeKind kindB) {
    const Place onA = placeOf(a, contact.ratioA);
    const Place onB = placeOf(b, contact.ratioB);
    if (a.path == b.path && kindA == NodeKind::sharedEnd && isJoint(a.path, onA, onB)) {
        return;
    }
    nodes_[a.path].push_back({onA.segment, onA.ratio, contact.position, b.path, onB.segment, onB.ratio, kindA});
    nodes_[b.path].push_back({onB.segment, onB.ratio, contact.position, a.path, onA.segment, onA.ratio, kindB});
}

void Noder::addStretch(const Chain& a, const Chain& b, const Contacts::Stretch& stretch) {
    const bool sameDirection = stretch.from.ratioB <= stretch.to.ratioB;
    const auto kindOnB = [sameDirection](NodeKind onA) { return sameDirection ? onA : opposite(onA); };
    addNodes(a, b, stretch.from, NodeKind::overlapBegin, kindOnB(NodeKind::overlapBegin));
    addNodes(a, b, stretch.to, NodeKind::overlapEnd, kindOnB(NodeKind::overlapEnd));
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
    return Noder(paths, tolerance).run();
}

std::vector<const Path*> pathsOf(const Geometry& geometry) {
    std::vector<const Path*> paths;
    const auto addAll = [&paths](const std::vector<Path>& parts) {
        for (const Path& path : parts) {
            paths.push_back(&path);
        }
    };
    if (const Polyline* polyline = geometry.getIf<Polyline>()) {
        addAll(polyline->paths);
    } else if (const Polygon* polygon = geometry.getIf<Polygon>()) {
        addAll(polygon->rings);
    }
    return paths;
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
