#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace qz {

// "Not known" for z and m, and for the coordinates of an empty point.
inline constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

struct XY {
    double x = 0;
    double y = 0;

    friend constexpr bool operator==(const XY&, const XY&) = default;
};

// A coordinate with its height and measure, each possibly undefined.
struct Vertex {
    double x = 0;
    double y = 0;
    double z = undefined;
    double m = undefined;

    [[nodiscard]] constexpr XY xy() const noexcept { return {x, y}; }
};

[[nodiscard]] inline bool isFinite(XY p) noexcept {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

// Equal to the last bit, so that 0 and -0 differ; undefined equals undefined.
[[nodiscard]] inline bool sameBits(double a, double b) noexcept {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (std::isnan(a) && std::isnan(b));
}
[[nodiscard]] inline bool sameBits(XY a, XY b) noexcept {
    return sameBits(a.x, b.x) && sameBits(a.y, b.y);
}

} // namespace qz
