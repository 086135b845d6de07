#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

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

} // namespace qz
