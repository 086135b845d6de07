#include "platform/geometry/SegmentChains.h"

#include <iterator>

#include "platform/geometry/SegmentIntersection.h"

namespace qz {

namespace {

constexpr std::size_t boxesOfNode = 4;

// The direction of a segment by the signs of its differences; 0 without length.
int quadrantOf(XY from, XY to) noexcept {
    if (from == to) {
        return 0;
    }
    return (to.x < from.x ? 2 : 1) + (to.y < from.y ? 8 : 4);
}

Envelope joined(const Envelope& a, const Envelope& b) noexcept {
    return {std::min(a.xMin, b.xMin), std::min(a.yMin, b.yMin), std::max(a.xMax, b.xMax), std::max(a.yMax, b.yMax)};
}

} // namespace

SegmentChains::SegmentChains(std::span<const Path* const> paths) : paths_(paths) {
    circles_.reserve(paths.size());
    for (std::size_t path = 0; path < paths.size(); ++path) {
        const std::size_t firstChain = chains_.size();
        const std::size_t firstBox = boxes_.size();
        addChains(path);
        for (std::size_t chain = firstChain; chain < chains_.size(); ++chain) {
            addBox(chain);
        }
        if (boxes_.size() > firstBox) {
            addRoot(firstBox);
            pathOfRoot_.push_back(path);
        }
    }
    if (roots_.size() > 1) {
        std::vector<Envelope> extents;
        extents.reserve(roots_.size());
        std::ranges::transform(roots_, std::back_inserter(extents), [this](std::size_t i) { return boxes_[i].extent; });
        tree_ = PackedEnvelopeTree(extents);
    }
}

void SegmentChains::addChains(std::size_t path) {
    const Path& curve = *paths_[path];
    std::vector<CircularArc>& circles = circles_.emplace_back();
    circles.reserve(curve.arcs().size());
    std::size_t straightFrom = 0;
    for (const ArcSegment& arc : curve.arcs()) {
        addStraightChains(path, straightFrom, arc.segment);
        circles.push_back(curve.circularArc(arc));
        chains_.push_back({path, arc.segment, arc.segment + 1, circles.back().isFlat() ? nullptr : &circles.back()});
        straightFrom = arc.segment + 1;
    }
    addStraightChains(path, straightFrom, curve.segmentCount());
}

void SegmentChains::addStraightChains(std::size_t path, std::size_t first, std::size_t end) {
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

void SegmentChains::addBox(std::size_t chain) {
    const SegmentChain& run = chains_[chain];
    const std::span<const XY> xy = paths_[run.path]->xy();
    const Envelope extent =
        run.circle != nullptr ? NodingSegment{xy[run.first], xy[run.end], run.circle}.envelope() : extentOf(run);
    boxes_.push_back({extent, chain, 0});
}

// Puts level on level over the boxes from that on, to a single one.
void SegmentChains::addRoot(std::size_t firstBox) {
    std::size_t levelBegin = firstBox;
    for (std::size_t levelEnd = boxes_.size(); levelEnd - levelBegin > 1; levelEnd = boxes_.size()) {
        for (std::size_t first = levelBegin; first < levelEnd; first += boxesOfNode) {
            Box node{boxes_[first].extent, first, std::min(boxesOfNode, levelEnd - first)};
            for (std::size_t i = first + 1; i < first + node.count; ++i) {
                node.extent = joined(node.extent, boxes_[i].extent);
            }
            boxes_.push_back(node);
        }
        levelBegin = levelEnd;
    }
    roots_.push_back(boxes_.size() - 1);
}

} // namespace qz
