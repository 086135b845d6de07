#pragma once

#include <cstdint>
#include <random>

#include "platform/geometry/Geometry.h"

namespace qz {

// Uniform numbers in [0, 1), the same on every machine for one seed: that of the services, else one from the clock.
class UniformNumbers {
public:
    UniformNumbers();
    [[nodiscard]] double next() { return static_cast<double>(generator_() >> 11U) * 0x1p-53; }

private:
    std::mt19937_64 generator_;
};

// Random points in the spatial reference of the shape, without z and m, in the order in which they were found. Fewer
// than asked for when there is no room for more.

// Strictly inside, no two the same with 7 decimals. Rejection sampling in the envelope: after a hundred thousand misses
// in a row it is given up.
[[nodiscard]] Multipoint QZ_RandomPointsInPolygon(const Polygon& polygon, std::int32_t count, UniformNumbers& numbers);

// Evenly spread over the length, arcs and all parts included.
[[nodiscard]] Multipoint QZ_RandomPointsOnPolyline(const Polyline& line, std::int32_t count, UniformNumbers& numbers);

} // namespace qz
