#pragma once

#include <cmath>

namespace qz {

// To the nearest whole number, halves to the even one, whatever the rounding mode of the process.
[[nodiscard]] inline double roundedHalfToEven(double number) noexcept {
    const double below = std::floor(number);
    const double above = number - below;
    if (above != 0.5) {
        return above < 0.5 ? below : below + 1;
    }
    return std::fmod(below, 2) == 0 ? below : below + 1;
}

} // namespace qz
