#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/geometry/Coordinates.h"

namespace qz {

// For tables of exactly equal places; 0 and -0 are one. Tables are only looked up, never walked, so that no result
// depends on it.
struct XYHash {
    [[nodiscard]] std::size_t operator()(XY p) const noexcept {
        const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value + 0.0); };
        std::uint64_t mixed = bits(p.x) * 0x9e3779b97f4a7c15U ^ (bits(p.y) + 0x7f4a7c159e3779b9U);
        mixed = (mixed ^ (mixed >> 32)) * 0xd6e8feb86659fd93U;
        return mixed ^ (mixed >> 29);
    }
};

// A straight edge from place to place.
struct DirectedEdge {
    XY from;
    XY to;

    [[nodiscard]] DirectedEdge reversed() const noexcept { return {to, from}; }
    friend bool operator==(const DirectedEdge&, const DirectedEdge&) = default;
};

struct DirectedEdgeHash {
    [[nodiscard]] std::size_t operator()(const DirectedEdge& edge) const noexcept {
        return XYHash()(edge.from) * 31 + XYHash()(edge.to);
    }
};

// Numbers different keys from 0 on, in the order in which they first come: values by key are then plain vectors. One
// flat table with linear probing, without an allocation a key. A key must equal itself, which a NaN does not.
template <typename Key, typename Hash> class Numbering {
public:
    [[nodiscard]] std::size_t size() const noexcept { return keys_.size(); }
    [[nodiscard]] const Key& operator[](std::size_t number) const noexcept { return keys_[number]; }

    void reserve(std::size_t count) {
        keys_.reserve(count);
        if (2 * count > slots_.size()) {
            rehash(std::bit_ceil(2 * count));
        }
    }

    // The number of the key; a new one when it is new.
    std::size_t add(const Key& key) {
        if (2 * (keys_.size() + 1) > slots_.size()) {
            rehash(std::bit_ceil(4 * (keys_.size() + 1)));
        }
        std::uint32_t& slot = slots_[slotOf(key)];
        if (slot == 0) {
            keys_.push_back(key);
            slot = static_cast<std::uint32_t>(keys_.size());
        }
        return slot - 1;
    }

    [[nodiscard]] std::optional<std::size_t> find(const Key& key) const {
        const std::uint32_t slot = slots_.empty() ? 0 : slots_[slotOf(key)];
        return slot == 0 ? std::nullopt : std::optional<std::size_t>(slot - 1);
    }

private:
    // Where the key is, or where it would go.
    [[nodiscard]] std::size_t slotOf(const Key& key) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t slot = Hash()(key) & mask;
        while (slots_[slot] != 0 && !(keys_[slots_[slot] - 1] == key)) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    void rehash(std::size_t size) {
        slots_.assign(size, 0);
        for (std::size_t i = 0; i < keys_.size(); ++i) {
            slots_[slotOf(keys_[i])] = static_cast<std::uint32_t>(i + 1);
        }
    }

    std::vector<Key> keys_;
    std::vector<std::uint32_t> slots_; // number + 1, or 0; a power of two of them, at most half taken
};

using PlaceNumbers = Numbering<XY, XYHash>;

} // namespace qz
