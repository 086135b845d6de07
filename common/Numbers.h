#pragma once

#include <cstdint>

namespace qz {

// Half to even. Throws PlatformError ("Overflow") when the number is out of range or not finite.
[[nodiscard]] std::int32_t toInteger32(double number);
[[nodiscard]] std::int16_t toInteger16(double number);

// Throws PlatformError ("Overflow") instead of wrapping around.
[[nodiscard]] std::int32_t checkedSum(std::int32_t a, std::int32_t b);

} // namespace qz
