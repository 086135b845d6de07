#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
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

    [[nodiscard]] std::size_t size() const noexcept { return items_.size(); }
    // The items along the curve that fills the tree: neighbours in it are neighbours on the map.
    [[nodiscard]] std::span<const std::uint32_t> alongCurve() const noexcept { return items_; }
    // Calls `found(index into the given span)` for every envelope that intersects the window, in no particular order.
    template <typename Found> void query(const Envelope& window, Found found) const {
        (void)queryWhile(window, [&found](std::size_t index) {
            found(index);
            return true;
        });
    }
    // The same until `goesOn(index)` gives false; whether it never did.
    template <typename GoesOn> bool queryWhile(const Envelope& window, GoesOn goesOn) const;

private:
    static constexpr std::size_t nodeSize = 16;
    static constexpr std::size_t maximumLevels = 17; // 16^16 exceeds every size

    void addLevel();

    // levels_[0] are the items along the curve; each entry above encloses 16 of the level below, except the last.
    std::vector<std::vector<Envelope>> levels_;
    std::vector<std::uint32_t> items_; // index in the given span, one for each entry of levels_[0]
};

// An index of envelopes by 64-bit key that takes insertions and removals at any time: packed trees of growing size
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
    // What was once inserted. It counts as long as no later insertion or removal of its key overtook it.
    struct Entry {
        std::int64_t key = 0;
        std::uint64_t insertion = 0;
        Envelope envelope;
    };
    struct Run {
        std::vector<Entry> entries;
        PackedEnvelopeTree tree;
    };

    [[nodiscard]] bool counts(const Entry& entry) const;
    void packRecent();
    void dropStale();
    void addRun(std::vector<Entry> entries);

    std::unordered_map<std::int64_t, std::uint64_t> current_; // the insertion that counts, by key
    std::uint64_t insertions_ = 0;
    std::vector<Entry> recent_; // too few for a tree
    std::vector<Run> runs_;     // by descending size
    std::size_t entries_ = 0;   // in `recent_` and `runs_`, those that no longer count included
};

template <typename GoesOn> bool PackedEnvelopeTree::queryWhile(const Envelope& window, GoesOn goesOn) const {
    struct Range {
        std::size_t level;
        std::size_t first;
    };
    if (levels_.empty()) {
        return true;
    }
    std::array<Range, maximumLevels * nodeSize> pending;
    std::size_t count = 0;
    pending[count++] = {levels_.size() - 1, 0};
    while (count > 0) {
        const Range range = pending[--count];
        const std::vector<Envelope>& level = levels_[range.level];
        const std::size_t end = std::min(range.first + nodeSize, level.size());
        for (std::size_t i = range.first; i < end; ++i) {
            if (!level[i].intersects(window)) {
                continue;
            }
            if (range.level > 0) {
                pending[count++] = {range.level - 1, i * nodeSize};
            } else if (!goesOn(static_cast<std::size_t>(items_[i]))) {
                return false;
            }
        }
    }
    return true;
}

} // namespace qz
