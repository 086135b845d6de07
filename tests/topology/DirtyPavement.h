#pragma once

#include <cmath>
#include <random>
#include <vector>

#include "platform/geometry/Path.h"

namespace qz::test {

// The rings of size x size parcels, 10 m wide, each digitised on its own: with vertices on its sides that its
// neighbours don't have, and all of them off by up to `jitter`.
inline std::vector<Path> dirtyRings(int size, double jitter, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> off(-jitter, jitter), part(-0.15, 0.15), lean(-1.5, 1.5);
    std::vector<XY> corners;
    for (int i = 0; i < (size + 1) * (size + 1); ++i) {
        corners.push_back(
            {500000 + 10.0 * (i % (size + 1)) + lean(random), 5500000 + 10.0 * (i / (size + 1)) + lean(random)});
    }
    const auto corner = [&](int x, int y) { return corners[static_cast<std::size_t>(y * (size + 1) + x)]; };
    std::vector<Path> rings;
    for (int i = 0; i < size * size; ++i) {
        const int x = i % size, y = i / size;
        const XY ends[] = {corner(x, y), corner(x, y + 1), corner(x + 1, y + 1), corner(x + 1, y), corner(x, y)};
        std::vector<XY> ring;
        for (int side = 0; side < 4; ++side) {
            for (const double ratio : {0.0, 0.33 + part(random), 0.67 + part(random)}) {
                ring.push_back({std::lerp(ends[side].x, ends[side + 1].x, ratio) + off(random),
                                std::lerp(ends[side].y, ends[side + 1].y, ratio) + off(random)});
            }
        }
        ring.push_back(ring.front());
        rings.emplace_back(std::move(ring));
    }
    return rings;
}

} // namespace qz::test
