#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/geometry/Geometry.h"
#include "platform/geometry/Groups.h"
#include "platform/geometry/RingLocator.h"
#include "platform/geometry/SegmentChains.h"

namespace qz {

// Finds the pairs of polygons that may have area in common, without a set operation: neighbours that share their
// border bit for bit, or meet at a corner only, are told apart by exact predicates on the segments that meet there.
// What is left needs a closer look. O(n log n), as long as few polygons lie over each other.
//
// Boundaries that cross nowhere and lie side by side wherever they meet bound areas of which one holds the other, or
// that are apart; where a ring meets nothing, the place of one of its vertices tells.
class OverlapCandidates {
public:
    // Simple polygons in one spatial reference, which must outlive the object.
    explicit OverlapCandidates(std::span<const Polygon> polygons);

    // The earlier polygons that each may share area with.
    [[nodiscard]] const Groups& earlierOf() const noexcept { return earlierOf_; }

private:
    using Pair = std::pair<std::uint32_t, std::uint32_t>; // numbers, the greater first

    void addPair(std::uint32_t one, std::uint32_t other);
    void lookAlongSegments();
    void lookAt(const SegmentChain& a, const SegmentChain& b);
    void addContact(const SegmentChain& a, const SegmentChain& b);
    [[nodiscard]] bool mayOverlapAt(const SegmentChain& a, const SegmentChain& b) const;
    [[nodiscard]] bool cornersOverlap(const SegmentChain& a, const SegmentChain& b) const;
    void lookInsideRings();
    [[nodiscard]] bool holds(std::uint32_t polygon, XY place);

    std::span<const Polygon> polygons_;
    std::vector<const Path*> rings_;
    std::vector<std::uint32_t> polygonOf_; // by ring
    std::vector<Pair> pairs_;
    std::vector<Pair> contacts_;                     // ring, and a polygon that its boundary meets
    std::vector<std::vector<RingLocator>> locators_; // of the rings of each polygon that was asked
    Groups earlierOf_;
};

} // namespace qz
