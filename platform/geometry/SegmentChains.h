#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

#include "platform/geometry/CircularArc.h"
#include "platform/geometry/EnvelopeIndex.h"
#include "platform/geometry/Path.h"

namespace qz {

// A run of straight segments that all go the same way in x and in y, or one arc. A run has the extent of its ends.
struct SegmentChain {
    std::size_t path = 0;
    std::size_t first = 0; // segments first … end - 1
    std::size_t end = 0;
    const CircularArc* circle = nullptr;
};

// The chains of paths, which must outlive it, made ready for finding those that come close to each other. A
// segment without length begins none, but a run may go over it.
//
// Chains that follow each other along a path lie close together, so that every path is a tree of boxes as it stands,
// four to a node, without any sorting; a packed tree of the paths finds those that come close. After chain-based
// noding in JTS (M. Davis) and the joining of two trees of boxes (Brinkhoff, Kriegel & Seeger, 1993).
class SegmentChains {
public:
    explicit SegmentChains(std::span<const Path* const> paths);
    SegmentChains(const SegmentChains&) = delete; // chains point to its circles
    SegmentChains& operator=(const SegmentChains&) = delete;

    // Calls `see(a, b)` for chains cut down to single segments whose extents are no farther apart than that; `a` comes
    // first by path and segment, each pair comes once, segments of one chain never. Ends when `see` gives false;
    // whether all were seen.
    template <typename See> bool forEachClosePair(double distance, See see) const {
        return forEachClosePair(
            distance, [](std::size_t) { return true; }, see);
    }
    // Only pairs of which one at least is of a path that `isWanted(path)`; others cost nothing.
    template <typename IsWanted, typename See> bool forEachClosePair(double distance, IsWanted isWanted, See see) const;

private:
    struct Box {
        Envelope extent;
        std::size_t first = 0; // box below, or chain
        std::size_t count = 0; // of boxes below; none for a chain
    };

    void addChains(std::size_t path);
    void addStraightChains(std::size_t path, std::size_t first, std::size_t end);
    void addBox(std::size_t chain);
    void addRoot(std::size_t firstBox);
    [[nodiscard]] static bool areClose(const Envelope& a, const Envelope& b, double distance) noexcept;
    [[nodiscard]] Envelope extentOf(const SegmentChain& chain) const;
    template <typename See> bool seeWithin(const Box& box, double distance, See& see) const;
    template <typename See> bool seeBetween(const Box& a, const Box& b, double distance, See& see) const;
    template <typename See>
    bool seeSegments(const SegmentChain& a, const SegmentChain& b, double distance, See& see) const;

    std::span<const Path* const> paths_;
    std::vector<std::vector<CircularArc>> circles_; // of each path's arcs
    std::vector<SegmentChain> chains_;
    std::vector<Box> boxes_;
    std::vector<std::size_t> roots_;      // of each path that has a chain
    std::vector<std::size_t> pathOfRoot_; // ascending
    PackedEnvelopeTree tree_;             // of the roots
};

inline bool SegmentChains::areClose(const Envelope& a, const Envelope& b, double distance) noexcept {
    return a.xMax + distance >= b.xMin && b.xMax + distance >= a.xMin && a.yMax + distance >= b.yMin &&
           b.yMax + distance >= a.yMin;
}

inline Envelope SegmentChains::extentOf(const SegmentChain& chain) const {
    const std::span<const XY> xy = paths_[chain.path]->xy();
    const auto [xMin, xMax] = std::minmax(xy[chain.first].x, xy[chain.end].x);
    const auto [yMin, yMax] = std::minmax(xy[chain.first].y, xy[chain.end].y);
    return {xMin, yMin, xMax, yMax};
}

template <typename IsWanted, typename See>
bool SegmentChains::forEachClosePair(double distance, IsWanted isWanted, See see) const {
    if (roots_.size() == 1) {
        return !isWanted(pathOfRoot_.front()) || seeWithin(boxes_[roots_.front()], distance, see);
    }
    // Along the curve of the tree one query finds what the one before has brought near.
    for (const std::size_t i : tree_.alongCurve()) {
        if (!isWanted(pathOfRoot_[i])) {
            continue;
        }
        const Box& root = boxes_[roots_[i]];
        bool goesOn = seeWithin(root, distance, see);
        tree_.query(root.extent.expandedBy(distance, distance), [&](std::size_t j) {
            const bool wasSeen = j == i || (j < i && isWanted(pathOfRoot_[j]));
            const Box& other = boxes_[roots_[j]];
            goesOn =
                goesOn &&
                (wasSeen || (j > i ? seeBetween(root, other, distance, see) : seeBetween(other, root, distance, see)));
        });
        if (!goesOn) {
            return false;
        }
    }
    return true;
}

template <typename See> bool SegmentChains::seeWithin(const Box& box, double distance, See& see) const {
    for (std::size_t i = box.first; i < box.first + box.count; ++i) {
        if (!seeWithin(boxes_[i], distance, see)) {
            return false;
        }
        for (std::size_t j = i + 1; j < box.first + box.count; ++j) {
            if (!seeBetween(boxes_[i], boxes_[j], distance, see)) {
                return false;
            }
        }
    }
    return true;
}

template <typename See> bool SegmentChains::seeBetween(const Box& a, const Box& b, double distance, See& see) const {
    if (!areClose(a.extent, b.extent, distance)) {
        return true;
    }
    if (a.count == 0 && b.count == 0) {
        return seeSegments(chains_[a.first], chains_[b.first], distance, see);
    }
    const bool opensA = a.count >= b.count;
    const Box& opened = opensA ? a : b;
    for (std::size_t i = opened.first; i < opened.first + opened.count; ++i) {
        if (!(opensA ? seeBetween(boxes_[i], b, distance, see) : seeBetween(a, boxes_[i], distance, see))) {
            return false;
        }
    }
    return true;
}

template <typename See>
bool SegmentChains::seeSegments(const SegmentChain& a, const SegmentChain& b, double distance, See& see) const {
    const std::size_t lengthA = a.end - a.first;
    const std::size_t lengthB = b.end - b.first;
    if (lengthA == 1 && lengthB == 1) {
        return see(a, b);
    }
    const bool halvesA = lengthA >= lengthB;
    SegmentChain low = halvesA ? a : b;
    SegmentChain high = low;
    low.end = high.first = low.first + (low.end - low.first) / 2;
    const SegmentChain& other = halvesA ? b : a;
    const auto seeHalf = [&](const SegmentChain& half) {
        if (other.circle == nullptr && !areClose(extentOf(half), extentOf(other), distance)) {
            return true;
        }
        return halvesA ? seeSegments(half, other, distance, see) : seeSegments(other, half, distance, see);
    };
    return seeHalf(low) && seeHalf(high);
}

} // namespace qz
