#include "common/Numbers.h"

#include <limits>

#include "platform/Error.h"
#include "platform/Rounding.h"

namespace qz {

namespace {

template <typename Integer> Integer rounded(double number) {
    const double whole = roundedHalfToEven(number);
    if (!(whole >= std::numeric_limits<Integer>::min() && whole <= std::numeric_limits<Integer>::max())) {
        throw PlatformError("Overflow");
    }
    return static_cast<Integer>(whole);
}

} // namespace

std::int32_t toInteger32(double number) {
    return rounded<std::int32_t>(number);
}

std::int16_t toInteger16(double number) {
    return rounded<std::int16_t>(number);
}

std::int32_t checkedSum(std::int32_t a, std::int32_t b) {
    return toInteger32(static_cast<double>(a) + static_cast<double>(b));
}

} // namespace qz
