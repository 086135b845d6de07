#include "common/ValueArithmetic.h"

#include <cmath>
#include <optional>
#include <type_traits>

#include "common/NumberText.h"
#include "platform/Error.h"

namespace qz {

namespace {

double finite(double number) {
    if (!std::isfinite(number)) {
        throw PlatformError("Overflow");
    }
    return number;
}

std::optional<std::int64_t> integerOf(const Value& number) {
    return std::visit(
        [](const auto& content) -> std::optional<std::int64_t> {
            if constexpr (std::is_integral_v<std::decay_t<decltype(content)>>) {
                return content;
            } else {
                return std::nullopt;
            }
        },
        number);
}

std::int64_t exactSum(std::int64_t a, std::int64_t b) {
    std::int64_t result = 0;
    if (__builtin_add_overflow(a, b, &result)) {
        throw PlatformError("Overflow");
    }
    return result;
}

} // namespace

Value times(const Value& value, double factor) {
    return isNull(value) ? value : Value(finite(toDouble(value) * factor));
}

Value sum(const Value& a, const Value& b) {
    if (isNull(a) || isNull(b)) {
        return {};
    }
    const Value x = toNumber(a);
    const Value y = toNumber(b);
    if (const auto i = integerOf(x), j = integerOf(y); i && j) {
        return exactSum(*i, *j);
    }
    return finite(toDouble(x) + toDouble(y));
}

Value mean(const Value& a, const Value& b) {
    const Value total = sum(a, b);
    return isNull(total) ? total : Value(toDouble(total) / 2);
}

bool isLess(const Value& a, const Value& b) {
    if (isNull(a) || isNull(b)) {
        return false;
    }
    const Value x = toNumber(a);
    const Value y = toNumber(b);
    const auto i = integerOf(x);
    const auto j = integerOf(y);
    return i && j ? *i < *j : toDouble(x) < toDouble(y);
}

} // namespace qz
