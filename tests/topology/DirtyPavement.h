#pragma once

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "platform/geometry/Path.h"

namespace qz::test {

// size x size quadrilaterals, 10 m wide. Calls `see(ends)` for each, with its corners clockwise, the first again at
// last.
template <typename See> void forEachParcel(int size, std::mt19937& random, See see) {
    std::uniform_real_distribution<double> lean(-1.5, 1.5);
    std::vector<XY> corners;
    for (int i = 0; i < (size + 1) * (size + 1); ++i) {
        corners.push_back(
            {500000 + 10.0 * (i % (size + 1)) + lean(random), 5500000 + 10.0 * (i / (size + 1)) + lean(random)});
    }
    const auto corner = [&](int x, int y) { return corners[static_cast<std::size_t>(y * (size + 1) + x)]; };
    for (int i = 0; i < size * size; ++i) {
        const int x = i % size, y = i / size;
        see(std::array{corner(x, y), corner(x, y + 1), corner(x + 1, y + 1), corner(x + 1, y), corner(x, y)});
    }
}

// Parcels whose sides their neighbours have as well, bit for bit, with two vertices inside each.
inline std::vector<Path> cleanRings(int size, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<Path> rings;
    forEachParcel(size, random, [&](const std::array<XY, 5>& ends) {
        std::vector<XY> ring;
        for (std::size_t side = 0; side < 4; ++side) {
            const XY from = ends[side], to = ends[side + 1];
            const bool isUp = from.x < to.x || (from.x == to.x && from.y < to.y);
            const auto at = [&](double ratio) {
                return isUp ? XY{std::lerp(from.x, to.x, ratio), std::lerp(from.y, to.y, ratio)}
                            : XY{std::lerp(to.x, from.x, 1 - ratio), std::lerp(to.y, from.y, 1 - ratio)};
            };
            ring.insert(ring.end(), {from, at(isUp ? 0.375 : 0.25), at(isUp ? 0.75 : 0.625)});
        }
        ring.push_back(ring.front());
        rings.emplace_back(std::move(ring));
    });
    return rings;
}

// Parcels digitised each on its own: with vertices on the sides that the neighbours don't have, and all of them off by
// up to `jitter`.
inline std::vector<Path> dirtyRings(int size, double jitter, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> off(-jitter, jitter), part(-0.15, 0.15);
    std::vector<Path> rings;
    forEachParcel(size, random, [&](const std::array<XY, 5>& ends) {
        std::vector<XY> ring;
        for (std::size_t side = 0; side < 4; ++side) {
            for (const double ratio : {0.0, 0.33 + part(random), 0.67 + part(random)}) {
                ring.push_back({std::lerp(ends[side].x, ends[side + 1].x, ratio) + off(random),
                                std::lerp(ends[side].y, ends[side + 1].y, ratio) + off(random)});
            }
        }
        ring.push_back(ring.front());
        rings.emplace_back(std::move(ring));
    });
    return rings;
}

} // namespace qz::test
