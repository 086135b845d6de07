#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/geometry/Envelope.h"

namespace qz {

// A static index of envelopes: a packed R-tree (nodes of 16, filled along a Hilbert curve; after Kamel & Faloutsos,
// 1993). Building is O(n log n), a query O(log n + hits) on data of even size. Empty envelopes are never found.
class PackedEnvelopeTree {
public:
    PackedEnvelopeTree() = default;
    explicit PackedEnvelopeTree(std::span<const Envelope> envelopes);

    [[nodiscard]] std::size_t size() const noexcept { return count_; }
    // Calls `found(index into the given span)` for every envelope that intersects the window, in no particular order.
    template <typename Found> void query(const Envelope& window, Found found) const;

private:
    struct Node {
        Envelope envelope;
        std::uint32_t firstChild = 0; // an item index in the lowest level
    };
    std::size_t count_ = 0;
    std::vector<Node> nodes_;                // all levels, items first
    std::vector<std::uint32_t> levelBounds_; // end of each level in nodes_
};

// An index of envelopes by 64-bit key that takes insertions and removals at any time: packed trees of doubling size
// (the logarithmic method of Bentley & Saxe, 1980). Insertion O(log² n) amortised.
class EnvelopeIndex {
public:
    // Replaces the envelope of a key that is there already.
    void insert(std::int64_t key, const Envelope& envelope);
    void remove(std::int64_t key);
    [[nodiscard]] std::size_t size() const noexcept { return current_.size(); }
    // Keys whose envelope intersects the window, ascending.
    [[nodiscard]] std::vector<std::int64_t> query(const Envelope& window) const;

private:
    struct Run;
    // implementation members: by the implementer
    std::unordered_map<std::int64_t, Envelope> current_;
};

} // namespace qz
